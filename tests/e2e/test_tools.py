"""The programs around the launcher: the packer, archives of other packers, the server's manners,
help and versions."""

import filecmp
import os
import shutil
import subprocess
import unittest

from harness import BUILD, DEMO_CLIENT, LAUNCHER, PATCH_PUBLISH, PATCH_SERVER, WorldTest

PATCH_LOAD = os.path.join(BUILD, "tools", "patch_load", "patch_load")


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

    def assert_refused(self, folder, reason):
        result = subprocess.run(
            [PATCH_PUBLISH, "--publish", self.world.published, "--version", "2", "--source",
             folder], capture_output=True, text=True, check=False)
        self.assertEqual(1, result.returncode)
        self.assertIn(reason, result.stderr)


class Manners(WorldTest):

    def test_every_program_has_help(self):
        for program in (LAUNCHER, PATCH_SERVER, PATCH_PUBLISH, PATCH_LOAD, DEMO_CLIENT):
            result = subprocess.run([program, "--help"], capture_output=True, text=True,
                                    check=False, timeout=20)
            self.assertEqual(0, result.returncode, program)
            self.assertIn("usage: " + os.path.basename(program), result.stdout)

    def test_launcher_tells_its_version_and_ignores_what_it_does_not_know(self):
        result = subprocess.run([LAUNCHER, "--version"], capture_output=True, text=True,
                                check=False, timeout=20)
        self.assertRegex(result.stdout, r"Tessarine Launcher \d+\.\d+")
        world = self.world
        world.publish(1)
        world.start_server()
        process = subprocess.run([world.program, "--no-such-thing", "word"],
                                 stdin=subprocess.DEVNULL, capture_output=True, text=True,
                                 env=world.environment(), check=False, timeout=60)
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
                                    env=world.environment("server"), check=False, timeout=20)
            self.assertNotEqual(0, result.returncode)
            self.assertIn(reason, result.stderr)
        world.publish(1)
        world.start_server()
        result = subprocess.run(
            [PATCH_SERVER, "--publish", world.published, "--port", str(world.port)],
            capture_output=True, text=True, env=world.environment("server"), check=False, timeout=20)
        self.assertIn("can't be opened", result.stderr)

    def test_many_launchers_at_once_all_get_their_client(self):
        world = self.world
        world.publish(1, size=100000)
        for transport in ("stream", "blocks"):
            world.start_server("--transfer", transport)
            result = subprocess.run([PATCH_LOAD, "--port", str(world.port), "--clients", "100"],
                                    capture_output=True, text=True, check=False, timeout=90)
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


if __name__ == "__main__":
    unittest.main()
