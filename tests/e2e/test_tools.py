"""The programs around the launcher: the packer, archives of other packers, the server's manners,
help and versions."""

import filecmp
import os
import shutil
import socket
import struct
import subprocess
import unittest
import zlib

from harness import BUILD, CHECKS_BEHAVIOUR, DEMO_CLIENT, LAUNCHER, PATCH_PUBLISH, PATCH_SERVER
from harness import TIMEOUT, WorldTest, write_text

PATCH_LOAD = os.path.join(BUILD, "tools", "patch_load", "patch_load")
SKIN_ART = os.path.join(BUILD, "tools", "skin_art", "skin_art")
SKIN_COMPILE = os.path.join(BUILD, "tools", "skin_compile", "skin_compile")
SKIN_GALLERY = os.path.join(BUILD, "tools", "skin_gallery", "skin_gallery")


class Packing(WorldTest):

    def test_archives_of_gnu_tar_and_bsdtar_install_as_these_tools_unpack_them(self):
        world = self.world
        long_name = "/".join(["folder_of_some_length_%02d" % n for n in range(8)]) + "/leaf.txt"
        folder = world.make_client(1, size=100001, files=[
            ("empty.txt", ""), ("deep/one.txt", "1"), (long_name, "far down\n"),
            ("exactly_a_block.bin", "x" * 512)])
        os.makedirs(os.path.join(folder, "an_empty_folder"))
        names = sorted(os.listdir(folder))
        for version, command in ((1, ["tar", "--format=ustar", "-czf"]),
                                 (2, ["bsdtar", "--format=ustar", "-czf"])):
            world.publish(version, world.make_client("any"))
            archive = os.path.join(world.published, "app", "app_x11i86.tar.gz")
            subprocess.run(command + [archive, "-C", folder] + names, check=True)
            world.start_server()
            self.assert_started(world.run_launcher(), 1)
            unpacked = os.path.join(world.root, "unpacked_%d" % version)
            os.makedirs(unpacked)
            subprocess.run(["tar", "-xzf", archive, "-C", unpacked], check=True)
            self.assert_same_tree(unpacked, world.add_ons("client", "app_%d" % version))

    def assert_same_tree(self, expected, actual):
        compared = filecmp.dircmp(expected, actual)
        self.assertEqual([], compared.left_only, actual)
        self.assertEqual([], compared.right_only, actual)
        for name in compared.common_files:
            with open(os.path.join(expected, name), "rb") as left, \
                    open(os.path.join(actual, name), "rb") as right:
                self.assertTrue(left.read() == right.read(), os.path.join(actual, name))
        for name in compared.common_dirs:
            self.assert_same_tree(os.path.join(expected, name), os.path.join(actual, name))

    def test_packer_refuses_what_no_launcher_could_install(self):
        world = self.world
        world.publish(1)
        good = os.path.join(world.published, "app", "app_x11i86.tar.gz")
        with open(good, "rb") as archive:
            before = archive.read()
        too_long = "/".join(["n" * 30] * 4) + ".txt"
        folder = world.make_client(2, files=[(too_long, "x")])
        self.assert_refused(folder, "longer than the 100 characters")
        folder = world.make_client(2)
        os.remove(os.path.join(folder, "autopatch.cfg"))
        self.assert_refused(folder, "holds no autopatch.cfg")
        folder = world.make_client(2)
        os.mkfifo(os.path.join(folder, "pipe"))
        self.assert_refused(folder, "neither a file nor a folder")
        # What was published before still stands.
        with open(good, "rb") as archive:
            self.assertTrue(before == archive.read())

    def test_a_composite_that_can_not_take_its_parts_along_stays_as_it_was(self):
        world = self.world
        folder = os.path.join(world.root, "anims")
        os.makedirs(folder)
        write_text(os.path.join(folder, "defaults.cfg"), "version\n\t1\n")
        world.publish(1, type="misc", path="match3d")
        world.publish(1, folder, type="misc", path="anims", parent="match3d")
        part = os.path.join(world.published, "match3d", "anims")
        os.mkfifo(os.path.join(part, "pipe"))
        before = sorted(os.listdir(part))
        self.assert_refused(None, "/anims: ", "--type", "misc", "--path", "match3d")
        self.assertEqual(before, sorted(os.listdir(part)))

    def assert_refused(self, folder, reason, *arguments):
        source = ["--source", folder] if folder else []
        result = subprocess.run(
            [PATCH_PUBLISH, "--publish", self.world.published, "--version", "2", *source,
             *arguments], capture_output=True, text=True, check=False)
        self.assertEqual(1, result.returncode)
        self.assertIn(reason, result.stderr)


