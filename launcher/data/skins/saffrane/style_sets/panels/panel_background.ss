# A panel on a frame: no card of its own.
name
	PANEL_BACKGROUND
image_filename
	
image_path
	$HERE
