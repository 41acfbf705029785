# A panel that stands alone, with an upper area for its title.
name
	PANEL_BACKGROUND_EXTENDED
image_filename
	card
image_path
	$HERE
border_left_gap
	14
border_top_gap
	38
border_right_gap
	14
border_bottom_gap
	14
