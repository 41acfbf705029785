// What the platform layer must know about the application above it, for the user's folders.
#ifndef PLATFORM_APPLICATION_IDENTITY_H
#define PLATFORM_APPLICATION_IDENTITY_H

// The application fills this in once, before other threads run. A null function counts as unset.
struct APPLICATION_IDENTITY {
    const char* (*get_application_name)() = nullptr;    // unset: "Tessarine"
    const char* (*get_unique_data_folder)() = nullptr;  // unset: none
};

void set_application_identity(const APPLICATION_IDENTITY& identity);

// What the application said, never null. An empty text means that the component is left out.
const char* identified_application_name();
const char* identified_unique_data_folder();

#endif  // PLATFORM_APPLICATION_IDENTITY_H
