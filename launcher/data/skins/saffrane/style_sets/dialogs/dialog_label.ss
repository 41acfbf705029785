# A line of text on a page or in a dialog.
name
	DIALOG_LABEL
image_filename
	
image_path
	$HERE
border_left_gap
	2
border_top_gap
	0
border_right_gap
	2
border_bottom_gap
	0
left_justify_text
	1
