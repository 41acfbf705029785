// Whether the focus reaches the controls of a page, and can be seen on each.
#ifndef GALLERY_FOCUS_H
#define GALLERY_FOCUS_H

class GALLERY_CAMERA;

// Walks the focus once round the page on show with the Tab key, and writes a line for each control
// that looks the same with it as before. Yields the number of these.
int check_gallery_focus(GALLERY_CAMERA& camera);

#endif  // GALLERY_FOCUS_H
