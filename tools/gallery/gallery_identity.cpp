// What this program supplies to ORLN_APPLICATION: its names and its creation.
#include "gallery.h"

bool ORLN_APPLICATION::only_allow_one_instance() {
    return false;
}

bool ORLN_APPLICATION::should_close() {
    return true;
}

const char* ORLN_APPLICATION::get_instance_title() {
    return "Toolkit Gallery";
}

const char* ORLN_APPLICATION::get_application_name() {
    return "Gallery";
}

const char* ORLN_APPLICATION::get_unique_data_folder() {
    return nullptr;
}

const char* ORLN_APPLICATION::get_unique_identifier() {
    return "Corvane.QVL.Gallery";
}

void ORLN_APPLICATION::create(short argc, char** argv) {
    GALLERY_OPTIONS options;
    std::string error;  // main has looked at it
    parse_gallery_options(argc, argv, options, error);
    // The instance belongs to ORLN_APPLICATION, whose shutdown deletes it.
    new GALLERY(options);
}
