"""What goes wrong: lost connections, bad data, faults of the server, missing files, kills."""

import os
import random
import re
import shutil
import subprocess
import time
import unittest

from harness import DEMO_CLIENT, TIMEOUT, WorldTest, each_transport, write_text


def sessions(world):
    """The log lines of the sessions that have ended."""
    return re.findall(r"session \d+ .*", world.read_server_log())


class Connection(WorldTest):

    @each_transport
    def test_resume_after_a_dropped_connection(self, transport):
        if "blocks" not in transport:
            return self.check_dropped_stream(transport)
        world = self.world
        world.publish(1, size=1000000)
        world.start_server("--fault", "drop-after:500000", *transport)
        self.assert_started(world.run_launcher(), 1)
        world.wait_for(lambda: len(sessions(world)) >= 2)
        lines = sessions(world)
        # What had been checked isn't sent again: the second session begins where the checked part
        # ends, and both together send the archive and less than one run of blocks more.
        resumed = [int(n) for n in re.findall(r"get app@(\d+)", lines[1])]
        self.assertGreater(resumed[0], 400000)
        sent = sum(int(re.search(r"sent (\d+) bytes", line).group(1)) for line in lines)
        archive = os.path.getsize(os.path.join(world.published, "app", "app_x11i86.tar.gz"))
        self.assertLess(sent, archive + 2 * 4 * 8192)

    def check_dropped_stream(self, transport):
        """A stream that breaks off ends the run: the installed client starts, and the next run
        brings the update."""
        world = self.world
        world.publish(1)
        world.start_server(*transport)
        self.assert_started(world.run_launcher(), 1)
        world.publish(2, size=1000000)
        world.start_server("--fault", "drop-after:500000", *transport)
        result = world.run_launcher()
        self.assert_started(result, 1)
        self.assertIn("broke off", result.output)
        self.assert_started(world.run_launcher(), 2)

    def test_close_in_a_stream_without_an_installed_client_is_told(self):
        world = self.world
        world.publish(1, size=1000000)
        world.start_server("--fault", "close-in-stream:300000")
        result = world.run_launcher()
        self.assertIsNone(result.started_version())
        self.assertIn("Unable to connect to the Tessarine auto download server.", result.output)
        self.assertIn("kbarticleid=73", result.output)
        self.assert_started(world.run_launcher(), 1)

    def test_server_unreachable_on_a_first_installation(self):
        world = self.world
        world.port = world.closed_port()
        world.configure()
        result = world.run_launcher()
        self.assertIn("Connect attempt 10 of 10...", result.output)
        self.assertIn("Unable to connect to the Tessarine auto download server.", result.output)
        self.assertIsNone(result.started_version())

    def test_server_unreachable_with_an_installed_client(self):
        world = self.world
        world.publish(4)
        world.start_server()
        self.assert_started(world.run_launcher(), 4)
        world.stop_server()
        world.port = world.closed_port()
        world.configure()
        result = world.run_launcher()
        self.assert_started(result, 4)
        self.assertNotIn("Unable to connect", result.output)

    def test_stalled_download_ends_when_the_user_interrupts(self):
        world = self.world
        world.publish(1, size=1000000)
        world.start_server("--fault", "stall-after:100000")
        process = world.start_launcher()
        world.wait_for(lambda: world.downloads())
        process.terminate()
        output = process.communicate(timeout=TIMEOUT)[0].decode()
        self.assertEqual(0, process.returncode, output)


