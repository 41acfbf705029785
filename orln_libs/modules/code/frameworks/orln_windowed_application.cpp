#include "modules/frameworks/orln_windowed_application.h"

#include "modules/frameworks/orln_application.h"

bool ORLN_WINDOWED_APPLICATION::first_window_drawn = false;

ORLN_WINDOWED_APPLICATION* ORLN_WINDOWED_APPLICATION::get_instance() {
    return dynamic_cast<ORLN_WINDOWED_APPLICATION*>(ORLN_APPLICATION::get_instance());
}
