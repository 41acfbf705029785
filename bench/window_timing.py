#!/usr/bin/env python3
"""Measures the launcher in its windows, on an X server without a screen.

usage: window_timing.py BUILD_DIR [--starts N] [--seconds N] [--megabytes N] [--downloads N]

Prints what was measured and the limit for it: the time from the start of the process until the
splash is on the screen; memory and the share of a core while the splash or the download page is on
show and nothing happens; and how late the main thread's updates come while an archive that doesn't
compress is fetched, unpacked and installed.
"""

import argparse
import mmap
import os
import shutil
import socket
import statistics
import sys
import time

parser = argparse.ArgumentParser()
parser.add_argument("build")
parser.add_argument("--megabytes", type=int, default=512)
parser.add_argument("--starts", type=int, default=20)
parser.add_argument("--seconds", type=int, default=20)
parser.add_argument("--downloads", type=int, default=3)
options = parser.parse_args()

os.environ["KV_BUILD_DIR"] = os.path.abspath(options.build)
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "tests", "e2e"))
from display import Display, Screen  # noqa: E402
from harness import World  # noqa: E402

PAGE_TITLE = "^Downloading "
SCREEN = 1024, 768
SPLASH = (SCREEN[0] - 446) // 2, (SCREEN[1] - 208) // 2, 446, 208


class LiveScreen(Screen):
    """The pixels that the server shows, as they change."""

    def __init__(self, display):
        super().__init__(display.screen_file())
        with open(display.screen_file(), "rb") as file:
            self.data = mmap.mmap(file.fileno(), 0, prot=mmap.PROT_READ)

    def shows_splash(self):
        """The picture is there from its top to its bottom, and something is written in the first
        row of its status box. Without a window the screen is black."""
        x, y, width, height = SPLASH
        shown = all(any(self.row(x, y + line, width)) for line in (0, height // 2, height - 1))
        return shown and self.is_dark(x + 230, y + 25, 195, 10)


def end(process):
    process.terminate()
    process.communicate()


def wait_for(condition):
    end_time = time.monotonic() + 30
    while not condition():
        if time.monotonic() > end_time:
            raise AssertionError("waited too long")
        time.sleep(0.0002)


def time_start(world, display, screen):
    """Milliseconds from the start of the process to the splash."""
    wait_for(lambda: not screen.shows_splash())
    begin = time.monotonic()
    process = world.start_launcher(display=display.name)
    wait_for(screen.shows_splash)
    shown = time.monotonic()
    end(process)
    return (shown - begin) * 1000


def processor_seconds(pid):
    """Of all threads, as the scheduler counts it."""
    total = 0
    for thread in os.listdir("/proc/%d/task" % pid):
        with open("/proc/%d/task/%s/schedstat" % (pid, thread)) as stat:
            total += int(stat.read().split()[0])
    return total / 1e9


def idle_share(process):
    """The percentages of a core that a process uses, in three spans of time."""
    time.sleep(2)
    shares = []
    for _ in range(3):
        before = processor_seconds(process.pid)
        time.sleep(options.seconds)
        shares.append((processor_seconds(process.pid) - before) / options.seconds * 100)
    return shares


def memory_mb(process):
    """What is in memory now, and the most that was."""
    values = {}
    with open("/proc/%d/status" % process.pid) as status:
        for line in status:
            name, value = line.split(":", 1)
            values[name] = value
    return [int(values[name].split()[0]) / 1024 for name in ("VmRSS", "VmHWM")]


def show(what, values, unit, limit):
    print("%-50s %s %s (limit %g)" % (what, ", ".join("%.3g" % value for value in values), unit,
                                      limit), flush=True)


def show_spread(what, values, unit, limit):
    print("%-50s %.1f %s, %.1f to %.1f (limit %g)"
          % (what, statistics.median(values), unit, min(values), max(values), limit), flush=True)


def measure_splash(world, display):
    # Takes connections and never answers, so that the splash stays.
    with socket.create_server(("127.0.0.1", 0)) as silent:
        world.port = silent.getsockname()[1]
        world.configure()
        screen = LiveScreen(display)
        time_start(world, display, screen)  # the disk is warm from here on
        times = [time_start(world, display, screen) for _ in range(options.starts)]
        show_spread("start to the splash on the screen", times, "ms", 150)
        process = world.start_launcher(display=display.name)
        show("splash with its animation, nothing happens", idle_share(process), "% of a core", 3)
        show("memory with the splash: now, most", memory_mb(process), "MB", 60)
        end(process)


def measure_quiet_pages(world, display):
    """The pages on which the launcher waits for the user."""
    folder = os.path.join(world.root, "pictures")
    os.makedirs(folder)

    def start(picture):
        process = world.start_launcher("--screenshot=" + folder, display=display.name)
        wait_for(lambda: os.path.exists(os.path.join(folder, picture)))
        return process

    world.port = 1  # nobody listens
    world.configure()
    process = start("error.png")
    show("error page", idle_share(process), "% of a core", 1)
    end(process)

    world.publish(1, size=100000)
    world.start_server()
    world.configure(AUTO_LAUNCH=0)
    process = start("download.png")
    display.wait_window("^Tessarine Launcher$")
    show("download page with all downloaded", idle_share(process), "% of a core", 1)
    end(process)
    world.stop_server()
    shutil.rmtree(world.user)
    os.makedirs(world.user)


def measure_stalled_page(world, display):
    world.publish(1, size=1000000)
    world.start_server("--transfer", "blocks", "--fault", "stall-after:1")
    process = world.start_launcher(display=display.name)
    display.wait_window(PAGE_TITLE)
    show("download page, the server has stopped sending", idle_share(process),
         "% of a core", 1)
    show("memory with the page: now, most", memory_mb(process), "MB", 60)
    end(process)


def read_lateness(path):
    """The greatest lateness of each page in milliseconds, and the number of updates."""
    with open(path) as lines:
        rows = [line.split() for line in lines]
    names = rows[0]
    return {row[0]: dict(zip(names[1:], map(int, row[1:]))) for row in rows[1:]}


def fetch(world, display, table):
    process = world.start_launcher("--lateness=" + table, display=display.name)
    output = process.communicate()[0].decode(errors="replace")
    assert "Demo client version 2 is running" in output, output
    shutil.rmtree(world.user)
    os.makedirs(world.user)
    return read_lateness(table)["download"]


def measure_lateness(world, display):
    world.publish(2, size=options.megabytes * 1048576)
    table = os.path.join(world.root, "lateness.txt")
    for transfer in ("stream", "blocks"):
        world.start_server("--transfer", transfer)
        rows = [fetch(world, display, table) for _ in range(options.downloads)]
        show("%d MB by %s: the latest update of each run" % (options.megabytes, transfer),
             [row["max_ms"] for row in rows], "ms", 50)
        updates = sum(row["updates"] for row in rows)
        in_time = sum(row["le_%d" % ms] for row in rows for ms in (1, 2, 5))
        print("    %d of %d updates at most 5 ms late" % (in_time, updates), flush=True)


def main():
    world = World()
    display = Display(*SCREEN)
    try:
        world.install_skin()
        measure_splash(world, display)
        measure_quiet_pages(world, display)
        measure_stalled_page(world, display)
        measure_lateness(world, display)
    finally:
        display.close()
        world.close()


if __name__ == "__main__":
    main()
