// ORLN_APPLICATION: the abstract root of the application class chain, and the one place through
// which every subsystem reaches the running application.
//
// The static operations at the end are supplied by the program that links this library; they say
// what the program is called and where its data lives.
#ifndef MODULES_FRAMEWORKS_ORLN_APPLICATION_H
#define MODULES_FRAMEWORKS_ORLN_APPLICATION_H

#include <cstdint>

class DISK_MANAGER;

class ORLN_APPLICATION {
public:
    // Destroys any earlier instance and publishes this one.
    ORLN_APPLICATION();
    ORLN_APPLICATION(const ORLN_APPLICATION&) = delete;
    ORLN_APPLICATION& operator=(const ORLN_APPLICATION&) = delete;
    virtual ~ORLN_APPLICATION();

    // The heartbeat, called by the periodic update on the main thread. True to go on.
    virtual bool monitor() = 0;
    // Reads the settings from `disk`, or from the configuration's own folder when it is null.
    virtual void read_from_config_file(DISK_MANAGER* disk) = 0;
    virtual void write_to_config_file(DISK_MANAGER* disk) = 0;
    virtual void output_error_to_database(const char* text, const char* file,
                                          std::int32_t line) = 0;
    virtual std::int32_t get_build_number() const = 0;
    virtual void initialise() = 0;
    virtual void destroy() = 0;
    virtual void startup_manual_singletons() = 0;
    virtual void shutdown_manual_singletons() = 0;

    // The running application, or null.
    static ORLN_APPLICATION* get_instance() { return instance; }
    // Destroys the running application, if any.
    static void shutdown();

    // Supplied by the program:
    static bool only_allow_one_instance();
    static bool should_close();
    static const char* get_instance_title();
    static const char* get_application_name();
    // Separates the data of parallel installations; null when there is nothing to separate.
    static const char* get_unique_data_folder();
    static const char* get_unique_identifier();
    // Reads the command line and constructs the application.
    static void create(short argc, char** argv);

private:
    static ORLN_APPLICATION* instance;
};

#endif  // MODULES_FRAMEWORKS_ORLN_APPLICATION_H
