# A long table with a heading that stays.
name
	PROFILE_GRID_REPORT
image_filename
	row
image_path
	$HERE
recolourable
	0
fg_colour
	$line
highlight_colour
	$accent
grid_fix_top_row
	1
grid_type_lines
	1
