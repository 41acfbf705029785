# The lower right corner of a row, with the objects.
name
	PANEL_FRAME_BOTTOM_LAST_HOLDER
image_filename
	frame_bottom_last_holder
image_path
	$HERE
border_left_gap
	4
border_top_gap
	0
border_right_gap
	8
border_bottom_gap
	0
x_spacing
	8
