"""The launcher in its windows: on a display of its own, and where nobody sees them."""

import os
import shutil
import signal
import struct
import unittest
import zlib

from display import Display
from harness import SKIN_DATA, TIMEOUT, WorldTest, write_text

SPLASH, MAIN, ERROR = (446, 208), (800, 500), (500, 250)
TITLE = "Tessarine Launcher"


def read_png(path):
    """The size of a PNG file, and its rows as they are filtered."""
    with open(path, "rb") as file:
        data = file.read()
    assert data[:8] == b"\x89PNG\r\n\x1a\n", path
    at, pixels, size = 8, b"", None
    while at < len(data):
        length, kind = struct.unpack(">I4s", data[at:at + 8])
        body = data[at + 8:at + 8 + length]
        if kind == b"IHDR":
            size = struct.unpack(">II", body[:8])
        elif kind == b"IDAT":
            pixels += body
        at += 12 + length
    return size, zlib.decompress(pixels)


class Windows(WorldTest):

    def setUp(self):
        super().setUp()
        self.world.install_skin()
        self.pictures = os.path.join(self.world.root, "pictures")
        os.makedirs(self.pictures)
        self.launcher = None
        self.display = None

    def tearDown(self):
        if self.launcher and self.launcher.poll() is None:
            self.launcher.kill()
        if self.launcher:
            self.launcher.communicate()
        if self.display:
            self.display.close()
        super().tearDown()

    def start(self, *arguments, display=None):
        self.launcher = self.world.start_launcher("--screenshot=" + self.pictures, *arguments,
                                                  display=display)
        return self.launcher

    def start_on_display(self, *arguments):
        self.display = Display()
        return self.start(*arguments, display=self.display.name)

    def picture(self, name):
        path = os.path.join(self.pictures, name + ".png")

        def there():
            if not os.path.exists(path) and self.launcher.poll() is not None:
                raise AssertionError("ended early:\n" + self.output())
            return os.path.exists(path)

        self.world.wait_for(there)
        return read_png(path)

    def ask_for_picture(self, number):
        self.launcher.send_signal(signal.SIGUSR1)
        return self.picture("picture_%d" % number)

    def press(self, window, *keys):
        self.display.activate(window)
        self.display.key("--delay", "60", *keys)

    def output(self):
        return self.launcher.communicate(timeout=TIMEOUT)[0].decode(errors="replace")

    def assert_shows_something(self, picture, size):
        self.assertEqual(size, picture[0])
        self.assertGreater(len(set(picture[1])), 16)

    def stall_a_download(self):
        self.world.publish(1, size=1000000)
        self.world.start_server("--transfer", "blocks", "--fault", "stall-after:300000")

    def test_pages_are_drawn_where_nobody_sees_them(self):
        self.stall_a_download()
        self.start()
        self.assert_shows_something(self.picture("splash"), SPLASH)
        self.assert_shows_something(self.picture("download"), MAIN)
        for number in (1, 2):
            self.assert_shows_something(self.ask_for_picture(number), MAIN)
        self.launcher.terminate()
        self.assertEqual("", self.output(), "windows don't write to the console")
        self.assertEqual(0, self.launcher.returncode)

    def test_a_first_installation_starts_the_client(self):
        self.world.publish(3)
        self.world.start_server()
        self.start_on_display()
        self.assertIn("Demo client version 3 is running", self.output())
        self.assert_shows_something(self.picture("splash"), SPLASH)

    def test_error_page_ends_with_return(self):
        self.world.configure(PORT_NUMBER=self.world.closed_port())
        self.start_on_display()
        self.assert_shows_something(self.picture("error"), ERROR)
        window = self.display.wait_window(TITLE)
        self.press(window, "Return")
        self.assertEqual("", self.output())
        self.assertEqual(0, self.launcher.returncode)

    def test_launch_game_button_appears_without_auto_launch(self):
        self.world.publish(5)
        self.world.start_server()
        self.world.configure(AUTO_LAUNCH=0)
        self.start_on_display()
        self.picture("download")
        self.world.wait_for(lambda: self.world.versions() == ["app_5"])
        window = self.display.wait_window(TITLE)
        self.assertIsNone(self.launcher.poll())
        self.press(window, "Return")
        self.assertIn("Demo client version 5 is running", self.output())

    def test_updates_come_in_time_during_a_download(self):
        self.world.publish(2, size=20000000)
        self.world.start_server("--rate", "8000")
        table = os.path.join(self.world.root, "lateness.txt")
        self.start_on_display("--lateness=" + table)
        self.assertIn("Demo client version 2 is running", self.output())
        with open(table) as file:
            rows = {line.split()[0]: line.split()[1:] for line in file}
        self.assertEqual(["page", "splash", "download"], list(rows)[:1] + list(rows)[-2:])
        self.assertGreater(int(rows["download"][0]), 5)
        self.assertEqual(int(rows["download"][0]), sum(int(n) for n in rows["download"][2:]))


