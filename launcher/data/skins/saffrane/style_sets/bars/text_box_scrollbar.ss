# The scroll bar of a text.
name
	TEXT_BOX_SCROLLBAR
image_filename
	scroll_bar
image_path
	$HERE
