# The grid that a page or dialog is laid out with.
name
	DIALOG_LAYOUT_GRID
image_filename
	
image_path
	$HERE
highlight_colour
	$accent
grid_no_scrollbar
	1
