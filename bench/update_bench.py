#!/usr/bin/env python3
"""Times a whole update of one large archive over the loopback interface, beside the usual tools.

usage: update_bench.py BUILD_DIR [--megabytes N] [--files N] [--repeat N]

Ours: patch_server and the launcher, from the launcher's start to the started client. The peer: curl
from nginx, then gzip -t, gunzip -k and tar -xf of the same archive. Both write to the same disk.
Prints ratios of the medians, the launcher's peak memory, and the rates of the two kinds of transfer
beside curl's.
"""

import argparse
import os
import random
import re
import shutil
import statistics
import subprocess
import sys
import time

parser = argparse.ArgumentParser()
parser.add_argument("build")
parser.add_argument("--megabytes", type=int, default=512)
parser.add_argument("--files", type=int, default=2000)
parser.add_argument("--repeat", type=int, default=3)
options = parser.parse_args()

os.environ["KV_BUILD_DIR"] = os.path.abspath(options.build)
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "tests", "e2e"))
from harness import World  # noqa: E402


def make_files(folder, megabytes, count):
    """Files of mixed sizes, six tenths of whose bytes compress well."""
    rng = random.Random(1)
    words = [bytes(rng.choices(b"abcdefghijklmnopqrstuvwxyz", k=rng.randint(3, 9)))
             for _ in range(500)]
    text = b" ".join(rng.choices(words, k=200000))
    weights = [rng.uniform(0.2, 1.8) for _ in range(count)]
    for number, weight in enumerate(weights):
        size = int(megabytes * 1048576 * weight / sum(weights))
        part = os.path.join(folder, "data", "%02d" % (number % 40))
        os.makedirs(part, exist_ok=True)
        with open(os.path.join(part, "file_%04d.bin" % number), "wb") as out:
            hard = int(size * 0.4)
            out.write(rng.randbytes(hard))
            left = size - hard
            while left > 0:
                start = rng.randrange(len(text) // 2)
                piece = text[start:start + left]
                out.write(piece)
                left -= len(piece)


def run(command, **kwargs):
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                   **kwargs)


def start_nginx(root, folder):
    config = os.path.join(root, "nginx.conf")
    port = 18080
    with open(config, "w") as out:
        out.write("""
worker_processes 1; daemon off; pid %(root)s/nginx.pid; error_log %(root)s/nginx.log;
events {}
http { access_log off; sendfile on; client_body_temp_path %(root)s; proxy_temp_path %(root)s;
  fastcgi_temp_path %(root)s; uwsgi_temp_path %(root)s; scgi_temp_path %(root)s;
  server { listen 127.0.0.1:%(port)d; root %(folder)s; } }
user root;
""" % {"root": root, "folder": folder, "port": port})
    process = subprocess.Popen(["nginx", "-c", config, "-p", root], stderr=subprocess.DEVNULL)
    time.sleep(0.5)
    return process, "http://127.0.0.1:%d/" % port


def time_peer(world, url, name):
    """Seconds of the download alone and of the whole."""
    work = os.path.join(world.root, "peer")
    shutil.rmtree(work, ignore_errors=True)
    os.makedirs(os.path.join(work, "installed"))
    archive = os.path.join(work, name)
    begin = time.monotonic()
    run(["curl", "-s", "-o", archive, url + name])
    downloaded = time.monotonic()
    run(["gzip", "-t", archive])
    run(["gunzip", "-k", archive])
    run(["tar", "-xf", archive[:-3], "-C", os.path.join(work, "installed")])
    end = time.monotonic()
    shutil.rmtree(work)
    return downloaded - begin, end - begin


def time_ours(world, *transport):
    """Seconds of the transfer alone and of the whole, and the launcher's peak memory in kB."""
    shutil.rmtree(world.user)
    os.makedirs(world.user)
    world.start_server(*transport)
    begin = time.monotonic()
    process = world.start_launcher()
    peak = 0
    while process.poll() is None:
        try:
            with open("/proc/%d/status" % process.pid) as status:
                match = re.search(r"VmHWM:\s+(\d+)", status.read())
                peak = max(peak, int(match.group(1)) if match else 0)
        except OSError:
            pass
        time.sleep(0.02)
    end = time.monotonic()
    output = process.communicate()[0].decode()
    assert "is running" in output, output
    world.wait_for(lambda: "done in" in world.read_server_log())
    transfer = int(re.search(r"done in (\d+) ms", world.read_server_log()).group(1)) / 1000
    return transfer, end - begin, peak


def main():
    world = World()
    nginx = None
    try:
        print("making %d MB in %d files" % (options.megabytes, options.files), flush=True)
        folder = world.make_client(1)
        make_files(folder, options.megabytes, options.files)
        world.publish(1, folder)
        shutil.rmtree(folder)
        published = os.path.join(world.published, "app")
        name = "app_x11i86.tar.gz"
        size = os.path.getsize(os.path.join(published, name))
        print("archive: %.0f MB" % (size / 1048576), flush=True)
        nginx, url = start_nginx(world.root, published)
        rounds = {"curl": [], "stream": [], "blocks": []}
        for _ in range(options.repeat):
            rounds["curl"].append(time_peer(world, url, name))
            rounds["stream"].append(time_ours(world, "--transfer", "stream"))
            rounds["blocks"].append(time_ours(world, "--transfer", "blocks"))
            print("  one round:", {kind: rows[-1] for kind, rows in rounds.items()}, flush=True)
        median = {kind: [statistics.median(column) for column in zip(*rows)]
                  for kind, rows in rounds.items()}
        curl = median["curl"]
        for kind in ("stream", "blocks"):
            ours = median[kind]
            print("%s: whole update %.2f of the tools' time (%.2f s to %.2f s), transfer %.2f of "
                  "curl's rate (%.2f s to %.2f s), peak memory %.1f MB"
                  % (kind, ours[1] / curl[1], ours[1], curl[1], curl[0] / ours[0], ours[0],
                     curl[0], ours[2] / 1024))
    finally:
        if nginx:
            nginx.terminate()
            nginx.wait()
        world.close()


if __name__ == "__main__":
    main()
