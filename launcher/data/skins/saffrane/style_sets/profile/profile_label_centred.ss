name
	PROFILE_LABEL_CENTRED
image_filename
	
image_path
	$HERE
fg_colour
	$ink_soft
font_name
	Inter-Regular
border_left_gap
	10
border_top_gap
	5
border_right_gap
	12
border_bottom_gap
	5
