# A box with a mark, and its label.
name
	DIALOG_CHECK_BOX
image_filename
	check_box
image_path
	$HERE
recolourable
	0
border_left_gap
	0
border_top_gap
	0
border_right_gap
	2
border_bottom_gap
	0
