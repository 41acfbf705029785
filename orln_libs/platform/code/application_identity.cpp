#include "platform/application_identity.h"

namespace {

APPLICATION_IDENTITY application;

const char* ask(const char* (*function)(), const char* otherwise) {
    const char* text = function ? function() : nullptr;
    return text ? text : otherwise;
}

}  // namespace

void set_application_identity(const APPLICATION_IDENTITY& identity) {
    application = identity;
}

const char* identified_application_name() {
    return ask(application.get_application_name, "Tessarine");
}

const char* identified_unique_data_folder() {
    return ask(application.get_unique_data_folder, "");
}
