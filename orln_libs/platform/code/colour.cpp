#include "platform/colour.h"

unsigned char COLOUR::alpha_solid_threshold = 255;
