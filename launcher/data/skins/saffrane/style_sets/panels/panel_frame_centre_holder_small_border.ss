# Less room round the content.
name
	PANEL_FRAME_CENTRE_HOLDER_SMALL_BORDER
image_filename
	
image_path
	$HERE
border_left_gap
	1
border_top_gap
	1
border_right_gap
	1
border_bottom_gap
	0
x_spacing
	4
