// The launcher's process entry: answers --help and --version, everything else is the application's.
#include <cstdio>
#include <cstring>

#include "modules/frameworks/application_loop.h"
#include "modules/frameworks/orln_application.h"

namespace {

constexpr const char* HELP =
    "usage: launcher [--gendata [--generate-3d]]\n"
    "\n"
    "Brings the game client up to date and starts it.\n"
    "\n"
    "  --gendata       write the add-on catalogue and the compiled skin of a source tree, then "
    "end\n"
    "  --generate-3d   with --gendata: include the 3D match view\n"
    "  --help          show this text\n"
    "  --version       show the launcher's version\n"
    "\n"
    "The server's address is in data/config/launcher.cfg (HOST_NAME, PORT_NUMBER).\n"
    "Installed clients live in the user's data folder; XDG_DATA_HOME moves it.\n";

}  // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--help") == 0) {
            std::fputs(HELP, stdout);
            return 0;
        }
        if (std::strcmp(argv[i], "--version") == 0) {
            std::puts("Tessarine Launcher " LAUNCHER_VERSION);
            return 0;
        }
    }
    return run_application(argc, argv, ORLN_APPLICATION::create);
}
