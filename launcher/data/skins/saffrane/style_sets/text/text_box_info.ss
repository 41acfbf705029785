# The count of characters left.
name
	TEXT_BOX_INFO
image_filename
	
image_path
	$HERE
fg_colour
	$ink_faint
font_x_sz
	12
font_y_sz
	12
right_justify_text
	1
