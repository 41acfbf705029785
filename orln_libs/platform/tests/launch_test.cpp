// Programs are started on their own feet, failures come back in words, and the process helpers do
// what they say.
#include "platform/launch_service.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <thread>

#include "disk_fixture.h"
#include "platform/instance_lock.h"
#include "platform/process_tools.h"

namespace {

namespace fs = std::filesystem;

class Launch : public DISK_FIXTURE {
protected:
    // A shell script that writes what its commands print to "out" beside it, complete when there.
    fs::path script(const fs::path& file, const std::string& commands) {
        write(file, "#!/bin/sh\n{ " + commands + "; } > out.part 2>&1\nmv out.part out\n");
        return file;
    }
    // What the script in `folder` wrote; waits for it.
    static std::string output(const fs::path& folder) {
        for (int i = 0; i < 1000 && !fs::exists(folder / "out"); ++i) {
            orln_sleep(10);
        }
        const std::string text = read(folder / "out");
        fs::remove(folder / "out");
        return text;
    }
    std::string reason;
};

TEST_F(Launch, RunsAFileInItsOwnFolderAsItsOwnSession) {
    const fs::path program =
        script(base / "prog", "pwd -P; echo \"$#:$1:$2\"; ps -o sid= -p $$; echo $PPID");
    chmod(program.c_str(), 0600);
    ASSERT_TRUE(launch_program(program.c_str(), {"two words", "$HOME;'"}, reason)) << reason;
    struct stat info;
    ASSERT_EQ(0, stat(program.c_str(), &info));
    EXPECT_EQ(0700u, info.st_mode & 0777);
    std::istringstream lines(output(base));
    std::string folder, arguments;
    long session = 0;
    long parent = 0;
    std::getline(lines, folder);
    std::getline(lines, arguments);
    lines >> session >> parent;
    EXPECT_EQ(base.string(), folder);
    EXPECT_EQ("2:two words:$HOME;'", arguments);
    EXPECT_GT(session, 0);
    EXPECT_NE(static_cast<long>(getsid(0)), session);
    EXPECT_NE(static_cast<long>(getpid()), parent);
    EXPECT_EQ(-1, waitpid(-1, nullptr, WNOHANG));  // no child is left, running or dead
    EXPECT_EQ(ECHILD, errno);
}

TEST_F(Launch, InheritsNoDescriptorAndNoSignalSettings) {
    const fs::path program =
        script(base / "prog", "ls -l /proc/self/fd; grep -E 'SigBlk|SigIgn' /proc/self/status");
    int leaked[2];
    ASSERT_EQ(0, pipe(leaked));
    const int file = open((base / "prog").c_str(), O_RDONLY);  // deliberately not close-on-exec
    const int high = fcntl(file, F_DUPFD, 500);
    write(base / "secret", "x");
    const int secret = open((base / "secret").c_str(), O_RDONLY);
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGUSR1);
    pthread_sigmask(SIG_BLOCK, &blocked, &before);
    const auto old_handler = signal(SIGPIPE, SIG_IGN);
    ASSERT_TRUE(launch_program(program.c_str(), reason)) << reason;
    sigset_t now;
    pthread_sigmask(SIG_SETMASK, &before, &now);
    signal(SIGPIPE, old_handler);
    EXPECT_EQ(1, sigismember(&now, SIGUSR1));  // ours are as they were
    EXPECT_EQ(0, sigismember(&now, SIGUSR2));
    const std::string text = output(base);
    EXPECT_NE(std::string::npos, text.find(" 1 -> ")) << text;
    EXPECT_EQ(std::string::npos, text.find("secret")) << text;
    EXPECT_EQ(std::string::npos, text.find(" 500 -> ")) << text;
    // Standard input and error may be pipes of the test's caller; ours aren't among them.
    for (const int fd : leaked) {
        char name[64];
        char link[64];
        std::snprintf(link, sizeof link, "/proc/self/fd/%d", fd);
        const ssize_t length = readlink(link, name, sizeof name);
        ASSERT_GT(length, 0);
        EXPECT_EQ(std::string::npos, text.find(std::string(name, static_cast<std::size_t>(length))))
            << text;
    }
    EXPECT_NE(std::string::npos, text.find("SigBlk:\t0000000000000000")) << text;
    EXPECT_NE(std::string::npos, text.find("SigIgn:\t0000000000000000")) << text;
    for (const int fd : {leaked[0], leaked[1], file, high, secret}) {
        close(fd);
    }
}

