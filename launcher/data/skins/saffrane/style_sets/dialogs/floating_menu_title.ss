# The heading of a menu, or of a part of one.
name
	FLOATING_MENU_TITLE
image_filename
	
image_path
	$HERE
fg_colour
	$ink_soft
font_name
	Inter-SemiBold
font_x_sz
	12
font_y_sz
	12
border_left_gap
	10
border_top_gap
	5
border_right_gap
	10
border_bottom_gap
	6
left_justify_text
	1
