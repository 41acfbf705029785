# A description in a table: in line with its labels.
name
	DIALOG_DESCRIPTION_TEXT_BOX_BACKGROUND
image_filename
	
image_path
	$HERE
border_left_gap
	10
border_top_gap
	8
border_right_gap
	10
border_bottom_gap
	6
left_justify_text
	1