TEST_F(Launch, ABundleStartsItsProgramForThisSystemFirst) {
    const fs::path contents = base / "client.app/Contents";
    script(contents / "MacOS/client", "echo mac");
    ASSERT_TRUE(launch_program((base / "client.app/").c_str(), reason)) << reason;
    EXPECT_EQ("mac\n", output(contents / "MacOS"));
    script(contents / "Linux/client", "echo linux");
    ASSERT_TRUE(launch_program((base / "client.app").c_str(), reason)) << reason;
    EXPECT_EQ("linux\n", output(contents / "Linux"));
}

TEST_F(Launch, FailuresComeBackInWords) {
    const auto fails = [&](const fs::path& path, const char* words) {
        reason.clear();
        EXPECT_FALSE(launch_program(path.c_str(), reason)) << path;
        EXPECT_NE(std::string::npos, reason.find(words)) << reason;
    };
    fails(base / "missing", "can't be found (No such file or directory)");
    fails("prog", "not absolute");
    fails("", "not absolute");
    fails(base, "is a folder and no program");
    fs::create_directories(base / "empty.app/Contents/Linux");
    fails(base / "empty.app", "holds no program empty");
    fs::create_directories(base / ".app");
    fails(base / ".app", "is a folder and no program");
    write(base / "text", "no program at all");
    fails(base / "text", "is not a program for this machine (Exec format error)");
    write(base / "damaged", std::string("\x7F"
                                        "ELF",
                                        4) +
                                std::string(60, '\xFF'));
    fails(base / "damaged", "is not a program for this machine");
    write(base / "nointerpreter", "#!/no/such/interpreter\n");
    fails(base / "nointerpreter", "can't be run (No such file or directory)");
    fails("/dev/null", "is no program");
    EXPECT_FALSE(launch_program(nullptr, reason));
    EXPECT_EQ(-1, waitpid(-1, nullptr, WNOHANG));
    EXPECT_EQ(ECHILD, errno);
}

TEST_F(Launch, WorksWhileOtherThreadsAllocateAndWithStandardInputClosed) {
    const fs::path program = script(base / "prog", "ls -l /proc/self/fd/0");
    std::atomic<bool> stop{false};
    std::thread busy([&] {
        while (!stop) {
            std::string text(1000, 'x');
            std::fprintf(stdout, "%.0s", text.c_str());
        }
    });
    const int kept = fcntl(0, F_DUPFD_CLOEXEC, 10);
    close(0);
    for (int i = 0; i < 30; ++i) {
        ASSERT_TRUE(launch_program(program.c_str(), reason)) << reason;
        EXPECT_NE(std::string::npos, output(base).find("/dev/null"));
    }
    if (kept >= 0) {
        dup2(kept, 0);
        close(kept);
    }
    stop = true;
    busy.join();
}

TEST_F(Launch, RunProgramEndsThisProcessOnlyOnSuccess) {
    DISK_MANAGER folder;
    EXPECT_FALSE(run_program(folder, "missing", &reason));
    EXPECT_NE(std::string::npos, reason.find("missing can't be found"));
    EXPECT_FALSE(run_program(folder, nullptr));
    script(base / "prog", "echo started");
    EXPECT_EXIT(
        {
            std::fputs("flushed", stderr);
            run_program(folder, "prog");
            _exit(9);
        },
        testing::ExitedWithCode(0), "flushed");
    EXPECT_EQ("started\n", output(base));
}

TEST_F(Launch, AddressesGoToTheBrowserWithoutAShell) {
    const std::string path = std::getenv("PATH");
    script(root / "bin/xdg-open", "echo \"$#:$1\"");
    chmod((root / "bin/xdg-open").c_str(), 0755);
    setenv("PATH", (std::string(":relative:") + (root / "bin").string() + ":" + path).c_str(), 1);
    const std::pair<const char*, const char*> cases[] = {
        {"example.org/a b", "1:http://example.org/a b\n"},
        {"https://example.org", "1:https://example.org\n"},
        {"-version", "1:http://-version\n"},
        {"$(touch pwned); `id`", "1:http://$(touch pwned); `id`\n"}};
    for (const auto& [url, line] : cases) {
        EXPECT_TRUE(open_url_in_default_browser(url));
        EXPECT_EQ(line, output(root / "bin"));
    }
    EXPECT_FALSE(open_url_in_default_browser(nullptr));
    setenv("PATH", "/nowhere", 1);
    EXPECT_FALSE(open_url_in_default_browser("example.org"));
    setenv("PATH", path.c_str(), 1);
}

