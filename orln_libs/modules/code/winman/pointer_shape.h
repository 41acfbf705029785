// The shapes of the pointer that controls ask for, see change_mouse_icon.
#ifndef MODULES_CODE_WINMAN_POINTER_SHAPE_H
#define MODULES_CODE_WINMAN_POINTER_SHAPE_H

enum POINTER_SHAPE : signed char {
    POINTER_CLICKABLE = 1,
    POINTER_PRESSED = 2,
    POINTER_DRAGGABLE = 3,
    POINTER_DRAGGING = 4,
};

#endif  // MODULES_CODE_WINMAN_POINTER_SHAPE_H