class BadData(WorldTest):

    @each_transport
    def test_wrong_archive_checksum_keeps_the_old_client(self, transport):
        world = self.world
        world.publish(1)
        world.start_server(*transport)
        self.assert_started(world.run_launcher(), 1)
        world.publish(2)
        world.start_server("--fault", "bad-archive-crc", *transport)
        self.assert_started(world.run_launcher(), 1)
        self.assertEqual(["app_1"], world.versions())
        world.start_server(*transport)
        self.assert_started(world.run_launcher(), 2)

    def test_wrong_archive_checksum_on_a_first_installation_is_told(self):
        world = self.world
        world.publish(1)
        world.start_server("--fault", "bad-archive-crc")
        result = world.run_launcher()
        self.assertIn("The downloaded file appears to be corrupt.", result.output)
        self.assertIn("kbarticleid=80", result.output)

    def test_flipped_byte_and_wrong_block_checksum_cost_one_run_of_blocks(self):
        for fault in ("flip-block:9", "bad-block-crc:2"):
            with self.subTest(fault=fault):
                world = self.new_world()
                world.publish(1)
                world.start_server("--transfer", "blocks", "--block-size", "8192",
                                   "--checkpoint-every", "4", "--fault", fault)
                self.assert_started(world.run_launcher(), 1)
                world.wait_for(lambda: sessions(world))
                asked = re.findall(r"get app@(\d+)", sessions(world)[0])
                self.assertEqual(1, len(asked) - len(set(asked)), asked)

    @each_transport
    def test_peers_of_another_kind_are_understood(self, transport):
        for fault in ("big-endian", "byte-prefix"):
            with self.subTest(fault=fault):
                world = self.new_world()
                world.publish(1, size=50000)
                world.start_server("--fault", fault, *transport)
                self.assert_started(world.run_launcher(), 1)

    def test_unknown_message_is_a_server_error(self):
        world = self.world
        world.publish(1)
        world.start_server("--fault", "unknown-id")
        result = world.run_launcher()
        self.assertIn("The server has reported an unknown error.", result.output)

    def test_archive_without_its_check_file(self):
        world = self.world
        world.publish(1)
        self.replace_archive({"readme.txt": "no settings here\n"})
        world.start_server()
        result = world.run_launcher()
        self.assertIn("Extracting the new files failed.", result.output)
        self.assertEqual([], [name for name in world.versions() if name == "app_1"])

    def test_archive_that_leads_outside_is_refused(self):
        world = self.world
        world.publish(1)
        self.replace_archive({"autopatch.cfg": "EXE_NAME\n\tx\n", "../../outside.txt": "evil\n"})
        world.start_server()
        result = world.run_launcher()
        self.assertIn("Extracting the new files failed.", result.output)
        found = [name for _, _, names in os.walk(world.user) for name in names]
        self.assertNotIn("outside.txt", found)

    def replace_archive(self, files):
        import io
        import tarfile
        path = os.path.join(self.world.published, "app", "app_x11i86.tar.gz")
        with tarfile.open(path, "w:gz", format=tarfile.USTAR_FORMAT) as tar:
            for name, text in files.items():
                entry = tarfile.TarInfo(name)
                entry.size = len(text)
                tar.addfile(entry, io.BytesIO(text.encode()))


