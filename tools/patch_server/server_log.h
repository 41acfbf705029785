// The server's log: lines with the time in front, on standard output.
#ifndef TOOLS_PATCH_SERVER_SERVER_LOG_H
#define TOOLS_PATCH_SERVER_SERVER_LOG_H

// Writes one line. Any thread.
void server_log(const char* format, ...) __attribute__((format(printf, 1, 2)));

#endif  // TOOLS_PATCH_SERVER_SERVER_LOG_H
