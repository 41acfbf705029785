# The frame of a menu.
name
	FLOATING_MENU_POPUP
image_filename
	menu_popup
image_path
	$HERE
border_left_gap
	13
border_top_gap
	13
border_right_gap
	13
border_bottom_gap
	13
