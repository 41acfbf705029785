// Making sure that what was written survives a loss of power.
#ifndef AUTOPATCH_DURABLE_FILE_H
#define AUTOPATCH_DURABLE_FILE_H

class DISK_MANAGER;

// Waits until the content of the closed file `name` in the folder of `disk` is on the disk.
bool flush_file_to_disk(const DISK_MANAGER& disk, const char* name);

// Waits until the names in the folder of `disk` are on the disk, as after a rename. Not every file
// system can; there is nothing a caller could do about that.
void flush_folder_to_disk(const DISK_MANAGER& disk);

#endif  // AUTOPATCH_DURABLE_FILE_H
