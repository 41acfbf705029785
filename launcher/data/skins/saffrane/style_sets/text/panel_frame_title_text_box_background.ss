# The title of a frame: no frame of its own.
name
	PANEL_FRAME_TITLE_TEXT_BOX_BACKGROUND
image_filename
	
image_path
	$HERE
left_justify_text
	1
