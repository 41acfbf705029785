"""An X display of a test's own: Xvfb with a window manager, a pointer and a keyboard that the test
moves, and pictures of windows that are compared with stored ones.

KV_STORE_SCREENSHOTS=1 stores the pictures in place of comparing them; KV_KEEP_SCREENSHOTS=FOLDER
keeps every picture that a test takes; KV_README_PICTURES=FOLDER makes the pictures of the README
there."""

import os
import re
import shutil
import struct
import subprocess
import tempfile
import time
import zlib

SCREENS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "screens")
STORE = os.environ.get("KV_STORE_SCREENSHOTS") == "1"
KEEP = os.environ.get("KV_KEEP_SCREENSHOTS")
README = os.environ.get("KV_README_PICTURES")

TIMEOUT = 60
# A pixel differs if a channel is off by more; a picture differs if more of its pixels do.
PIXEL_TOLERANCE = "8%"
PICTURE_TOLERANCE = 0.002


def run_tool(*command, env=None, check=True):
    """What a program writes."""
    done = subprocess.run(command, env=env, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          timeout=TIMEOUT)
    output = done.stdout.decode(errors="replace")
    if check and done.returncode != 0:
        raise AssertionError("%s: %s" % (" ".join(command), output))
    return output


def count_different_pixels(path, stored):
    """The number of pixels that differ, and of all pixels; pictures of different sizes differ in
    every one."""
    size = run_tool("identify", "-format", "%w %h ", path, stored).split()
    pixels = int(size[0]) * int(size[1])
    if size[0:2] != size[2:4]:
        return pixels, pixels
    output = run_tool("compare", "-metric", "AE", "-fuzz", PIXEL_TOLERANCE, path, stored, "null:",
                      check=False)
    return int(float(output.split()[0])), pixels


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
            self.run("xdotool", "mousemove", "0", "0")
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
                   "%dx%dx24" % (width, height), "-fbdir", self.folder, "-nolisten", "tcp", "-noreset",
                   "-nocursor", "-r",  # on a slow machine a key would repeat
                   pass_fds=[writable])
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
<theme><keepBorder>no</keepBorder></theme>
<applications><application class="*"><decor>no</decor></application></applications>
<keyboard><keybind key="A-F4"><action name="Close"/></keybind></keyboard>
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
        return run_tool(*command, env=self.environment(), check=check)

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
        """Empty for a window that is gone."""
        return self.run("xdotool", "getwindowname", window, check=False).rstrip("\n")

    def geometry(self, window):
        """x, y, width, height."""
        values = dict(re.findall(r"^(\w+)=(-?\d+)$", self.run(
            "xdotool", "getwindowgeometry", "--shell", window), re.MULTILINE))
        return tuple(int(values[name]) for name in ("X", "Y", "WIDTH", "HEIGHT"))

    def is_size(self, window, width, height):
        """False for a window that is gone."""
        output = self.run("xdotool", "getwindowgeometry", window, check=False)
        return "Geometry: %dx%d\n" % (width, height) in output

    def activate(self, window):
        """Brings the window to the front and gives it the keyboard."""
        self.run("xdotool", "windowactivate", "--sync", window)
        self.wait_for(lambda: self.run("xdotool", "getwindowfocus", check=False).strip() == window)

    # --- pointer and keyboard; places are within the window

    def move(self, window, x, y):
        self.run("xdotool", "mousemove", "--window", window, str(x), str(y))

    def press(self, button=1):
        self.run("xdotool", "mousedown", str(button))

    def release(self, button=1):
        self.run("xdotool", "mouseup", str(button))

    def click(self, window, x, y, button=1):
        self.run("xdotool", "mousemove", "--window", window, str(x), str(y), "click", str(button))

    def key(self, *keys):
        self.run("xdotool", "key", *keys)

    # --- pictures

    def screen_file(self):
        """What the server shows, as a picture file in the format of xwd that changes with it."""
        return os.path.join(self.folder, "Xvfb_screen0")

    def picture(self, window, name):
        """Takes a picture of what is seen at the window's place, and yields its path."""
        area = self.geometry(window)
        return self.picture_at_once(name, area, lambda screen: True)

    def picture_at_once(self, name, area, is_there):
        """Looks at the screen without a pause until `is_there` says so of its Screen, and yields the
        path of a picture of that area (x, y, width, height); None if it says None."""
        path = os.path.join(self.folder, name + ".png")
        answer = False
        while answer is False:
            screen = Screen(self.screen_file())
            answer = is_there(screen)
        if answer is None:
            return None
        screen.save(path, *area)
        return self.keep(path)

    @staticmethod
    def keep(path):
        if KEEP:
            os.makedirs(KEEP, exist_ok=True)
            shutil.copy(path, KEEP)
        return path

    def compare(self, window, name, part=None, changing=(), seconds=TIMEOUT):
        """Expects the window, or that part (x, y, width, height) of it, to look like the stored
        picture within that time. `changing` names rectangles of the window that differ from run to
        run."""
        if STORE:
            self.store(self.settle(window, name), name, part, changing)
            return
        end = time.monotonic() + seconds
        while True:
            path = self.picture(window, name)
            difference = self.compare_file(path, name, part, changing)
            if difference <= PICTURE_TOLERANCE:
                return
            if time.monotonic() > end:
                raise AssertionError("the window doesn't look like %s.png: %.2f %% of its pixels "
                                     "differ%s" % (name, 100 * difference, self.show(path, name)))

    def compare_file(self, path, name, part=None, changing=()):
        """The share of pixels by which a taken picture differs from the stored one."""
        self.cut(path, part, changing)
        return self.difference(path, os.path.join(SCREENS, name + ".png"))

    def wait_change(self, window, part, seconds=TIMEOUT):
        """Waits until that part of the window changes."""
        before = os.path.join(self.folder, "before.png")
        os.rename(self.cut(self.picture(window, "change"), part), before)
        self.wait_for(lambda: self.difference(
            self.cut(self.picture(window, "change"), part), before) > PICTURE_TOLERANCE, seconds)

    def find_colour(self, window, colour):
        """The rectangle that holds what has the colour: x, y, width, height."""
        output = self.run("convert", self.picture(window, "colour"), "-fuzz", "30%", "-fill", "white",
                          "-opaque", colour, "-fuzz", "0%", "-fill", "black", "+opaque", "white",
                          "-trim", "-format", "%X %Y %w %h", "info:")
        return tuple(int(value) for value in output.split())

    def readme_picture(self, window, name):
        """A picture for the README, if they are asked for."""
        if README:
            self.readme_file(self.settle(window, name), name)

    def readme_file(self, path, name):
        if README:
            os.makedirs(README, exist_ok=True)
            self.run("convert", path, "-strip", "-define", "png:compression-level=9",
                     os.path.join(README, name + ".png"))

    def settle(self, window, name):
        """A picture of the window once it has stopped changing, or for the most part."""
        time.sleep(0.5)
        path = self.picture(window, name)
        for _ in range(10):
            before = os.path.join(self.folder, "before.png")
            os.rename(path, before)
            time.sleep(0.2)
            path = self.picture(window, name)
            if self.difference(path, before) == 0:
                break
        return path

    def store(self, path, name, part=None, changing=()):
        os.makedirs(SCREENS, exist_ok=True)
        self.run("convert", self.cut(path, part, changing), "-strip", "+dither", "-colors", "255",
                 "-define", "png:compression-level=9",
                 "png8:" + os.path.join(SCREENS, name + ".png"))

    def show(self, path, name):
        """Keeps what a test saw in place of a stored picture."""
        if not KEEP:
            return "; KV_KEEP_SCREENSHOTS=FOLDER keeps it"
        seen = os.path.join(KEEP, name + "_seen.png")
        shutil.copy(path, seen)
        return ", see " + seen

    def cut(self, path, part=None, changing=()):
        """Fills the changing rectangles of the picture, then leaves only that part of it."""
        drawing = []
        for x, y, width, height in changing:
            drawing += ["-draw", "rectangle %d,%d %d,%d" % (x, y, x + width - 1, y + height - 1)]
        if part:
            drawing += ["-crop", "%dx%d+%d+%d" % (part[2:] + part[:2]), "+repage"]
        if drawing:
            self.run("mogrify", "-fill", "#808080", *drawing, path)
        return path

    def difference(self, path, stored):
        """The share of pixels that differ; 1 for pictures of different sizes."""
        different, pixels = count_different_pixels(path, stored)
        return different / pixels


