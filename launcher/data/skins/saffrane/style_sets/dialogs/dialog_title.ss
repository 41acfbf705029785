# The title of a dialog.
name
	DIALOG_TITLE
image_filename
	
image_path
	$HERE
font_name
	Inter-SemiBold
font_x_sz
	15
font_y_sz
	15
border_left_gap
	0
border_top_gap
	0
border_right_gap
	0
border_bottom_gap
	9
left_justify_text
	1
