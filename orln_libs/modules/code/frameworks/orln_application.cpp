#include "modules/frameworks/orln_application.h"

ORLN_APPLICATION* ORLN_APPLICATION::instance = nullptr;

ORLN_APPLICATION::ORLN_APPLICATION() {
    delete instance;
    instance = this;
}

ORLN_APPLICATION::~ORLN_APPLICATION() {
    instance = nullptr;
}

void ORLN_APPLICATION::shutdown() {
    delete instance;
    instance = nullptr;
}
