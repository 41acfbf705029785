// The callback through which long archive operations report and can be stopped.
#ifndef MODULES_MISC_ARCHIVE_PROGRESS_H
#define MODULES_MISC_ARCHIVE_PROGRESS_H

#include <cstdint>
#include <functional>

// Called on the working thread, every few hundred kilobytes, with the bytes written so far. False
// stops the operation, which then fails. May be empty.
using ARCHIVE_PROGRESS = std::function<bool(std::uint64_t bytes_done)>;

#endif  // MODULES_MISC_ARCHIVE_PROGRESS_H
