# The title of a frame.
name
	PANEL_FRAME_TITLE_TEXT_BOX_WORD
image_filename
	
image_path
	$HERE
fg_colour
	$ink
font_name
	Inter-SemiBold
font_x_sz
	14
font_y_sz
	14
border_left_gap
	0
border_top_gap
	1
border_right_gap
	0
border_bottom_gap
	1
