// CLIENT_FRAMEWORK: a program that talks to a server. Adds the server's address to the settings.
#ifndef MODULES_FRAMEWORKS_CLIENT_FRAMEWORK_H
#define MODULES_FRAMEWORKS_CLIENT_FRAMEWORK_H

#include <cstdint>

#include "modules/frameworks/windowed_application_framework.h"
#include "platform/disk_manager.h"

class CLIENT_FRAMEWORK : public WINDOWED_APPLICATION_FRAMEWORK {
public:
    // Uses the configuration file `config_name` in the "config" folder of `folder`, which is
    // created when it is missing.
    CLIENT_FRAMEWORK(const char* config_name, FOLDER_ID folder);

    // Adds "HOST_NAME" and "PORT_NUMBER"; a missing key leaves its field as it is.
    void read_from_config_file(DISK_MANAGER* disk) override;
    void write_to_config_file(DISK_MANAGER* disk) override;

    const char* get_host_name() const { return host_name; }
    std::uint16_t get_port_number() const { return port_number; }
    // Cut at the field's size of 256.
    void set_host_name(const char* name);

protected:
    char host_name[256];
    std::uint16_t port_number;
};

#endif  // MODULES_FRAMEWORKS_CLIENT_FRAMEWORK_H
