# The line between groups of a menu.
name
	FLOATING_MENU_SEPARATOR
image_filename
	menu_separator
image_path
	$HERE
