# A table of labels and values.
name
	PROFILE_GRID
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
grid_type_lines
	1
