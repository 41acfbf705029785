// The resolution that the user of an X11 desktop has chosen.
#ifndef PLATFORM_CODE_X11_RESOLUTION_H
#define PLATFORM_CODE_X11_RESOLUTION_H

// Dots per inch as the desktops announce their scale: the resource "Xft.dpi" of the X server that
// DISPLAY names. 0 if there is none.
float find_x11_resolution();
// The same from the text of the resources, which is null or lines "name: value".
float read_resource_resolution(const char* resources);

#endif  // PLATFORM_CODE_X11_RESOLUTION_H
