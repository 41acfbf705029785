// OPEN_GRAPHICS_SIZES, which lives with the platform's windows.
#ifndef MODULES_FRAMEWORKS_GRAPHICS_SIZES_H
#define MODULES_FRAMEWORKS_GRAPHICS_SIZES_H

#include "platform/open_graphics.h"

#endif  // MODULES_FRAMEWORKS_GRAPHICS_SIZES_H
