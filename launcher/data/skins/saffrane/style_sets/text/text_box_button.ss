# A link in a text.
name
	TEXT_BOX_BUTTON
image_filename
	
image_path
	$HERE
fg_colour
	$accent_ink
mouse_over_colour
	$selection
mouse_over_text_colour
	$ink
underline_colour
	$accent_dark
mouse_over_underline_colour
	$accent_dark
border_left_gap
	0
border_top_gap
	2
border_right_gap
	0
border_bottom_gap
	3
