# A message: no frame of its own.
name
	DIALOG_MESSAGE_TEXT_BOX_BACKGROUND
image_filename
	
image_path
	$HERE
left_justify_text
	1
