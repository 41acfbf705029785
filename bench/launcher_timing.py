#!/usr/bin/env python3
"""Times the start of the launcher and measures an idle one.

usage: launcher_timing.py BUILD_DIR

Prints the median time from the start to the first status line and to the started client with
nothing to do, and the share of a core that a launcher uses while it waits for a stalled server.
"""

import os
import statistics
import subprocess
import sys
import time

os.environ["KV_BUILD_DIR"] = os.path.abspath(sys.argv[1])
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "tests", "e2e"))
from harness import World  # noqa: E402


def first_line(world):
    begin = time.monotonic()
    process = world.start_launcher()
    while b"Installed add-on versions" not in process.stdout.readline():
        pass
    first = time.monotonic() - begin
    process.communicate()
    return first, time.monotonic() - begin


def processor_seconds(pid):
    with open("/proc/%d/stat" % pid) as stat:
        fields = stat.read().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


world = World()
try:
    world.publish(1, size=1000000)
    world.start_server()
    world.run_launcher()
    times = [first_line(world) for _ in range(20)]
    print("start to first status line: %.1f ms, to the started client's end: %.1f ms (medians)"
          % tuple(statistics.median(column) * 1000 for column in zip(*times)))
    world.publish(2, size=1000000)
    world.start_server("--transfer", "blocks", "--fault", "stall-after:1")
    process = world.start_launcher()
    time.sleep(2)
    before = processor_seconds(process.pid)
    time.sleep(20)
    used = processor_seconds(process.pid) - before
    print("an idle launcher: %.2f %% of a core" % (used / 20 * 100))
    process.terminate()
    process.communicate()
finally:
    world.close()
