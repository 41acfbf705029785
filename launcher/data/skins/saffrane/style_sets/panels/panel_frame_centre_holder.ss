# The room round the content.
name
	PANEL_FRAME_CENTRE_HOLDER
image_filename
	
image_path
	$HERE
border_left_gap
	12
border_top_gap
	12
border_right_gap
	12
border_bottom_gap
	12
x_spacing
	8
