# A line across a text.
name
	TEXT_BOX_SEPARATOR
image_filename
	text_separator
image_path
	$HERE
