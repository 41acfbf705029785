"""An X display of a test's own: Xvfb with a window manager, a pointer and a keyboard that the test
moves, and pictures of windows that are compared with stored ones.

KV_STORE_SCREENSHOTS=1 stores the pictures in place of comparing them; KV_KEEP_SCREENSHOTS=FOLDER
keeps every picture that a test takes."""

import os
import re
import shutil
import subprocess
import tempfile
import time

SCREENS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "screens")
STORE = os.environ.get("KV_STORE_SCREENSHOTS") == "1"
KEEP = os.environ.get("KV_KEEP_SCREENSHOTS")

TIMEOUT = 60
# A pixel differs if a channel is off by more; a picture differs if more of its pixels do.
PIXEL_TOLERANCE = "8%"
PICTURE_TOLERANCE = 0.002


class Display:
    def __init__(self, width=1024, height=768):
        self.folder = tempfile.mkdtemp(prefix="launcher_display_")
        self.processes = []
        self.name = None
        try:
            self.start_server(width, height)
            # Without decorations, so that a window's place is that of its contents.
            self.start("openbox", "--sm-disable", "--config-file", self.write_openbox_settings())
            self.wait_for(lambda: "window id" in self.run(
                "xprop", "-root", "_NET_SUPPORTING_WM_CHECK", check=False))
        except BaseException:
            self.close()
            raise

    def close(self):
        for process in reversed(self.processes):
            process.terminate()
            try:
                process.wait(10)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
        self.processes = []
        shutil.rmtree(self.folder, ignore_errors=True)

    def start_server(self, width, height):
        readable, writable = os.pipe()
        self.start("Xvfb", "-displayfd", str(writable), "-screen", "0",
                   "%dx%dx24" % (width, height), "-nolisten", "tcp", "-noreset", pass_fds=[writable])
        os.close(writable)
        with os.fdopen(readable) as answer:
            number = answer.readline().strip()
        if not number:
            raise AssertionError("Xvfb did not start")
        self.name = ":" + number

    def write_openbox_settings(self):
        path = os.path.join(self.folder, "rc.xml")
        with open(path, "w") as out:
            out.write("""<?xml version="1.0" encoding="UTF-8"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
<applications><application class="*"><decor>no</decor></application></applications>
</openbox_config>
""")
        return path

    def environment(self, base=None):
        env = dict(os.environ if base is None else base)
        if self.name:
            env["DISPLAY"] = self.name
        for name in ("SDL_VIDEODRIVER", "WAYLAND_DISPLAY"):
            env.pop(name, None)
        return env

    def start(self, *command, pass_fds=()):
        process = subprocess.Popen(command, env=self.environment(), pass_fds=pass_fds,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL)
        self.processes.append(process)
        return process

    def run(self, *command, check=True):
        done = subprocess.run(command, env=self.environment(), stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, timeout=TIMEOUT)
        output = done.stdout.decode(errors="replace")
        if check and done.returncode != 0:
            raise AssertionError("%s: %s" % (" ".join(command), output))
        return output

    def wait_for(self, condition, seconds=TIMEOUT):
        end = time.monotonic() + seconds
        while True:
            result = condition()
            if result:
                return result
            if time.monotonic() > end:
                raise AssertionError("waited too long")
            time.sleep(0.02)

    # --- windows

    def windows(self, title):
        """The visible windows whose title matches the regular expression."""
        output = self.run("xdotool", "search", "--onlyvisible", "--name", title, check=False)
        return re.findall(r"^\d+$", output, re.MULTILINE)

    def wait_window(self, title, seconds=TIMEOUT):
        return self.wait_for(lambda: self.windows(title), seconds)[0]

    def wait_no_window(self, title, seconds=TIMEOUT):
        self.wait_for(lambda: not self.windows(title), seconds)

    def title(self, window):
        return self.run("xdotool", "getwindowname", window).rstrip("\n")

    def geometry(self, window):
        """x, y, width, height."""
        values = dict(re.findall(r"^(\w+)=(-?\d+)$", self.run(
            "xdotool", "getwindowgeometry", "--shell", window), re.MULTILINE))
        return tuple(int(values[name]) for name in ("X", "Y", "WIDTH", "HEIGHT"))

    # --- pointer and keyboard; places are within the window

    def move(self, window, x, y):
        self.run("xdotool", "mousemove", "--window", window, str(x), str(y))
        time.sleep(0.08)

    def press(self, button=1):
        self.run("xdotool", "mousedown", str(button))
        time.sleep(0.08)

    def release(self, button=1):
        self.run("xdotool", "mouseup", str(button))
        time.sleep(0.08)

    def click(self, window, x, y, button=1):
        self.move(window, x, y)
        self.press(button)
        self.release(button)

    def key(self, *keys):
        for key in keys:
            self.run("xdotool", "keydown", key)
            time.sleep(0.06)
            self.run("xdotool", "keyup", key)
            time.sleep(0.08)

    # --- pictures

    def picture(self, window, name):
        """Takes a picture of the window and yields its path."""
        path = os.path.join(self.folder, name + ".png")
        self.run("import", "-silent", "-window", window, "-depth", "8", "+repage", path)
        if KEEP:
            os.makedirs(KEEP, exist_ok=True)
            shutil.copy(path, KEEP)
        return path

    def compare(self, window, name, changing=(), seconds=10):
        """Expects the window to look like the stored picture within that time. `changing` names
        rectangles (x, y, width, height) that differ from run to run."""
        stored = os.path.join(SCREENS, name + ".png")
        if STORE:
            time.sleep(0.5)
            path = self.picture(window, name)
            self.mask(path, changing)
            os.makedirs(SCREENS, exist_ok=True)
            self.run("convert", path, "-strip", "-define", "png:compression-level=9", stored)
            return
        end = time.monotonic() + seconds
        while True:
            path = self.picture(window, name)
            self.mask(path, changing)
            difference = self.difference(path, stored)
            if difference <= PICTURE_TOLERANCE:
                return
            if time.monotonic() > end:
                raise AssertionError("the window doesn't look like %s.png: %.2f %% of its pixels "
                                     "differ" % (name, 100 * difference))
            time.sleep(0.1)

    def mask(self, path, rectangles):
        drawing = []
        for x, y, width, height in rectangles:
            drawing += ["-draw", "rectangle %d,%d %d,%d" % (x, y, x + width - 1, y + height - 1)]
        if drawing:
            self.run("mogrify", "-fill", "#808080", *drawing, path)

    def difference(self, path, stored):
        """The share of pixels that differ; 1 for pictures of different sizes."""
        size = self.run("identify", "-format", "%w %h ", path, stored).split()
        if size[0:2] != size[2:4]:
            return 1.0
        output = self.run("compare", "-metric", "AE", "-fuzz", PIXEL_TOLERANCE, path, stored, "null:",
                          check=False)
        return float(output.split()[0]) / (int(size[0]) * int(size[1]))