class InstanceLock : public Launch {};

TEST_F(InstanceLock, OneHolderAtATimeAndNoneAfterAKill) {
    const DISK_MANAGER folder;
    int ready[2];
    ASSERT_EQ(0, pipe(ready));
    const pid_t child = fork();
    if (child == 0) {
        INSTANCE_LOCK theirs;
        const char held = theirs.acquire(folder, "lock") ? 'y' : 'n';
        if (::write(ready[1], &held, 1) == 1) {
            pause();
        }
        _exit(0);
    }
    char held = 0;
    ASSERT_EQ(1, ::read(ready[0], &held, 1));
    EXPECT_EQ('y', held);
    INSTANCE_LOCK lock;
    EXPECT_FALSE(lock.acquire(folder, "lock"));
    EXPECT_FALSE(lock.is_held());
    EXPECT_EQ(child, lock.get_holder());
    kill(child, SIGKILL);
    ASSERT_EQ(child, waitpid(child, nullptr, 0));
    EXPECT_TRUE(lock.acquire(folder, "lock"));
    EXPECT_EQ(getpid(), lock.get_holder());
    EXPECT_EQ(std::to_string(getpid()) + "\n", read(base / "lock"));

    INSTANCE_LOCK second;
    EXPECT_FALSE(second.acquire(folder, "lock"));
    EXPECT_TRUE(lock.acquire(folder, "lock"));  // again is no conflict with itself
    // A program that this one starts doesn't hold the lock when this one lets go.
    script(base / "prog", "sleep 0.2");
    ASSERT_TRUE(launch_program((base / "prog").c_str(), reason));
    lock.release();
    EXPECT_TRUE(second.acquire(folder, "lock"));
    output(base);
    write(base / "lock", "rubbish");
    EXPECT_FALSE(lock.acquire(folder, "lock"));
    EXPECT_EQ(0, lock.get_holder());
    EXPECT_FALSE(lock.acquire(folder, "no/lock"));
    close(ready[0]);
    close(ready[1]);
}

using testing::internal::CaptureStderr;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStderr;
using testing::internal::GetCapturedStdout;

TEST(ProcessTools, MessagesAreOneLineOfStandardError) {
    CaptureStderr();
    display_message("Title", "line\nsecond\n", 0);
    display_message(nullptr, "text", 0);
    display_message("title", nullptr, 0);
    handle_assert(nullptr, "x > 0");
    handle_assert("bad size", "size > 0");
    handle_assert("bad size", nullptr);
    display_message(std::string(300, 't').c_str(), std::string(300, 'x').c_str(), 1);
    EXPECT_EQ(
        "Title: line second\n"
        "Assert failed: Assertion (size > 0) failed: bad size\n"
        "Assert failed: Assertion failed: bad size\n" +
            std::string(255, 't') + ": " + std::string(255, 'x') + "\n",
        GetCapturedStderr());
    CaptureStdout();
    write_to_console("100%s\n");
    write_to_console(nullptr);
    std::fflush(stdout);
    EXPECT_EQ("100%s\n", GetCapturedStdout());
}

struct FLAG_ON_EXIT {
    ~FLAG_ON_EXIT() { std::fputs("destroyed", stderr); }
};

TEST(ProcessTools, ExitAppEndsAtOnce) {
    EXPECT_EXIT(
        {
            static FLAG_ON_EXIT flag;
            exit_app("no way on");
        },
        testing::ExitedWithCode(1), "^no way on\n$");
    EXPECT_EXIT(exit_app(nullptr), testing::ExitedWithCode(1), "^$");
}

TEST(ProcessTools, SleepsTheWholeTimeThroughSignals) {
    struct sigaction action = {};
    struct sigaction before;
    action.sa_handler = [](int) {};
    sigaction(SIGUSR1, &action, &before);
    const pthread_t sleeper = pthread_self();
    std::thread disturber([sleeper] {
        for (int i = 0; i < 5; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
            pthread_kill(sleeper, SIGUSR1);
        }
    });
    const std::uint32_t start = get_ms_count();
    orln_sleep(60);
    orln_sleep_microseconds(20000);
    const std::uint32_t slept = get_ms_count() - start;
    disturber.join();
    sigaction(SIGUSR1, &before, nullptr);
    EXPECT_GE(slept, 79u);
    EXPECT_LT(slept, 5000u);
}

}  // namespace
