# The lower row that holds objects.
name
	PANEL_FRAME_BOTTOM_MID_HOLDER
image_filename
	frame_bottom_mid_holder
image_path
	$HERE
