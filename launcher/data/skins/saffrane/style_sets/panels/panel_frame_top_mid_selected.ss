# The row under the selected tab.
name
	PANEL_FRAME_TOP_MID_SELECTED
image_filename
	frame_top_mid_selected
image_path
	$HERE
recolourable
	0
border_left_gap
	0
border_top_gap
	0
border_right_gap
	0
border_bottom_gap
	2