class Missing(WorldTest):

    def setUp(self):
        super().setUp()
        self.world.publish(5)
        self.world.start_server()
        self.assert_started(self.world.run_launcher(), 5)

    def test_version_folder_gone_is_fetched_again(self):
        shutil.rmtree(self.world.add_ons("client", "app_5"))
        self.assert_started(self.world.run_launcher(), 5)

    def test_version_folder_gone_with_no_server_is_told(self):
        world = self.world
        shutil.rmtree(world.add_ons("client", "app_5"))
        world.stop_server()
        world.port = world.closed_port()
        world.configure()
        result = world.run_launcher()
        self.assertIsNone(result.started_version())
        self.assertIn("Unable to connect to the Tessarine auto download server.", result.output)

    def test_client_file_missing_is_told(self):
        world = self.world
        os.remove(world.add_ons("client", "app_5", "client"))
        result = world.run_launcher()
        self.assertNotEqual(0, result.code)
        self.assertIn("dos not exist, the application cannot continue.", result.output)
        self.assertIn(world.add_ons("client", "app_5", "client"), result.output)

    def test_client_that_is_no_program_leads_to_the_error_page(self):
        world = self.world
        write_text(world.add_ons("client", "app_5", "client"), "no program\n")
        result = world.run_launcher()
        self.assertIn("can't be started", result.output)
        self.assertIn("Unable to install due to an unknown error.", result.output)

    def test_damaged_catalogue_is_rebuilt_and_client_fetched_or_started(self):
        world = self.world
        path = world.add_ons("add_ons.bin")
        with open(path, "rb") as catalogue:
            data = catalogue.read()
        for damaged in (b"", data[:len(data) // 2], b"\xff" * len(data)):
            with open(path, "wb") as catalogue:
                catalogue.write(damaged)
            self.assert_started(world.run_launcher(), 5)

    def test_read_only_user_folder_still_starts_the_client(self):
        if os.geteuid() == 0:
            self.skipTest("root may write everywhere")
        world = self.world
        os.chmod(world.add_ons(), 0o500)
        self.assert_started(world.run_launcher(), 5)


class FullDisk(WorldTest):
    """The user's folder lies on a file system of its own, with room for little."""

    def setUp(self):
        super().setUp()
        # Enough for one installed client, its archive and that archive unpacked.
        self.client = os.path.getsize(DEMO_CLIENT)
        mounted = subprocess.run(["mount", "-t", "tmpfs", "-o", "size=%d" % (3.2 * self.client),
                                  "tmpfs", self.world.user],
                                 stderr=subprocess.DEVNULL, check=False)
        if mounted.returncode != 0:
            self.skipTest("no file system can be mounted here")

    def tearDown(self):
        subprocess.run(["umount", "-l", self.world.user], stderr=subprocess.DEVNULL, check=False)
        super().tearDown()

    def test_full_disk_is_told_and_the_old_client_stays(self):
        world = self.world
        for transport in ("stream", "blocks"):
            world.publish(1, size=200000)
            world.start_server("--transfer", transport)
            self.assert_started(world.run_launcher(), 1)
            world.publish(2, size=4 * self.client)
            world.start_server("--transfer", transport)
            result = world.run_launcher()
            self.assert_started(result, 1)
            self.assertRegex(result.output, "can't be (written|stored|appended)|can't be read or")
            self.assertEqual(["app_1"], world.versions())
            # There is room for the archive, but not for what is in it.
            world.publish(3, size=self.client)
            world.start_server("--transfer", transport)
            result = world.run_launcher()
            self.assert_started(result, 1)
            self.assertEqual(["app_1"], world.versions())


class Kill(WorldTest):

    def test_kill_at_any_moment_leaves_a_client_that_starts(self):
        """Fifty kills at random moments of an update; each next run starts a client."""
        world = self.world
        seed = int(os.environ.get("KV_KILL_SEED", "20260101"))
        rng = random.Random(seed)
        world.publish(1, size=300000)
        world.start_server("--transfer", "blocks", "--block-size", "16384")
        self.assert_started(world.run_launcher(), 1)
        keep = os.path.join(world.root, "user_with_1")
        shutil.copytree(world.user, keep)
        world.publish(2, size=3000000)
        world.wait_for(lambda: "new catalogue" in world.read_server_log())
        duration = world.run_launcher().seconds
        for _ in range(int(os.environ.get("KV_KILLS", "50"))):
            shutil.rmtree(world.user)
            shutil.copytree(keep, world.user)
            process = world.start_launcher()
            moment = rng.uniform(0, duration)
            time.sleep(moment)
            process.kill()
            process.communicate()
            result = world.run_launcher()
            self.assertEqual("2", result.started_version(),
                             "killed after %.3f s:\n%s" % (moment, result.output))

    def test_kill_and_then_no_server_starts_the_newest_complete_client(self):
        world = self.world
        rng = random.Random(7)
        world.publish(1, size=100000)
        world.start_server()
        self.assert_started(world.run_launcher(), 1)
        keep = os.path.join(world.root, "user_with_1")
        shutil.copytree(world.user, keep)
        world.publish(2, size=3000000)
        world.wait_for(lambda: "new catalogue" in world.read_server_log())
        duration = world.run_launcher().seconds
        server_port = world.port
        for _ in range(10):
            shutil.rmtree(world.user)
            shutil.copytree(keep, world.user)
            world.port = server_port
            world.configure()
            process = world.start_launcher()
            time.sleep(rng.uniform(0, duration))
            process.kill()
            process.communicate()
            world.port = world.closed_port()
            world.configure()
            result = world.run_launcher()
            self.assertIn(result.started_version(), ("1", "2"), result.output)


if __name__ == "__main__":
    unittest.main()
