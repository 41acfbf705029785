# The left end of the row of tabs.
name
	PANEL_FRAME_TOP_FIRST
image_filename
	frame_top_first
image_path
	$HERE
border_left_gap
	4
border_top_gap
	0
border_right_gap
	4
border_bottom_gap
	0
