# The lower row.
name
	PANEL_FRAME_BOTTOM_MID
image_filename
	frame_bottom_mid
image_path
	$HERE
