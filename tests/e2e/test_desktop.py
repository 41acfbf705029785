"""The launcher on a desktop: seen, and worked by pointer and keyboard.

The stored pictures are in screens/; display.py tells how they are made anew."""

import io
import os
import random
import re
import subprocess
import tarfile
import unittest

from display import PICTURE_TOLERANCE, STORE, Display
from gate import Gate
from harness import TIMEOUT, Result, WorldTest, write_text
from test_faults import sessions

TITLE = "^Tessarine Launcher$"
DOWNLOADING = "^Downloading "
SUPPORT = "http://support.tessarine.example/index.php?_m=knowledgebase&_a=viewarticle" \
          "&kbarticleid=%d&nav=0,4"

# Rectangles (x, y, width, height) and points of the pages.
ANIMATION = (95, 150, 32, 32)
PROGRESS, PROGRESS_WORDS = (40, 4, 720, 32), (260, 10, 280, 20)
CANCEL, CANCEL_PART = (400, 60), (276, 38, 248, 44)
LINK, LINK_PART = (430, 355), (340, 342, 180, 28)
CHECK_BOX, CHECK_LABEL, CHECK_PART = (55, 479), (200, 479), (40, 466, 330, 28)
QUESTION_PART = (190, 160, 420, 176)
YES, NO, ANSWERS_PART = (491, 302), (560, 302), (450, 282, 150, 40)
NOWHERE = (780, 250)
OK = (250, 222)


class Desktop(WorldTest):
    """A launcher on a display, with a browser that writes down what it is to show."""

    def setUp(self):
        super().setUp()
        self.world.install_skin()
        self.opened_file = os.path.join(self.world.root, "opened")
        self.programs = os.path.join(self.world.root, "programs")
        os.makedirs(self.programs)
        browser = os.path.join(self.programs, "xdg-open")
        write_text(browser, "#!/bin/sh\nprintf '%%s\\n' \"$1\" >>'%s'\n" % self.opened_file)
        os.chmod(browser, 0o755)
        self.gate = None
        self.launchers = []
        self.display = Display()

    def tearDown(self):
        for launcher in self.launchers:
            if launcher.poll() is None:
                launcher.kill()
            launcher.stdout.close()
            launcher.wait()
        self.display.close()
        if self.gate:
            self.gate.close()
        super().tearDown()

    # --- the launcher

    def start(self, *prefix):
        environment = self.world.environment(display=self.display.name)
        environment["PATH"] = self.programs + os.pathsep + environment["PATH"]
        self.launcher = subprocess.Popen(list(prefix) + [self.world.program],
                                         stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                         stderr=subprocess.STDOUT, env=environment)
        self.launchers.append(self.launcher)

    def end(self):
        """How the launcher, and the client if it started one, came to their end."""
        output = self.launcher.communicate(timeout=TIMEOUT)[0].decode(errors="replace")
        return Result(self.launcher.returncode, output, 0)

    def assert_ends(self):
        """By itself, in order, and silently."""
        result = self.end()
        self.assertEqual((0, ""), (result.code, result.output))

    def assert_runs(self):
        self.assertIsNone(self.launcher.poll())

    def setting(self, key):
        with open(os.path.join(self.world.base, "data", "config", "launcher.cfg")) as file:
            return re.search(r"^%s\n\t(\d+)\n" % key, file.read(), re.MULTILINE).group(1)

    def auto_launch(self):
        return self.setting("AUTO_LAUNCH")

    def opened(self):
        """What the browser was to show, as soon as it was asked to show something."""
        def read():
            if not os.path.exists(self.opened_file):
                return None
            with open(self.opened_file) as file:
                text = file.read()
            return text if text.endswith("\n") else None

        text = self.display.wait_for(read)
        os.remove(self.opened_file)
        return text.splitlines()

    # --- what is published

    def make_client(self, version, size=1000000):
        """A client of the same size in every build."""
        folder = self.world.make_client(version)
        program = os.path.join(folder, "client")
        write_text(program, "#!/bin/sh\necho Demo client version %d is running.\n" % version)
        os.chmod(program, 0o755)
        with open(os.path.join(folder, "ballast.bin"), "wb") as out:
            out.write(random.Random(version).randbytes(size))
        return folder

    def publish(self, version, size=1000000):
        self.world.publish(version, self.make_client(version, size),
                           description="The game with all its leagues and cups.")

    def serve(self, limit=300000, faults=(), **keys):
        """Of what is published so many bytes, until the gate lets more through; an archive of the
        client's stays at 29 percent."""
        arguments = ["--transfer", "blocks", "--block-size", "8192"]
        for fault in faults:
            arguments += ["--fault", fault]
        self.world.start_server(*arguments)
        self.gate = Gate(self.world.port, limit)
        self.world.configure(PORT_NUMBER=self.gate.port, **keys)

    def serve_client(self, limit=300000, faults=(), **keys):
        self.publish(7)
        self.serve(limit, faults, **keys)

    # --- pages

    def open_download_page(self):
        """The window, with the focus on "Cancel"."""
        self.start()
        window = self.display.wait_window(DOWNLOADING)
        self.display.activate(window)
        self.see(window, "cancel_focused", CANCEL_PART)
        return window

    def see(self, window, name, part=None):
        changing = [PROGRESS_WORDS] if part in (None, PROGRESS) else ()
        self.display.compare(window, name, part, changing)

    def ask_to_cancel(self, window):
        self.display.key("Escape")
        self.see(window, "question", QUESTION_PART)


