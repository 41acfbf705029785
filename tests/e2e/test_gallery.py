"""The gallery of controls: its pages and their states as pictures, and by hand on a display."""

import os
import shutil
import subprocess
import tempfile
import time
import unittest

from display import KEEP, SCREENS, STORE, Display, count_different_pixels, run_tool
from harness import BUILD, LEAKS_OF_OTHERS

GALLERY = os.path.join(BUILD, "tools", "gallery", "gallery")
STORED = os.path.join(SCREENS, "gallery")
PAGES = ["buttons", "marks", "text", "fields", "grids", "menus", "dialogs", "panels", "profiles",
         "skin"]
# The pictures come out the same on every machine with the same fonts; a caret alone is more.
DIFFERENT_PIXELS = 8
TIMEOUT = 120
PAUSE = 0.1


def run_gallery(*arguments):
    return subprocess.run([GALLERY, *arguments], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, timeout=TIMEOUT)


class Options(unittest.TestCase):

    def test_names_its_pages(self):
        result = run_gallery("--list-pages")
        self.assertEqual((0, PAGES), (result.returncode, result.stdout.decode().split()))

    def test_refuses_what_it_does_not_know(self):
        for argument, answer in (("--page=nothing", b"no page nothing"),
                                 ("--skin=nothing", b"no skin nothing"),
                                 ("--skin=../skins/saffrane", b"no skin"),
                                 ("--data=/nowhere", b"in /nowhere"),
                                 ("--else", b"unknown argument --else")):
            result = run_gallery(argument)
            self.assertEqual(2, result.returncode, argument)
            self.assertIn(answer, result.stdout)
        self.assertEqual(1, run_gallery("--screenshot=/dev/null/x").returncode)

    def test_the_focus_can_be_seen_wherever_it_goes(self):
        for skin in ("saffrane", "vesper"):
            result = run_gallery("--check-focus", "--skin=" + skin)
            self.assertEqual((0, b""), (result.returncode, result.stdout), skin)


class Pictures(unittest.TestCase):
    """Pictures are stored with few colours, and compared with new ones of as few."""

    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="gallery_")

    def tearDown(self):
        shutil.rmtree(self.folder, ignore_errors=True)

    def reduce(self, path, target):
        run_tool("convert", "-limit", "thread", "1", path, "+dither", "-colors", "128", "-strip",
                 "-define", "png:compression-level=9", "-define", "png:compression-filter=0",
                 "-define", "png:color-type=3", target)

    def check(self, skin, wanted):
        result = run_gallery("--skin=" + skin, "--screenshot=" + self.folder)
        self.assertEqual((0, b""), (result.returncode, result.stdout))
        stored = os.path.join(STORED, skin)
        taken = sorted(name for name in os.listdir(self.folder) if wanted(name[:-len(".png")]))
        if KEEP:
            shutil.copytree(self.folder, os.path.join(KEEP, "gallery", skin), dirs_exist_ok=True)
        if STORE:
            shutil.rmtree(stored, ignore_errors=True)
            os.makedirs(stored)
            for name in taken:
                self.reduce(os.path.join(self.folder, name), os.path.join(stored, name))
            return
        self.assertEqual(sorted(os.listdir(stored)), taken)
        reduced = os.path.join(self.folder, "reduced.png")
        for name in taken:
            with self.subTest(picture=skin + "/" + name):
                self.reduce(os.path.join(self.folder, name), reduced)
                different, _ = count_different_pixels(reduced, os.path.join(stored, name))
                self.assertLessEqual(different, DIFFERENT_PIXELS)

    def test_light_skin(self):
        self.check("saffrane", lambda name: True)

    def test_dark_skin(self):
        states = ("buttons-hint", "dialogs-question", "fields-menu", "menus-sub_menu")
        self.check("vesper", lambda name: name in PAGES or name in states)


