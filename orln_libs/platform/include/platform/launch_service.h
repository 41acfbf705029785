// Starting other programs, as processes of their own.
#ifndef PLATFORM_LAUNCH_SERVICE_H
#define PLATFORM_LAUNCH_SERVICE_H

#include <string>
#include <vector>

// Starts the program at `path`, an absolute path:
//   - a folder "NAME.app" is a bundle: the program "NAME" in its "Contents/Linux", or else in its
//     "Contents/MacOS";
//   - a file is the program itself.
// The file is made executable for its owner first. The program runs in its own folder, in its own
// session, with the arguments behind its name; it keeps standard input, output and error, and no
// other descriptor of this process. It is nobody's child: nothing has to be waited for.
//
// True once the program is running. Otherwise false, and `reason` says in words why not: missing,
// not permitted, not a program for this machine. May be called while other threads run.
bool launch_program(const char* path, std::string& reason);
bool launch_program(const char* path, const std::vector<std::string>& arguments,
                    std::string& reason);

#endif  // PLATFORM_LAUNCH_SERVICE_H