class Screen:
    """What a server showed at one moment."""

    def __init__(self, path):
        with open(path, "rb") as file:
            self.data = file.read()
        header = struct.unpack(">25I", self.data[:100])
        self.line = header[12]
        self.pixels = header[0] + 12 * header[19]

    def row(self, x, y, width):
        """The channels blue, green, red and another of each pixel."""
        at = self.pixels + y * self.line + 4 * x
        return self.data[at:at + 4 * width]

    def is_dark(self, x, y, width, height):
        """Whether something nearly black is in the rectangle."""
        for values in (self.row(x, line, width) for line in range(y, y + height)):
            if any(max(values[at:at + 3]) < 64 for at in range(0, len(values), 4)):
                return True
        return False

    def save(self, path, x, y, width, height):
        """As a PNG file."""
        pixels = bytearray()
        for line in range(y, y + height):
            values = self.row(x, line, width)
            colours = bytearray(3 * width)
            colours[0::3], colours[1::3], colours[2::3] = values[2::4], values[1::4], values[0::4]
            pixels += b"\0" + colours
        with open(path, "wb") as out:
            out.write(b"\x89PNG\r\n\x1a\n")
            for kind, body in ((b"IHDR", struct.pack(">2I5B", width, height, 8, 2, 0, 0, 0)),
                               (b"IDAT", zlib.compress(bytes(pixels), 1)), (b"IEND", b"")):
                out.write(struct.pack(">I", len(body)) + kind + body +
                          struct.pack(">I", zlib.crc32(kind + body)))