class Manners(WorldTest):

    def test_every_program_has_help(self):
        for program in (LAUNCHER, PATCH_SERVER, PATCH_PUBLISH, PATCH_LOAD, DEMO_CLIENT, SKIN_ART,
                        SKIN_COMPILE, SKIN_GALLERY):
            result = subprocess.run([program, "--help"], capture_output=True, text=True,
                                    check=False, timeout=TIMEOUT)
            self.assertEqual(0, result.returncode, program)
            self.assertIn("usage: " + os.path.basename(program), result.stdout)

    def test_wrong_arguments_are_refused_before_anything_is_done(self):
        folder = os.path.join(self.world.root, "untouched")
        kept = os.path.join(folder, "skins", "saffrane")
        os.makedirs(kept)
        misc = ["--publish", folder, "--version", "1", "--type", "misc", "--path"]
        for code, *command in (
                (2, PATCH_PUBLISH), (2, PATCH_PUBLISH, "--publish"),
                (2, PATCH_PUBLISH, "--publish", folder, "--version", "-18446744073709551615"),
                (2, PATCH_PUBLISH, *misc, "a/b"), (2, PATCH_PUBLISH, *misc, "data"),
                (2, PATCH_PUBLISH, *misc, "fine", "--parent", "skins"),
                (1, PATCH_PUBLISH, *misc, "fine", "--source", "/nowhere"),
                (2, PATCH_LOAD, "--port", "4x"), (2, PATCH_LOAD, "--port", "4", "--clients", "-1"),
                (2, PATCH_SERVER, "--publish", folder), (2, PATCH_SERVER, "--patience", "0"),
                (2, DEMO_CLIENT, "--else"), (2, SKIN_ART, "--else"), (2, SKIN_COMPILE, "--else"),
                (1, SKIN_ART, "/nowhere", "/nowhere", folder),
                (1, SKIN_COMPILE, "/nowhere", "saffrane"), (2, SKIN_GALLERY, "--else"),
                (1, SKIN_GALLERY, "/nowhere", "saffrane", folder)):
            result = subprocess.run(command, capture_output=True, text=True, check=False,
                                    timeout=TIMEOUT)
            self.assertEqual(code, result.returncode, command)
            self.assertTrue(result.stderr or result.stdout, command)
        self.assertEqual([kept], [path for path, names, files in os.walk(folder)
                                  if not names and not files])

    def test_launcher_tells_its_version_and_ignores_what_it_does_not_know(self):
        result = subprocess.run([LAUNCHER, "--version"], capture_output=True, text=True,
                                check=False, timeout=TIMEOUT)
        self.assertRegex(result.stdout, r"Tessarine Launcher \d+\.\d+")
        world = self.world
        world.publish(1)
        world.start_server()
        process = subprocess.run([world.program, "--no-such-thing", "word"],
                                 stdin=subprocess.DEVNULL, capture_output=True, text=True,
                                 env=world.environment(), check=False, timeout=TIMEOUT)
        self.assertIn("Demo client version 1 is running", process.stdout)

    def test_server_says_why_it_can_not_start(self):
        world = self.world
        for arguments, reason in ((["--publish", world.published], "are needed"),
                                  (["--publish", world.published, "--port", "70000"], "bad argument"),
                                  (["--publish", world.published, "--port", "0"],
                                   "holds no published client"),
                                  (["--publish", world.root + "/nowhere", "--port", "0"],
                                   "isn't there")):
            result = subprocess.run([PATCH_SERVER] + arguments, capture_output=True, text=True,
                                    env=world.environment("server"), check=False, timeout=TIMEOUT)
            self.assertNotEqual(0, result.returncode)
            self.assertIn(reason, result.stderr)
        world.publish(1)
        world.start_server()
        result = subprocess.run(
            [PATCH_SERVER, "--publish", world.published, "--port", str(world.port)],
            capture_output=True, text=True, env=world.environment("server"), check=False, timeout=TIMEOUT)
        self.assertIn("can't be opened", result.stderr)

    def test_many_launchers_at_once_all_get_their_client(self):
        world = self.world
        world.publish(1, size=100000)
        for transport in ("stream", "blocks"):
            world.start_server("--transfer", transport)
            result = subprocess.run([PATCH_LOAD, "--port", str(world.port), "--clients", "100"],
                                    capture_output=True, text=True, check=False, timeout=TIMEOUT)
            self.assertIn("100 of 100 clients finished", result.stdout)
            self.assertEqual(0, result.returncode)

    def test_a_rate_limit_is_kept(self):
        world = self.world
        folder = world.make_client(1, size=1000000)
        world.publish(1, folder)
        size = os.path.getsize(os.path.join(world.published, "app", "app_x11i86.tar.gz"))
        for transport in ("stream", "blocks"):
            shutil.rmtree(world.user)
            os.makedirs(world.user)
            world.start_server("--transfer", transport, "--rate", "1024")
            result = world.run_launcher()
            self.assert_started(result, 1)
            self.assertGreater(result.seconds, size / (1024 * 1024) * 0.7)


