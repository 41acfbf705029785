# The lower right corner.
name
	PANEL_FRAME_BOTTOM_LAST
image_filename
	frame_bottom_last
image_path
	$HERE
border_left_gap
	4
border_top_gap
	0
border_right_gap
	4
border_bottom_gap
	0
x_spacing
	0
