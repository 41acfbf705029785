# The row of tabs. Its lower gap is the line under the tabs.
name
	PANEL_FRAME_TOP_MID
image_filename
	frame_top_mid
image_path
	$HERE
border_left_gap
	0
border_top_gap
	0
border_right_gap
	0
border_bottom_gap
	2
