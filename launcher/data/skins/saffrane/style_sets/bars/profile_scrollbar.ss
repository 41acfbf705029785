# The scroll bar of a table.
name
	PROFILE_SCROLLBAR
image_filename
	scroll_bar
image_path
	$HERE