class Hands(unittest.TestCase):
    """Pointer and keys on a display of the test's own."""

    def setUp(self):
        self.display = Display()
        self.gallery = None

    def tearDown(self):
        if self.gallery:
            self.gallery.kill()
            self.gallery.wait()
        self.display.close()

    def start(self, page):
        self.output = os.path.join(self.display.folder, "output")
        with open(self.output, "w") as out:
            env = self.display.environment()
            env["LSAN_OPTIONS"] = "print_suppressions=0:suppressions=" + LEAKS_OF_OTHERS
            env["TMPDIR"] = self.display.folder  # nothing stays of one that has to be killed
            self.gallery = subprocess.Popen(
                [GALLERY, "--page=" + page], env=env,
                stdin=subprocess.DEVNULL, stdout=out, stderr=subprocess.STDOUT)
        self.window = self.display.wait_window("^Toolkit Gallery")
        self.wait_title(page)
        self.display.activate(self.window)

    def end(self):
        self.gallery.terminate()
        self.assertEqual(0, self.gallery.wait(TIMEOUT), self.reports())

    def wait_title(self, page):
        title = "Toolkit Gallery - " + page.capitalize()
        self.display.wait_for(lambda: self.display.title(self.window) == title)

    def reports(self):
        with open(self.output, encoding="latin-1") as file:
            return file.read().splitlines()

    def wait_report(self, text):
        try:
            self.display.wait_for(lambda: text in self.reports()[-1:])
        except AssertionError:
            self.fail("no report of %s, but %s" % (text, self.reports()[-3:]))

    # Each state lasts for some updates of a busy machine, as it does with a person.

    def key(self, *keys):
        self.display.run("xdotool", "key", "--delay", "120", *keys)

    def move(self, x, y):
        self.display.move(self.window, x, y)
        time.sleep(PAUSE)

    def press(self):
        self.display.press()
        time.sleep(PAUSE)

    def release(self):
        self.display.release()
        time.sleep(PAUSE)

    def colour(self, x, y):
        """Red, green and blue of a pixel."""
        path = self.display.picture(self.window, "look")
        output = run_tool("convert", path, "-crop", "1x1+%d+%d" % (x, y), "-depth", "8", "txt:-")
        numbers = output.splitlines()[1].split("(")[1].split(")")[0].split(",")
        return tuple(round(float(number)) for number in numbers[:3])

    def wait_colour(self, x, y, condition):
        self.display.wait_for(lambda: condition(*self.colour(x, y)))

    def test_all_pages_by_keyboard(self):
        self.start("buttons")
        for page in PAGES[1:]:
            self.key("Tab", "Return")
            self.wait_title(page)
        self.key("shift+Tab", "space")
        self.wait_title(PAGES[-2])
        for page in PAGES[-1:] + PAGES[:2]:
            self.key("ctrl+Next")
            self.wait_title(page)
        self.key("ctrl+Prior")
        self.wait_title("buttons")
        self.end()

    def test_skin_by_keyboard(self):
        self.start("skin")
        self.wait_colour(480, 600, lambda *rgb: min(rgb) > 200)
        self.key("Tab", "Return")
        self.wait_colour(480, 600, lambda *rgb: max(rgb) < 80)
        self.wait_title("skin")
        self.key("Tab", "Return")
        self.wait_colour(480, 600, lambda *rgb: min(rgb) > 200)
        self.end()

    def test_menus_and_lists_by_keyboard(self):
        self.start("menus")
        self.key(*["Tab"] * 6, "Return", "Down", "Return")
        self.wait_report('"Staff" was chosen')
        # Along the bar, into a menu of a menu and one of that.
        self.key("Return", "Right", "Right", "Down", "Down", "Right", "End", "Right", "Down",
                 "Return")
        self.wait_report('"Upper tier" was chosen')
        self.key("Return", "Escape")
        # The other menus, and the button below them.
        self.key(*["Tab"] * 9, "Return", "Down", "Down", "Return")
        self.wait_report('"Forward" was chosen')
        # By typing, and with the box closed.
        self.key("Tab", "Return", "k", "Return")
        self.wait_report('"Keeper" was chosen')
        self.key("Down")
        self.wait_report('"Back" was chosen')
        self.end()

    def test_typing_and_undoing(self):
        self.start("fields")
        self.move(400, 131)
        self.press()
        self.release()
        self.display.run("xdotool", "type", "--delay", "60", " FC")
        self.wait_report('The text is "Northgate FC"')
        self.key("ctrl+z")
        self.wait_report('The text is "Northgate F"')
        self.key("ctrl+z", "ctrl+z", "ctrl+shift+z")
        self.wait_report('The text is "Northgate "')
        self.key("Return")
        self.wait_report("Return was pressed")
        self.key("ctrl+a", "ctrl+x")
        self.wait_report('The text is ""')
        # To the password field, and on to the one for digits, which takes no letters.
        self.key("Tab", "Tab", "End", "x", "4")
        self.wait_report('The text is "19074"')
        self.end()

    def test_dragging_a_scroll_bar(self):
        self.start("grids")
        self.move(345, 407)
        self.press()
        self.move(420, 407)
        self.move(700, 300)
        self.wait_report("The scroll bar stands at 100")
        self.move(345, 407)
        self.wait_report("The scroll bar stands at 50")
        self.release()
        self.key("Right")
        self.wait_report("The scroll bar stands at 51")
        self.end()

    def test_dragging_and_answering_a_dialog(self):
        def is_accent(red, green, blue):
            return red > 200 and blue < 120

        self.start("dialogs")
        # The tabs behind "Dialogs", the skin's button, "Message", "Question".
        self.key(*["Tab"] * 6, "Return")
        self.wait_colour(480, 237, is_accent)
        self.move(500, 258)
        self.press()
        self.move(520, 300)
        self.move(560, 398)
        self.wait_colour(540, 377, is_accent)
        self.release()
        self.wait_colour(300, 237, lambda *rgb: not is_accent(*rgb))
        self.key("Tab", "Return")
        self.wait_report('"No" was the answer')
        self.key("Return")
        self.wait_colour(480, 237, is_accent)
        self.key("Escape")
        self.wait_colour(480, 237, lambda *rgb: not is_accent(*rgb))
        self.end()

    def test_hint_comes_and_goes(self):
        def is_dark(*rgb):
            return max(rgb) < 110

        self.start("buttons")
        self.move(100, 404)
        self.move(112, 404)
        self.wait_colour(122, 384, is_dark)
        self.press()
        self.wait_colour(122, 384, lambda *rgb: not is_dark(*rgb))
        self.release()
        self.wait_report('"Press" was pressed, 1 events so far')
        self.end()


if __name__ == "__main__":
    unittest.main()