class Hostile(WorldTest):
    """Peers that mean no good, or that hang."""

    VALIDATION_REQUEST, FILE_REQUEST, STREAM_START = 1200, 1400, 1900

    def setUp(self):
        super().setUp()
        self.peers = []

    def tearDown(self):
        self.hang_up()
        super().tearDown()

    def hang_up(self):
        while self.peers:
            self.peers.pop().close()

    def connect(self):
        peer = socket.create_connection(("127.0.0.1", self.world.port), TIMEOUT)
        self.peers.append(peer)
        return peer

    @staticmethod
    def frame(number, fields):
        """A message of the protocol as it stands on the wire."""
        payload = struct.pack("<HH", number, 1620) + fields
        sample = payload[0:50:5].ljust(10, b"\0")
        message = bytes(17) + payload + struct.pack("<BI", 1, zlib.crc32(sample))
        return struct.pack("<BI", 0, len(message)) + message

    @staticmethod
    def file_fields(held=0, platform=4):
        return struct.pack("<I3sIB", 3, b"app", held, platform)

    def log_has(self, text):
        return text in self.world.read_server_log()

    @unittest.skipIf(CHECKS_BEHAVIOUR, "without descriptors the sanitizer's own checks fail")
    def test_a_version_published_while_all_descriptors_are_taken_comes_late_and_whole(self):
        world = self.world
        world.publish(1)
        world.start_server(descriptors=40)
        for _ in range(60):
            self.connect()
        world.wait_for(lambda: self.log_has("callers must wait"))
        world.publish(2)
        world.wait_for(lambda: self.log_has("can't be read yet"))
        self.assertFalse(self.log_has("new catalogue"))
        self.hang_up()
        world.wait_for(lambda: self.log_has("new catalogue: 1 add-ons, 1 archives"))
        self.assert_started(world.run_launcher(), 2)

    def test_who_takes_nothing_of_a_stream_is_given_up(self):
        world = self.world
        world.publish(1, size=20000000)
        world.start_server("--patience", "1")
        self.connect().sendall(self.frame(self.STREAM_START, self.file_fields()))
        world.wait_for(lambda: self.log_has("took nothing of its stream for too long"))
        self.assert_started(world.run_launcher(), 1)

    def test_who_asks_without_taking_the_answers_is_given_up(self):
        world = self.world
        picture = os.path.join(world.root, "picture.png")
        # Noise, so that the list is large.
        subprocess.run(["convert", "-size", "200x200", "xc:gray", "+noise", "Random", picture],
                       check=True)
        world.publish(1, picture=picture)
        world.start_server()
        peer = self.connect()
        request = self.frame(self.VALIDATION_REQUEST, struct.pack("<I", 0))
        with self.assertRaises(OSError):
            for _ in range(1000000):
                peer.sendall(request)
        world.wait_for(lambda: self.log_has("asked without taking the answers"))
        self.assert_started(world.run_launcher(), 1)

    def test_half_messages_and_nonsense_hold_up_nobody(self):
        world = self.world
        world.publish(1)
        world.start_server()
        good = self.frame(self.FILE_REQUEST, self.file_fields())
        for data in (b"\0", good[:4], good[:30], good[:-1],
                     struct.pack("<BI", 0, 10485759) + bytes(100)):
            self.connect().sendall(data)
        for data in (b"GET / HTTP/1.1\r\n\r\n", struct.pack("<BI", 0, 0xFFFFFFFF),
                     self.frame(4711, b""), self.frame(self.FILE_REQUEST, b""),
                     self.frame(self.FILE_REQUEST, struct.pack("<I", 0xFFFFFFFF) + b"app"),
                     self.frame(self.FILE_REQUEST, self.file_fields(held=0xFFFFFFFF)),
                     self.frame(self.STREAM_START, self.file_fields(platform=99)),
                     self.frame(self.VALIDATION_REQUEST, struct.pack("<I", 0xFFFFFFFF)),
                     self.frame(self.VALIDATION_REQUEST, struct.pack("<I", 3) + bytes(20))):
            peer = self.connect()
            peer.sendall(data)
            try:
                # A ping comes at the beginning.
                while peer.recv(4096):
                    pass
            except ConnectionResetError:
                pass  # closed with something of it unread
        self.assert_started(world.run_launcher(), 1)


if __name__ == "__main__":
    unittest.main()
