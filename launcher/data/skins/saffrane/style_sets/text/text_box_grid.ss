# The lines of a text.
name
	TEXT_BOX_GRID
image_filename
	
image_path
	$HERE
highlight_colour
	$accent
