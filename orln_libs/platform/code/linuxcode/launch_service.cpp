#include "platform/launch_service.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "disk_path.h"

extern char** environ;

namespace {

constexpr int FIRST_OWN_DESCRIPTOR = 3;  // behind standard input, output and error
constexpr int DESCRIPTOR_LIMIT = 65536;  // where the kernel can't close a range

// What the started process tells its starter when it doesn't come to run the program.
struct LAUNCH_FAILURE {
    enum STEP : int { START, FOLDER, PROGRAM } step;
    int error;
};

// All that the child needs, made before the fork: afterwards only calls are allowed that are safe
// in a signal handler, because another thread may have held any lock at the fork.
struct LAUNCH_PLAN {
    const char* program;
    const char* folder;
    char* const* arguments;
    int report;  // write end of the pipe, closed by a successful exec
};

std::string with_error(const std::string& words, int error) {
    const char* text = strerrordesc_np(error);
    return words + " (" + (text ? text : "unknown error") + ")";
}

[[noreturn]] void report_and_end(int report, LAUNCH_FAILURE::STEP step) {
    const LAUNCH_FAILURE failure{step, errno};
    while (write(report, &failure, sizeof failure) < 0 && errno == EINTR) {
    }
    _exit(127);
}

void close_own_descriptors(int kept) {
    const auto first = static_cast<unsigned>(FIRST_OWN_DESCRIPTOR);
    const auto middle = static_cast<unsigned>(kept);
    if ((middle == first || close_range(first, middle - 1, 0) == 0) &&
        close_range(middle + 1, ~0u, 0) == 0) {
        return;
    }
    for (int fd = FIRST_OWN_DESCRIPTOR; fd < DESCRIPTOR_LIMIT; ++fd) {
        if (fd != kept) {
            close(fd);
        }
    }
}

// In the child: fresh signal settings. All signals are still blocked from before the fork.
void reset_signals() {
    struct sigaction standard = {};
    standard.sa_handler = SIG_DFL;
    for (int number = 1; number < NSIG; ++number) {
        sigaction(number, &standard, nullptr);
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

// In the grandchild: becomes the program.
[[noreturn]] void become_program(const LAUNCH_PLAN& plan) {
    // A standard descriptor that is closed, or stands for a file of ours, would be taken by the
    // program's first own file.
    for (int fd = 0; fd < FIRST_OWN_DESCRIPTOR; ++fd) {
        const int flags = fcntl(fd, F_GETFD);
        if (flags < 0 || (flags & FD_CLOEXEC)) {
            close(fd);
            open("/dev/null", O_RDWR);  // the lowest free one, so this one
        }
    }
    close_own_descriptors(plan.report);
    if (chdir(plan.folder) != 0) {
        report_and_end(plan.report, LAUNCH_FAILURE::FOLDER);
    }
    reset_signals();
    execve(plan.program, plan.arguments, environ);
    report_and_end(plan.report, LAUNCH_FAILURE::PROGRAM);
}

// Forks twice: the first child ends at once, so the program belongs to nobody here, and the first
// child is waited for, so nothing is left of it.
bool start_detached(const LAUNCH_PLAN& plan) {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    const pid_t child = fork();
    if (child == 0) {
        setsid();
        const pid_t grandchild = fork();
        if (grandchild == 0) {
            become_program(plan);
        }
        if (grandchild < 0) {
            report_and_end(plan.report, LAUNCH_FAILURE::START);
        }
        _exit(0);
    }
    const int error = errno;
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    if (child < 0) {
        errno = error;
        return false;
    }
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
    return true;
}

bool start_program(const std::string& program, const std::string& folder,
                   const std::vector<std::string>& arguments, std::string& reason) {
    std::vector<char*> pointers = {const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments) {
        pointers.push_back(const_cast<char*>(argument.c_str()));
    }
    pointers.push_back(nullptr);

    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        reason = with_error("no process could be started", errno);
        return false;
    }
    DESCRIPTOR reader(ends[0]);
    // Not among the standard three, even if those are closed here.
    DESCRIPTOR writer(fcntl(ends[1], F_DUPFD_CLOEXEC, FIRST_OWN_DESCRIPTOR));
    close(ends[1]);
    if (!writer.is_open() ||
        !start_detached({program.c_str(), folder.c_str(), pointers.data(), writer.get()})) {
        reason = with_error("no process could be started", errno);
        return false;
    }
    writer.reset();

    LAUNCH_FAILURE failure;
    ssize_t got;
    do {
        got = read(reader.get(), &failure, sizeof failure);
    } while (got < 0 && errno == EINTR);
    if (got != static_cast<ssize_t>(sizeof failure)) {
        return true;  // the pipe was closed by the exec
    }
    switch (failure.step) {
        case LAUNCH_FAILURE::START:
            reason = with_error("no process could be started", failure.error);
            break;
        case LAUNCH_FAILURE::FOLDER:
            reason = with_error("the folder " + folder + " can't be entered", failure.error);
            break;
        case LAUNCH_FAILURE::PROGRAM:
            reason =
                with_error(failure.error == ENOEXEC ? program + " is not a program for this machine"
                                                    : program + " can't be run",
                           failure.error);
            break;
    }
    return false;
}

bool is_file(const std::string& path) {
    struct stat info;
    return stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

// The program inside a bundle folder "NAME.app"; empty, with the reason, if there is none.
std::string program_of_bundle(const std::string& bundle, std::string& reason) {
    const std::string ending = ".app";
    const std::size_t slash = bundle.rfind('/');
    const std::string folder_name = bundle.substr(slash + 1);
    if (folder_name.size() <= ending.size() ||
        folder_name.compare(folder_name.size() - ending.size(), ending.size(), ending) != 0) {
        reason = bundle + " is a folder and no program";
        return "";
    }
    const std::string name = folder_name.substr(0, folder_name.size() - ending.size());
    for (const char* inside : {"/Contents/Linux/", "/Contents/MacOS/"}) {
        const std::string program = bundle + inside + name;
        if (is_file(program)) {
            return program;
        }
    }
    reason = bundle + " holds no program " + name;
    return "";
}

}  // namespace

bool launch_program(const char* path, std::string& reason) {
    return launch_program(path, {}, reason);
}

bool launch_program(const char* path, const std::vector<std::string>& arguments,
                    std::string& reason) {
    std::string program = path ? path : "";
    while (program.size() > 1 && program.back() == '/') {
        program.pop_back();
    }
    struct stat info;
    if (program.empty() || program[0] != '/') {
        reason = "the program's path is not absolute";
        return false;
    }
    if (stat(program.c_str(), &info) != 0) {
        reason = with_error(program + " can't be found", errno);
        return false;
    }
    if (S_ISDIR(info.st_mode)) {
        program = program_of_bundle(program, reason);
        if (program.empty() || stat(program.c_str(), &info) != 0) {
            return false;
        }
    }
    if (!S_ISREG(info.st_mode)) {
        reason = program + " is no program";
        return false;
    }
    if (!(info.st_mode & S_IXUSR)) {
        // If that fails the start itself tells why it can't be.
        chmod(program.c_str(), (info.st_mode & 07777) | S_IXUSR);
    }
    return start_program(program, program.substr(0, program.rfind('/') + 1), arguments, reason);
}