class Splash(Desktop):

    def open_splash(self):
        self.start()
        return self.display.wait_window(TITLE)

    def see_splash(self, window, name):
        self.display.compare(window, name, changing=[ANIMATION])

    def test_first_installation_without_a_server_to_ask(self):
        self.world.configure(PORT_NUMBER=0)
        window = self.open_splash()
        self.see_splash(window, "splash_start")
        self.assertEqual([(1024 - 446) // 2, (768 - 208) // 2, 446, 208],
                         list(self.display.geometry(window)))
        for _ in range(3):
            self.display.wait_change(window, ANIMATION)
        self.assert_runs()

    def test_installed_client_and_a_server_that_keeps_silent(self):
        self.publish(4)
        self.world.start_server()
        self.assert_started(self.world.run_launcher(), 4)
        self.serve(limit=0)
        window = self.open_splash()
        self.see_splash(window, "splash_sent")
        self.display.wait_change(window, ANIMATION)

    def test_validated_and_what_will_be_installed(self):
        """All rows are there for as long as the skin takes to load."""
        self.serve_client()
        difference = None
        for _ in range(1 if STORE else 10):
            self.world.forget_compiled_skins()
            self.start()
            path = self.display.picture_at_once(
                "splash_validated", (289, 280, 446, 208), self.is_last_row_there)
            self.launcher.terminate()
            self.end()
            if path is None:
                continue
            self.display.readme_file(path, "splash")
            if STORE:
                self.display.store(path, "splash_validated", changing=[ANIMATION])
                return
            difference = self.display.compare_file(path, "splash_validated", changing=[ANIMATION])
            if difference <= PICTURE_TOLERANCE:
                return
        self.fail("the splash never looked like splash_validated.png (%s)" % difference)

    def is_last_row_there(self, screen):
        """ "Starting download..." stands in row 10, with nothing below; None once it was missed."""
        if screen.is_dark(289 + 230, 280 + 126, 60, 8) and \
                not screen.is_dark(289 + 230, 280 + 140, 180, 30):
            return True
        return None if self.display.windows(DOWNLOADING) else False

    def test_closed_splash_comes_back_as_the_download_page(self):
        self.serve_client(limit=0)
        window = self.open_splash()
        self.display.activate(window)
        self.display.key("alt+F4")
        self.display.wait_no_window(TITLE)
        self.assert_runs()
        self.gate.allow(300000)
        self.see(self.display.wait_window(DOWNLOADING), "download")


class DownloadPage(Desktop):

    def test_page_and_its_title(self):
        self.serve_client()
        window = self.open_download_page()
        self.assertEqual((800, 500), self.display.geometry(window)[2:])
        self.see(window, "download")
        self.assertRegex(self.display.title(window),
                         r"^Downloading 1 of 1   29% - \d+\.\d Kb/s$")
        self.display.readme_picture(window, "download")

    def test_title_and_bar_follow_the_download(self):
        self.serve_client()
        window = self.open_download_page()
        self.gate.allow(500000)
        self.display.wait_for(lambda: " 49% - " in self.display.title(window))
        self.gate.allow(700000)
        self.display.wait_for(lambda: " 69% - " in self.display.title(window))
        self.see(window, "download_69", PROGRESS)
        self.gate.open()
        self.assert_started(self.end(), 7)

    def test_cancel_under_the_pointer_pressed_and_let_go_outside(self):
        self.serve_client()
        window = self.open_download_page()
        self.display.key("Tab")
        self.see(window, "cancel", CANCEL_PART)
        self.display.move(window, *CANCEL)
        self.see(window, "cancel_focused", CANCEL_PART)
        self.display.move(window, *NOWHERE)
        self.see(window, "cancel", CANCEL_PART)
        self.display.move(window, *CANCEL)
        self.display.press()
        self.see(window, "cancel_pressed", CANCEL_PART)
        self.display.move(window, *NOWHERE)
        self.display.release()
        # It has the focus now, and nothing is asked.
        self.see(window, "download")
        self.display.press()
        self.display.move(window, *CANCEL)
        self.display.release()
        self.see(window, "download")

    def test_cancel_asks_and_no_goes_on(self):
        self.serve_client()
        window = self.open_download_page()
        self.display.click(window, *CANCEL)
        self.see(window, "question", QUESTION_PART)
        self.display.click(window, *NO)
        self.see(window, "no_question", QUESTION_PART)
        self.display.key("Escape")
        self.see(window, "question", QUESTION_PART)
        self.display.key("Return")
        self.see(window, "no_question", QUESTION_PART)
        self.gate.open()
        self.assert_started(self.end(), 7)

    def test_yes_ends_and_the_next_run_brings_the_client(self):
        self.serve_client()
        window = self.open_download_page()
        self.display.click(window, *CANCEL)
        self.display.move(window, *NOWHERE)
        self.see(window, "download_question")
        self.display.readme_picture(window, "cancel")
        self.display.click(window, *YES)
        self.assert_ends()
        self.assertEqual([], self.world.versions())
        self.world.start_server("--transfer", "blocks", "--block-size", "8192")
        self.assert_started(self.world.run_launcher(), 7)
        self.world.wait_for(lambda: sessions(self.world))
        self.assertIn("get app@0 ", sessions(self.world)[0])

    def test_the_download_goes_on_behind_the_question(self):
        self.serve_client()
        window = self.open_download_page()
        self.ask_to_cancel(window)
        self.gate.open()
        self.assert_started(self.end(), 7)

    def test_keys_walk_through_the_page(self):
        self.serve_client()
        window = self.open_download_page()
        self.see(window, "link", LINK_PART)
        self.see(window, "check_box_on", CHECK_PART)
        self.display.key("Tab")
        self.see(window, "cancel", CANCEL_PART)
        self.see(window, "link_focused", LINK_PART)
        self.display.key("Return")
        self.assertEqual(["http://www.tessarine.example"], self.opened())
        self.display.key("Tab")
        self.see(window, "link", LINK_PART)
        self.see(window, "check_box_on_focused", CHECK_PART)
        self.display.key("space")
        self.see(window, "check_box_off_focused", CHECK_PART)
        self.display.key("Return")
        self.see(window, "check_box_on_focused", CHECK_PART)
        self.display.key("Tab")
        self.see(window, "check_box_on", CHECK_PART)
        self.see(window, "cancel_focused", CANCEL_PART)
        self.display.key("shift+Tab")
        self.see(window, "check_box_on_focused", CHECK_PART)
        self.display.key("shift+Tab")
        self.see(window, "link_focused", LINK_PART)
        self.display.key("shift+Tab", "space")
        self.see(window, "question", QUESTION_PART)

    def test_keys_in_the_question(self):
        self.serve_client()
        window = self.open_download_page()
        self.display.key("Return")
        self.see(window, "answers_no_focused", ANSWERS_PART)
        self.display.key("Tab")
        self.see(window, "answers_yes_focused", ANSWERS_PART)
        # The focus stays in the question.
        self.display.key("Tab")
        self.see(window, "answers_no_focused", ANSWERS_PART)
        self.display.key("shift+Tab")
        self.see(window, "answers_yes_focused", ANSWERS_PART)
        self.display.key("space")
        self.assert_ends()

    def test_link_of_the_description_by_pointer(self):
        self.serve_client()
        window = self.open_download_page()
        self.display.move(window, *LINK)
        self.see(window, "link_focused", LINK_PART)
        self.display.click(window, *LINK)
        self.assertEqual(["http://www.tessarine.example"], self.opened())

    def test_add_on_with_a_long_title_accents_and_a_picture(self):
        folder = os.path.join(self.world.root, "league")
        os.makedirs(folder)
        write_text(os.path.join(folder, "defaults.cfg"), "version\n\t3\n")
        with open(os.path.join(folder, "ballast.bin"), "wb") as out:
            out.write(random.Random(3).randbytes(1000000))
        picture = os.path.join(self.world.root, "picture.png")
        self.display.run("convert", "-size", "300x120", "gradient:#204080-#80C0E0", picture)
        text = os.path.join(self.world.root, "description.txt")
        write_text(text, "Größe, Übergröße, façade, Ærø, ¿señor? ½ kg für 3 £.\n"
                         "Not in this alphabet: Łódź, Ελλάδα, 日本, \U0001F600.\n"
                         "\n" + "Every line that is too long goes on in the next one. " * 4 + "\n"
                         + "\n".join("Season %d" % year for year in range(1990, 2012)) + "\n")
        self.publish(7, size=1000)
        self.world.publish(
            3, folder, type="misc", path="league", mandatory=True, description_file=text,
            picture=picture, title="Die große Ligaerweiterung mit Pokalwettbewerben, Freundschafts"
                                   "spielen und allen Stadien der Saison, über alle Länder hinweg")
        self.serve(400000)
        self.start()
        window = self.display.wait_window(r"^Downloading . of 2 ")
        self.see(window, "download_add_on")


class Launch(Desktop):

    def test_check_box_taken_off_and_an_orderly_exit(self):
        self.serve_client()
        window = self.open_download_page()
        self.display.click(window, *CHECK_BOX)
        self.see(window, "check_box_off_focused", CHECK_PART)
        self.display.click(window, *CHECK_LABEL)
        self.see(window, "check_box_on_focused", CHECK_PART)
        self.display.click(window, *CHECK_LABEL)
        self.see(window, "check_box_off_focused", CHECK_PART)
        self.ask_to_cancel(window)
        self.display.click(window, *YES)
        self.assert_ends()
        self.assertEqual("0", self.auto_launch())
        # The next run knows.
        window = self.open_download_page()
        self.see(window, "check_box_off", CHECK_PART)

    def test_check_box_set_starts_the_client_and_is_not_kept(self):
        self.serve_client(AUTO_LAUNCH=0)
        window = self.open_download_page()
        self.display.click(window, *CHECK_BOX)
        self.see(window, "check_box_on_focused", CHECK_PART)
        self.gate.open()
        self.assert_started(self.end(), 7)
        self.assertEqual("0", self.auto_launch())

    def test_launch_game_by_pointer(self):
        self.publish(7)
        self.world.start_server()
        self.world.configure(AUTO_LAUNCH=0)
        self.start()
        window = self.display.wait_window(DOWNLOADING + "|" + TITLE)
        self.display.wait_for(lambda: self.world.versions() == ["app_7"])
        window = self.display.wait_window(TITLE)
        self.display.compare(window, "launch_game")
        # What is disabled can't be changed, and there is nothing left to cancel.
        self.display.click(window, *CHECK_BOX)
        self.display.activate(window)
        self.display.key("Escape")
        self.display.move(window, *NOWHERE)
        self.display.compare(window, "launch_game")
        self.assert_runs()
        self.display.click(window, *CANCEL)
        self.assert_started(self.end(), 7)

    def test_launch_game_by_keyboard(self):
        self.publish(7)
        self.world.start_server()
        self.world.configure(AUTO_LAUNCH=0)
        self.start()
        self.display.wait_for(lambda: self.world.versions() == ["app_7"])
        window = self.display.wait_window(TITLE)
        self.display.activate(window)
        self.display.compare(window, "launch_game")
        self.display.key("space")
        self.assert_started(self.end(), 7)

    def test_installed_client_starts_without_a_server(self):
        self.publish(7)
        self.world.start_server()
        self.assert_started(self.world.run_launcher(), 7)
        self.world.stop_server()
        self.world.configure(PORT_NUMBER=self.world.closed_port())
        self.start()
        self.assert_started(self.end(), 7)


class Windows(Desktop):

    def test_close_box_ends_in_order(self):
        self.serve_client()
        window = self.open_download_page()
        self.display.click(window, *CHECK_BOX)
        self.see(window, "check_box_off_focused", CHECK_PART)
        self.display.key("alt+F4")
        self.assert_ends()
        self.assertEqual("0", self.auto_launch())
        self.assertEqual(("800", "500"),
                         (self.setting("WINDOW_WIDTH_0"), self.setting("WINDOW_HEIGHT_0")))

    def test_close_box_while_the_question_is_open(self):
        self.serve_client()
        window = self.open_download_page()
        self.ask_to_cancel(window)
        self.display.key("alt+F4")
        self.assert_ends()

    def test_minimised_and_restored(self):
        self.serve_client(AUTO_LAUNCH=0)
        window = self.open_download_page()
        self.display.run("xdotool", "windowminimize", window)
        self.display.wait_no_window(DOWNLOADING)
        # The download goes on where nobody sees it.
        self.gate.open()
        self.display.wait_for(lambda: self.world.versions() == ["app_7"])
        self.display.wait_for(lambda: re.search(TITLE, self.display.title(window)))
        self.display.activate(window)
        self.display.compare(window, "launch_game")
        self.display.key("Return")
        self.assert_started(self.end(), 7)

    def test_covered_and_uncovered(self):
        self.serve_client()
        window = self.open_download_page()
        self.see(window, "download")
        left, top = self.display.geometry(window)[:2]
        cover = self.display.start("xmessage", "-geometry", "500x300+%d+%d" % (left + 150, top + 20),
                                   "-title", "Cover", "over it")
        other = self.display.wait_window("^Cover$")
        self.display.activate(other)
        self.display.run("xdotool", "windowmove", other, str(left + 20), str(top + 150))
        self.display.wait_for(
            lambda: self.display.geometry(other)[:2] == (left + 20, top + 150))
        cover.terminate()
        self.display.wait_no_window("^Cover$")
        self.see(window, "download")
        # And it answers again.
        self.display.activate(window)
        self.ask_to_cancel(window)

    def test_second_launcher_leaves_the_first_alone(self):
        self.serve_client()
        window = self.open_download_page()
        second = self.world.start_launcher(display=self.display.name)
        output = second.communicate(timeout=TIMEOUT)[0].decode()
        self.assertEqual((0, "Tessarine Launcher is already running.\n"),
                         (second.returncode, output))
        self.see(window, "download")
        self.assert_runs()


class ErrorPages(Desktop):

    def see_page(self, code, name=None):
        window = self.display.wait_for(self.find_page)
        self.display.activate(window)
        self.display.compare(window, name or "error_%d" % code)
        return window

    def find_page(self):
        """The splash has the same title."""
        return next((window for window in self.display.windows(TITLE)
                     if self.display.is_size(window, 500, 250)), None)

    def check_page(self, code, article):
        """Its look, its link by keyboard and by pointer, its button."""
        window = self.see_page(code)
        address = [SUPPORT % article]
        self.display.key("Tab", "Return")
        self.assertEqual(address, self.opened())
        left, top, width, height = self.display.find_colour(window, "red")
        self.display.click(window, left + width // 2, top + height // 2)
        self.assertEqual(address, self.opened())
        self.assert_runs()
        self.display.click(window, *OK)
        result = self.end()
        self.assertEqual(0, result.code, result.output)
        self.assertIsNone(result.started_version())

    def replace_archive(self, data):
        with open(os.path.join(self.world.published, "app", "app_x11i86.tar.gz"), "wb") as out:
            out.write(data)

    def test_unknown_error(self):
        """Code 0: the installed client is no program."""
        self.publish(7)
        self.world.start_server()
        self.assert_started(self.world.run_launcher(), 7)
        write_text(self.world.add_ons("client", "app_7", "client"), "no program\n")
        self.start()
        self.check_page(0, 81)

    def test_no_connection(self):
        self.world.configure(PORT_NUMBER=self.world.closed_port())
        self.start()
        self.check_page(1, 73)

    def test_corrupt_download(self):
        self.serve_client(faults=["bad-archive-crc"])
        self.gate.open()
        self.start()
        self.check_page(3, 80)

    def test_archive_that_cannot_be_unzipped(self):
        self.publish(7)
        self.replace_archive(b"no archive\n" * 1000)
        self.world.start_server()
        self.start()
        self.check_page(4, 75)

    def test_package_that_cannot_be_opened(self):
        """The unzipped package lies in a file that may be written and not read."""
        self.serve_client()
        prefix = []
        if os.geteuid() == 0:
            # Even root may not without this right.
            prefix = ["setpriv", "--bounding-set=-dac_override,-dac_read_search",
                      "--inh-caps=-dac_override,-dac_read_search"]
            if subprocess.run(prefix + ["true"], stderr=subprocess.DEVNULL).returncode != 0:
                self.skipTest("root's rights can't be taken away here")
        self.start(*prefix)
        self.display.wait_window(DOWNLOADING)
        self.display.wait_for(lambda: self.world.downloads())
        package = os.path.join(self.world.user, "Corvane", "Tessarine", "temp", "downloads",
                               "update.tar")
        os.close(os.open(package, os.O_CREAT | os.O_WRONLY, 0o200))
        self.gate.open()
        self.check_page(5, 76)

    def test_package_without_its_check_file(self):
        self.publish(7)
        content = io.BytesIO()
        with tarfile.open(fileobj=content, mode="w:gz", format=tarfile.USTAR_FORMAT) as tar:
            tar.addfile(tarfile.TarInfo("readme.txt"), io.BytesIO())
        self.replace_archive(content.getvalue())
        self.world.start_server()
        self.start()
        self.check_page(6, 77)

    def test_server_error(self):
        self.publish(7)
        self.world.start_server("--fault", "unknown-id")
        self.start()
        self.check_page(8, 79)

    def test_keys(self):
        self.world.configure(PORT_NUMBER=self.world.closed_port())
        for keys in (["Return"], ["space"], ["Escape"], ["Tab", "Tab", "Return"],
                     ["shift+Tab", "shift+Tab", "space"]):
            self.start()
            window = self.see_page(1)
            self.display.readme_picture(window, "error")
            if "Tab" in keys:
                self.display.key("Tab")
                self.see_page(1, "error_1_link_focused")
                keys.remove("Tab")
            self.display.key(*keys)
            self.assert_ends()
        self.assertFalse(os.path.exists(self.opened_file))

    def test_close_box(self):
        self.world.configure(PORT_NUMBER=self.world.closed_port())
        self.start()
        self.see_page(1)
        self.display.key("alt+F4")
        self.assert_ends()

    def test_in_the_place_of_the_question(self):
        self.serve_client(faults=["bad-archive-crc"])
        window = self.open_download_page()
        self.ask_to_cancel(window)
        self.gate.open()
        self.see_page(3)
        self.display.key("Return")
        result = self.end()
        self.assertEqual(0, result.code, result.output)


if __name__ == "__main__":
    unittest.main()
