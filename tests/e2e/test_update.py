"""The ordinary runs: first installation, nothing to do, update, composite add-ons, pruning."""

import os
import unittest

from harness import WorldTest, each_transport, write_text


class Update(WorldTest):

    @each_transport
    def test_first_installation_then_nothing_to_do_then_update(self, transport):
        world = self.world
        world.publish(7)
        world.start_server(*transport)
        first = world.run_launcher()
        self.assert_started(first, 7)
        self.assertIn("None installed", first.output)
        self.assertIn("Connect attempt 1 of 10...", first.output)
        self.assertIn("Currently Downloading: Application version 7", first.output)

        second = world.run_launcher()
        self.assert_started(second, 7)
        self.assertIn("None required", second.output)
        self.assertNotIn("Currently Downloading", second.output)

        world.publish(8)
        world.wait_for(lambda: "new catalogue" in world.read_server_log())
        third = world.run_launcher()
        self.assert_started(third, 8)
        self.assertEqual(["app_7", "app_8"], world.versions())
        self.assertEqual([], world.downloads())

    def test_installed_files_are_those_that_were_published(self):
        world = self.world
        folder = world.make_client(3, size=300001, files=[
            ("deep/er/text.txt", "words\n"), ("empty.txt", ""), ("behind.txt", "behind\n")])
        world.publish(3, folder)
        world.start_server()
        self.assert_started(world.run_launcher(), 3)
        for name in ("client", "ballast.bin", "deep/er/text.txt", "empty.txt", "behind.txt",
                     "autopatch.cfg"):
            with open(os.path.join(folder, name), "rb") as source, \
                    open(world.add_ons("client", "app_3", name), "rb") as installed:
                self.assertTrue(source.read() == installed.read(), name)

    @each_transport
    def test_old_versions_are_pruned_to_two(self, transport):
        world = self.world
        world.publish(9)
        world.start_server(*transport)
        for version in (9, 10, 100):
            if version != 9:
                before = world.read_server_log().count("new catalogue")
                world.publish(version)
                world.wait_for(
                    lambda: world.read_server_log().count("new catalogue") > before)
            self.assert_started(world.run_launcher(), version)
        self.assertEqual(["app_10", "app_100", "app_9"], world.versions())
        self.assert_started(world.run_launcher(), 100)
        self.assertEqual(["app_10", "app_100"], world.versions())

    @each_transport
    def test_composite_add_on_with_six_children(self, transport):
        world = self.world
        children = ["anims", "meshes_misc", "meshes_people", "meshes_pitch", "meshes_stadium",
                    "textures"]
        world.publish(1)
        world.publish(5, type="misc", path="match3d", title="3D Match View", mandatory=True)
        for child in children:
            self.publish_child(child, 5)
        world.start_server(*transport)
        self.assert_started(world.run_launcher(), 1)
        for child in children:
            with open(world.add_ons("match3d", child, "data.txt")) as data:
                self.assertEqual("%s version 5\n" % child, data.read())

        # Only what is new is fetched.
        self.publish_child("meshes_pitch", 6)
        world.wait_for(lambda: "new catalogue" in world.read_server_log())
        result = world.run_launcher()
        self.assert_started(result, 1)
        with open(world.add_ons("match3d", "meshes_pitch", "data.txt")) as data:
            self.assertEqual("meshes_pitch version 6\n", data.read())
        world.wait_for(lambda: world.read_server_log().count("session 2 ") == 1)
        session = [line for line in world.read_server_log().splitlines() if "session 2 " in line][0]
        self.assertIn("get meshes_pitch@0", session)
        self.assertEqual(1, session.count("get "), session)

    def publish_child(self, name, version):
        world = self.world
        folder = os.path.join(world.root, "source_" + name)
        os.makedirs(folder, exist_ok=True)
        write_text(os.path.join(folder, "defaults.cfg"), "version\n\t%d\n" % version)
        write_text(os.path.join(folder, "data.txt"), "%s version %d\n" % (name, version))
        world.publish(version, folder, type="misc", path=name, parent="match3d")

    def test_client_in_a_bundle_starts(self):
        world = self.world
        folder = world.make_client(2)
        bundle = os.path.join(folder, "game.app", "Contents", "Linux")
        os.makedirs(bundle)
        os.rename(os.path.join(folder, "client"), os.path.join(bundle, "game"))
        # A bundle's program runs in its own folder.
        write_text(os.path.join(bundle, "version.txt"), "2\n")
        write_text(os.path.join(folder, "autopatch.cfg"), "EXE_NAME\n\tgame.app\n")
        world.publish(2, folder)
        world.start_server()
        self.assert_started(world.run_launcher(), 2)

    def test_second_launcher_gives_way_to_the_first(self):
        world = self.world
        world.publish(1, size=1000000)
        world.start_server("--fault", "stall-after:100000")
        first = world.start_launcher()
        world.wait_for(lambda: world.downloads())
        second = world.run_launcher()
        self.assertEqual(0, second.code)
        self.assertIn("is already running", second.output)
        first.kill()
        first.communicate()
        # A lock of a killed launcher doesn't block.
        world.start_server()
        self.assert_started(world.run_launcher(), 1)


if __name__ == "__main__":
    unittest.main()
