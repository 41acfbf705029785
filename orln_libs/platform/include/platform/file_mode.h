// FILE_MODE: how a file is opened.
#ifndef PLATFORM_FILE_MODE_H
#define PLATFORM_FILE_MODE_H

enum FILE_MODE {
    FILE_READ = 0,
    FILE_WRITE = 1,   // starts an empty file
    FILE_APPEND = 2,  // keeps what is there and goes on behind it
};

#endif  // PLATFORM_FILE_MODE_H
