#include "modules/winman/screen_object_looks.h"

WM_STYLE_SET WM_SCREEN_OBJECT_LOOKS::hint_style_set;

IMAGE WM_SCREEN_OBJECT_LOOKS::up_arrow_image;
IMAGE WM_SCREEN_OBJECT_LOOKS::down_arrow_image;
IMAGE WM_SCREEN_OBJECT_LOOKS::left_arrow_image;
IMAGE WM_SCREEN_OBJECT_LOOKS::right_arrow_image;
IMAGE WM_SCREEN_OBJECT_LOOKS::disabled_up_arrow_image;
IMAGE WM_SCREEN_OBJECT_LOOKS::disabled_down_arrow_image;
IMAGE WM_SCREEN_OBJECT_LOOKS::disabled_left_arrow_image;
IMAGE WM_SCREEN_OBJECT_LOOKS::disabled_right_arrow_image;
