# A field to type in.
name
	TEXT_BOX_BACKGROUND
image_filename
	text_field
image_path
	$HERE
border_left_gap
	9
border_top_gap
	5
border_right_gap
	9
border_bottom_gap
	5
left_justify_text
	1
