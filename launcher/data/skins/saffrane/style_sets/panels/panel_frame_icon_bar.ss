# The bar of icons at the right.
name
	PANEL_FRAME_ICON_BAR
image_filename
	frame_icon_bar
image_path
	$HERE
border_left_gap
	4
border_top_gap
	8
border_right_gap
	4
border_bottom_gap
	8
y_spacing
	6
