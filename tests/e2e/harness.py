"""What the end-to-end tests share: an installation of the launcher, a published folder and an
update server, all real processes in a temporary folder of their own, on the loopback interface."""

import os
import re
import resource
import shutil
import signal
import socket
import subprocess
import tempfile
import time
import unittest

BUILD = os.environ["KV_BUILD_DIR"]
LAUNCHER = os.path.join(BUILD, "launcher", "launcher")
PATCH_SERVER = os.path.join(BUILD, "tools", "patch_server", "patch_server")
PATCH_PUBLISH = os.path.join(BUILD, "tools", "patch_publish", "patch_publish")
DEMO_CLIENT = os.path.join(BUILD, "tools", "demo_client", "demo_client")
LEAKS_OF_OTHERS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "leaks_of_others.txt")
SKIN_DATA = os.path.join(BUILD, "data")
with open(os.path.join(BUILD, "CMakeCache.txt")) as cache:
    # The sanitizer of undefined behaviour, which needs descriptors of its own for its checks.
    CHECKS_BEHAVIOUR = re.search(r"^KV_SANITIZE:.*undefined", cache.read(), re.M) is not None

# Generous: sanitizers and a busy machine make everything slower.
TIMEOUT = 90


class Result:
    """How a run of the launcher went."""

    def __init__(self, code, output, seconds):
        self.code = code
        self.output = output
        self.seconds = seconds

    def started_version(self):
        """The version of the client that ran, or None."""
        match = re.search(r"Demo client version (\S+) is running", self.output)
        return match.group(1) if match else None


