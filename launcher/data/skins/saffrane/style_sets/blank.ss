# Nothing to see: for what only holds other things.
name
	BLANK
image_filename
	
image_path
	$HERE
