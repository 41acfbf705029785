# The whole card. Its gaps are the shadow and the edge.
name
	PANEL_FRAME_BACKGROUND
image_filename
	frame_background
image_path
	$HERE
border_left_gap
	5
border_top_gap
	5
border_right_gap
	5
border_bottom_gap
	5