class Generate(WorldTest):
    """--gendata in a build tree: no window, no network."""

    def setUp(self):
        super().setUp()
        self.world.install_skin()
        self.tree = os.path.join(self.world.root, "oqvl")
        # The catalogue goes beside the installation.
        self.add_ons = os.path.join(self.world.root, "add_ons")
        os.makedirs(self.add_ons)
        self.put("shared/code/europe/main/version.h", "#define BUILD_NUMBER 4711\n")
        self.put("client/add_ons/skins/saffrane/skin.cfg", "internal_version\n\t12\n")

    def put(self, path, text):
        path = os.path.join(self.tree, path)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        write_text(path, text)

    def catalogue(self):
        return os.path.join(self.add_ons, "add_ons.bin")

    def compiled_skin(self):
        return os.path.join(self.world.base, "data", "skins", "saffrane", "skin.bin")

    def test_writes_compiled_skin_and_catalogue(self):
        if os.path.exists(self.compiled_skin()):
            os.remove(self.compiled_skin())
        result = self.world.run_launcher("--verbose--gendata")
        self.assertEqual(0, result.code, result.output)
        self.assertIn("Got application build number 4711", result.output)
        self.assertIn("Got default skin (saffrane) build number 12", result.output)
        # The same bytes as those that the build has compiled.
        with open(self.compiled_skin(), "rb") as here, \
                open(os.path.join(SKIN_DATA, "skins", "saffrane", "skin.bin"), "rb") as built:
            self.assertTrue(here.read() == built.read())
        with open(self.catalogue(), "rb") as file:
            content = file.read()
        self.assertIn(b"saffrane", content)
        self.assertNotIn(b"match3d", content)
        self.assertFalse(os.path.exists(self.world.add_ons("add_ons.bin")))

    def test_launcher_and_server_understand_the_catalogue(self):
        self.assertEqual(0, self.world.run_launcher("--gendata").code)
        self.world.publish(4711)
        self.world.start_server()
        shutil.copytree(self.world.make_client(4711), self.world.add_ons("client", "app_4711"))
        shutil.copy(self.catalogue(), self.world.add_ons("add_ons.bin"))
        result = self.world.run_launcher()
        self.assert_started(result, 4711)
        self.assertIn("None required", result.output)
        # The server writes the line when it has noticed that the launcher is gone.
        self.world.wait_for(lambda: "has app/4711" in self.world.read_server_log())

    def test_three_d_view_with_the_components_that_are_there(self):
        self.put("client/add_ons/match3d/defaults.cfg", "version\n\t9\n")
        self.put("client/add_ons/match3d/anims/defaults.cfg", "version\n\t8\n")
        result = self.world.run_launcher("--generate-3d", "--gendata")
        self.assertEqual(0, result.code, result.output)
        self.assertIn("Got 3D add on (anims) build number 8", result.output)
        with open(self.catalogue(), "rb") as file:
            content = file.read()
        self.assertIn(b"match3d", content)
        self.assertIn(b"anims", content)
        self.assertNotIn(b"textures", content)

    def test_what_is_missing_is_told_and_fails(self):
        shutil.rmtree(os.path.join(self.tree, "shared"))
        result = self.world.run_launcher("--gendata")
        self.assertEqual(1, result.code, result.output)
        self.assertIn("Failed to get to shared/main folder", result.output)

        shutil.rmtree(os.path.join(self.world.base, "data", "skins"))
        result = self.world.run_launcher("--gendata")
        self.assertEqual(1, result.code, result.output)
        self.assertIn("Failed to generate the skin (saffrane)", result.output)

        shutil.rmtree(self.add_ons)
        result = self.world.run_launcher("--gendata")
        self.assertEqual(1, result.code, result.output)
        self.assertIn("Failed to get to a folder add_ons beside " + self.world.base, result.output)


if __name__ == "__main__":
    unittest.main()
