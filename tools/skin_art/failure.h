// How the generator ends when it can't go on.
#ifndef SKIN_ART_FAILURE_H
#define SKIN_ART_FAILURE_H

// Writes the message to the error stream and ends the program with the exit status 1.
[[noreturn]] void fail(const char* format, ...) __attribute__((format(printf, 1, 2)));

#endif  // SKIN_ART_FAILURE_H
