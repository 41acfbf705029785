# A quality, coloured by how good it is.
name
	PROFILE_ENTRY_ATTRIBUTE_OK
image_filename
	
image_path
	$HERE
fg_colour
	$fair
mouse_over_text_colour
	$accent_ink
mouse_over_underline_colour
	$accent
font_name
	Inter-Regular
border_left_gap
	6
border_top_gap
	5
border_right_gap
	12
border_bottom_gap
	5
right_justify_text
	1
