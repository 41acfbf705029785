// A stand-in for the game client: prints its version and waits for a key.
//
// The version is the text of the file "version.txt" in the current folder, which is the client's
// own folder when the launcher starts it.
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>

namespace {

std::string read_version() {
    std::ifstream file("version.txt");
    std::string version;
    return std::getline(file, version) ? version : std::string("unknown");
}

}  // namespace

int main(int argc, char** argv) {
    bool quit = false;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--quit") == 0) {
            quit = true;
        } else {
            std::printf(
                "usage: demo_client [--quit]\n\n"
                "Prints the version of the client and waits for a key, or for the end of its "
                "input.\n\n"
                "  --quit   end at once\n");
            return std::strcmp(argv[i], "--help") == 0 ? 0 : 2;
        }
    }
    std::printf("Demo client version %s is running.\n", read_version().c_str());
    std::fflush(stdout);
    if (!quit) {
        if (::isatty(STDIN_FILENO)) {
            std::printf("Press Return to end it.\n");
            std::fflush(stdout);
        }
        char key;
        while (::read(STDIN_FILENO, &key, 1) < 0 && errno == EINTR) {
        }
    }
    std::printf("Demo client version %s ends.\n", read_version().c_str());
    return 0;
}