class World:
    """One machine with a launcher, and one update server."""

    def __init__(self):
        self.root = tempfile.mkdtemp(prefix="launcher_e2e_")
        self.base = os.path.join(self.root, "installation")
        self.user = os.path.join(self.root, "user")
        self.published = os.path.join(self.root, "published")
        self.program = os.path.join(self.base, "launcher.app", "Contents", "Linux", "launcher")
        os.makedirs(os.path.dirname(self.program))
        os.makedirs(os.path.join(self.base, "data", "config"))
        os.makedirs(self.user)
        os.makedirs(self.published)
        shutil.copy2(LAUNCHER, self.program)
        self.server = None
        self.server_log = None
        self.port = 1
        self.refusing = []

    def close(self):
        self.stop_server()
        for one in self.refusing:
            one.close()
        subprocess.run(["chmod", "-R", "u+rwx", self.root], check=False)
        shutil.rmtree(self.root, ignore_errors=True)

    # --- the published folder

    def make_client(self, version, files=(), size=0, exe="client"):
        """A folder with a demo client of that version and `size` bytes of ballast."""
        folder = os.path.join(self.root, "client_%s" % version)
        shutil.rmtree(folder, ignore_errors=True)
        os.makedirs(folder)
        shutil.copy2(DEMO_CLIENT, os.path.join(folder, exe))
        write_text(os.path.join(folder, "autopatch.cfg"), "EXE_NAME\n\t%s\n" % exe)
        write_text(os.path.join(folder, "version.txt"), "%s\n" % version)
        if size:
            with open(os.path.join(folder, "ballast.bin"), "wb") as out:
                out.write(os.urandom(size))
        for name, text in files:
            os.makedirs(os.path.dirname(os.path.join(folder, name)), exist_ok=True)
            write_text(os.path.join(folder, name), text)
        return folder

    def publish(self, version, folder=None, size=200000, **options):
        if folder is None and options.get("type", "app") == "app":
            folder = self.make_client(version, size=size)
        arguments = [PATCH_PUBLISH, "--publish", self.published, "--version", str(version)]
        if folder is not None:
            arguments += ["--source", folder]
        for name, value in options.items():
            arguments.append("--" + name.replace("_", "-"))
            if value is not True:
                arguments.append(str(value))
        subprocess.run(arguments, check=True, stdout=subprocess.DEVNULL, env=self.environment())

    # --- the server

    def start_server(self, *arguments, descriptors=None):
        """At a free port; with so many descriptors at most."""
        def limit():
            resource.setrlimit(resource.RLIMIT_NOFILE, (descriptors, descriptors))

        self.stop_server()
        self.close_log()
        self.server_log = open(os.path.join(self.root, "server.log"), "w+")
        self.server = subprocess.Popen(
            [PATCH_SERVER, "--publish", self.published, "--port", "0"] + list(arguments),
            stdout=self.server_log, stderr=subprocess.STDOUT, env=self.environment("server"),
            preexec_fn=limit if descriptors else None)
        self.wait_for(lambda: re.search(r"serving .* port (\d+)", self.read_server_log()))
        self.port = int(re.search(r"serving .* port (\d+)", self.read_server_log()).group(1))
        self.configure()

    def closed_port(self):
        """A port where connections are refused, and that nobody else can be given meanwhile."""
        self.refusing.append(socket.socket())
        self.refusing[-1].bind(("127.0.0.1", 0))
        return self.refusing[-1].getsockname()[1]

    def close_log(self):
        if self.server_log:
            self.server_log.close()
            self.server_log = None

    def stop_server(self):
        if self.server:
            self.server.send_signal(signal.SIGTERM)
            code = self.server.wait(TIMEOUT)
            self.server = None
            self.close_log()
            assert code == 0, "the server ended with code %s:\n%s" % (code, self.read_server_log())

    def read_server_log(self):
        if self.server is not None and self.server.poll() is not None:
            raise AssertionError("the server ended early")
        with open(os.path.join(self.root, "server.log")) as log:
            return log.read()

    def wait_for(self, condition, seconds=TIMEOUT):
        end = time.monotonic() + seconds
        while not condition():
            if time.monotonic() > end:
                raise AssertionError("waited too long")
            time.sleep(0.01)

    # --- the launcher

    def environment(self, user="user", display=None):
        """Without a display, unless one is named."""
        env = dict(os.environ)
        env["XDG_DATA_HOME"] = os.path.join(self.root, user)
        env["HOME"] = self.root
        for name in ("DISPLAY", "WAYLAND_DISPLAY", "SDL_VIDEODRIVER"):
            env.pop(name, None)
        env["LSAN_OPTIONS"] = "print_suppressions=0:suppressions=" + LEAKS_OF_OTHERS
        if display is not None:
            env["DISPLAY"] = display
        return env

    def configure(self, **keys):
        settings = {"HOST_NAME": "127.0.0.1", "PORT_NUMBER": self.port, "AUTO_LAUNCH": 1}
        settings.update(keys)
        write_text(os.path.join(self.base, "data", "config", "launcher.cfg"),
                   "".join("%s\n\t%s\n" % item for item in settings.items()))

    def install_skin(self):
        """What the windows need: pictures, skins and fonts. Not compiled, so that the splash can be
        looked at while the launcher compiles the skin."""
        shutil.copytree(SKIN_DATA, os.path.join(self.base, "data"), dirs_exist_ok=True,
                        ignore=shutil.ignore_patterns("skin.bin"))

    def forget_compiled_skins(self):
        """A launcher leaves them behind, and the next one would load them at once."""
        skins = os.path.join(self.base, "data", "skins")
        for folder, _, names in os.walk(skins):
            if "skin.bin" in names:
                os.remove(os.path.join(folder, "skin.bin"))

    def start_launcher(self, *arguments, display=None):
        return subprocess.Popen([self.program] + list(arguments), stdin=subprocess.DEVNULL,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                env=self.environment(display=display))

    def run_launcher(self, *arguments, timeout=TIMEOUT):
        begin = time.monotonic()
        process = self.start_launcher(*arguments)
        try:
            output = process.communicate(timeout=timeout)[0].decode(errors="replace")
        except subprocess.TimeoutExpired:
            process.kill()
            output = process.communicate()[0].decode(errors="replace")
            raise AssertionError("the launcher hangs:\n" + output + self.read_server_log())
        return Result(process.returncode, output, time.monotonic() - begin)

    # --- what is installed

    def add_ons(self, *names):
        return os.path.join(self.user, "Corvane", "Tessarine", "add_ons", *names)

    def versions(self):
        folder = self.add_ons("client")
        return sorted(os.listdir(folder)) if os.path.isdir(folder) else []

    def downloads(self):
        folder = os.path.join(self.user, "Corvane", "Tessarine", "temp", "downloads")
        return sorted(os.listdir(folder)) if os.path.isdir(folder) else []


def write_text(path, text):
    with open(path, "w") as out:
        out.write(text)


class WorldTest(unittest.TestCase):
    """A test with a world of its own."""

    def setUp(self):
        self.world = World()

    def tearDown(self):
        self.world.close()

    def new_world(self):
        self.world.close()
        self.world = World()
        return self.world

    def assert_started(self, result, version):
        self.assertEqual(str(version), result.started_version(), result.output)
        self.assertEqual(0, result.code, result.output)


# Each way in which archives and messages travel.
TRANSPORTS = [
    ("stream", ("--transfer", "stream")),
    ("stream with keys", ("--transfer", "stream", "--key-exchange")),
    ("blocks", ("--transfer", "blocks", "--block-size", "8192", "--checkpoint-every", "4")),
    ("blocks with keys", ("--transfer", "blocks", "--block-size", "8192", "--checkpoint-every", "4",
                          "--key-exchange")),
]


def each_transport(test):
    """Runs a test method once for each transport, each time in a new world."""

    def run(self):
        for name, arguments in TRANSPORTS:
            with self.subTest(transport=name):
                self.new_world()
                test(self, arguments)

    run.__name__ = test.__name__
    run.__doc__ = test.__doc__
    return run
