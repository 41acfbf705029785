# The upper left corner without tabs.
name
	PANEL_FRAME_TOP_NO_TABS_FIRST
image_filename
	frame_top_no_tabs_first
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
