"""Shelf and projects by command: with the program and without it, through kills, corrupt stores and read-only folders."""
import json
import os
import re
import resource
import signal
import subprocess
import unittest

from harness.desktop import Desktop
from harness.program import Program
from harness.waiting import wait_until

UUID = re.compile(r"[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}")


class FilesCommands(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop(1280, 800, compositor=False, bus=False)
        self.addCleanup(self.desktop.close)
        self.program = Program(self.desktop, start=False)
        self.addCleanup(self.program.kill)
        self.folder = self.program.data_folder()
        self.files = os.path.realpath(self.desktop.folder / "files")
        for name in ("a", "b", "with space\nand line", "Songs/x", "Films/x"):
            os.makedirs(os.path.dirname(os.path.join(self.files, name)), exist_ok=True)
            open(os.path.join(self.files, name), "w").close()

    def path(self, name):
        return os.path.join(self.files, name)

    def run_in(self, folder, *arguments):
        return subprocess.run([self.program.command, *arguments], env=self.program.environment, cwd=folder,
                              capture_output=True, text=True, timeout=30)

    def shelf(self):
        return [record["path"] for record in json.loads(self.program.call("shelf", "list", "--json").stdout)]

    def projects(self):
        return [record["displayName"] for record in json.loads(self.program.call("projects", "list", "--json").stdout)]

    def stored(self, name):
        with open(os.path.join(self.folder, name)) as file:
            return json.load(file)

    def refused(self, *arguments, status=1, folder="/"):
        result = self.run_in(folder, *arguments)
        self.assertEqual(result.returncode, status, result)
        self.assertEqual(result.stdout, "")
        return result.stderr

    def edit_everything(self):
        """The same edits have the same outcome, whoever does them."""
        added = self.run_in(self.files, "shelf", "add", "a", "./Songs/../b", "gone", "", "a", "with space\nand line")
        self.assertEqual(added.returncode, 1)
        self.assertEqual(len(added.stderr.splitlines()), 2, added.stderr)
        self.assertIn("gone", added.stderr)
        self.assertEqual(self.shelf(), [self.path("with space\nand line"), self.path("b"), self.path("a")])
        again = self.run_in(self.files, "shelf", "add", "a", "b")
        self.assertEqual((again.returncode, again.stderr), (0, ""))
        self.assertEqual(len(self.program.call("shelf", "list").stdout.splitlines()), 3)
        record = json.loads(self.program.call("shelf", "list", "--json").stdout)[0]
        self.assertEqual(set(record), {"id", "path", "addedAt"})
        self.assertTrue(UUID.fullmatch(record["id"]))
        self.program.call("shelf", "remove", "2")
        self.assertEqual(self.shelf(), [self.path("with space\nand line"), self.path("a")])
        self.assertIn("no entry 3", self.refused("shelf", "remove", "3"))
        self.refused("shelf", "remove", "0", status=2)

        folders = self.run_in(self.files, "projects", "add", "Songs", "a", "Films/", "Songs/.", ".")
        self.assertEqual((folders.returncode, folders.stderr), (1, "ostrelle: projects add: a is no folder\n"))
        self.assertEqual(self.projects(), ["Songs", "Films", "files"])
        self.program.call("projects", "move", "1", "3")
        self.assertEqual(self.projects(), ["Films", "files", "Songs"])
        self.program.call("projects", "move", "3", "2")
        self.assertEqual(self.projects(), ["Films", "Songs", "files"])
        self.assertIn("no entry 4", self.refused("projects", "move", "1", "4"))
        self.assertIn("no entry 9", self.refused("projects", "move", "9", "1"))
        self.program.call("projects", "rename", "1", "  Summer 24 ")
        self.program.call("projects", "rename", "2", "x")
        self.program.call("projects", "rename", "2", " ")
        self.assertEqual(self.projects(), ["Summer 24", "Songs", "files"])
        self.program.call("projects", "remove", "3")
        self.assertIn(f"Summer 24  ({self.path('Films')})", self.program.call("projects", "list").stdout)

    def test_with_the_program(self):
        with self.program:
            self.program.start()
            self.edit_everything()
            counts = self.program.status()["counts"]
            self.assertEqual((counts["assets"], counts["projects"]), (2, 2))
        self.assertEqual([record["path"] for record in self.stored("shelf.json")],
                         [self.path("with space\nand line"), self.path("a")])
        self.assertEqual([record["displayName"] for record in self.stored("projects.json")], ["Summer 24", "Songs"])

    def test_without_the_program(self):
        self.edit_everything()
        self.assertEqual(os.stat(os.path.join(self.folder, "shelf.json")).st_mode & 0o777, 0o600)
        os.unlink(self.path("a"))
        os.rename(self.path("Films"), self.path("moved"))
        self.program.start()
        wait_until(lambda: self.shelf() == [self.path("with space\nand line")], "missing files leave the shelf at start")
        wait_until(lambda: len(self.stored("shelf.json")) == 1, "the store is rewritten without them")
        self.assertEqual(self.projects(), ["Summer 24", "Songs"], "missing folders stay")
        self.program.call("shelf", "clear")
        self.program.stop()
        self.assertEqual(self.shelf(), [])

    def test_opens_folders_with_the_program_and_without(self):
        opener = os.path.join(self.files, "xdg-open")
        with open(opener, "w") as file:
            file.write(f'#!/bin/sh\nprintf %s "$1" > "{self.files}/part" && mv "{self.files}/part" "{self.files}/opened"\n')
        os.chmod(opener, 0o755)
        self.program.environment["PATH"] = f"{self.files}:{os.environ['PATH']}"
        self.program.call("projects", "add", self.path("Songs"), self.path("Films"))
        for runs in (False, True):
            with self.subTest(runs=runs):
                if runs:
                    self.program.start()
                self.program.call("projects", "open", "2")
                wait_until(lambda: os.path.exists(self.path("opened")), "opened")
                with open(self.path("opened")) as file:
                    self.assertEqual(file.read(), self.path("Films"))
                os.unlink(self.path("opened"))
                os.rename(self.path("Films"), self.path("moved"))
                wait_until(lambda: self.program.call("projects", "open", "2", check=False).returncode == 1, "missed")
                self.assertEqual(self.refused("projects", "open", "2"),
                                 f"ostrelle: projects open: there is no folder {self.path('Films')}\n")
                os.rename(self.path("moved"), self.path("Films"))
        self.program.stop()

    def test_killed_programs_and_many_files(self):
        names = [self.path(f"file {number}") for number in range(3000)]
        for name in names:
            open(name, "w").close()
        self.program.start()
        self.program.call("shelf", "add", *names)
        self.assertEqual(self.shelf(), names[::-1])
        wait_until(lambda: os.path.exists(os.path.join(self.folder, "shelf.json"))
                   and len(self.stored("shelf.json")) == 3000, "saved soon")
        self.program.call("shelf", "clear")
        for round_ in range(8):
            self.program.call("shelf", "add", *names[:round_ * 100 + 100])
            self.program.process.send_signal(signal.SIGKILL)
            self.program.process.wait()
            self.assertIn(len(self.stored("shelf.json")) % 100, (0,), "whole, old or new")
            self.program.call("shelf", "add", self.path("a"))
            self.program.call("shelf", "remove", "1")
            self.program.start()
        self.program.process.send_signal(signal.SIGTERM)
        self.program.process.wait(10)
        self.assertEqual([name for name in os.listdir(self.folder) if "unreadable" in name or name.startswith(".")], [])

    def test_corrupt_stores_are_kept_aside(self):
        os.makedirs(self.folder, mode=0o700)
        damaged = '[{"id":"9B2C1A8E-0000-4000-8000-000000000001","path":"/"},{}]'
        for name in ("shelf.json", "projects.json"):
            with open(os.path.join(self.folder, name), "w") as file:
                file.write(damaged)
        self.program.expected_lines = ["could not be read"]
        self.program.start()
        self.assertEqual((self.shelf(), self.projects()), ([], []))
        self.program.call("shelf", "add", self.path("a"))
        self.program.stop()
        with open(os.path.join(self.folder, "projects.json")) as file:
            self.assertEqual(file.read(), damaged, "untouched until the next save")
        told = self.program.call("projects", "add", self.path("Songs")).stderr
        self.assertEqual(told, "ostrelle: The list of projects could not be read and starts empty; its file is kept\n")
        self.assertEqual((self.shelf(), self.projects()), ([self.path("a")], ["Songs"]))
        kept = sorted(name for name in os.listdir(self.folder) if "unreadable" in name)
        self.assertEqual([name.split("-")[0] for name in kept], ["projects.unreadable", "shelf.unreadable"])
        for name in kept:
            with open(os.path.join(self.folder, name)) as file:
                self.assertEqual(file.read(), damaged)

    def test_a_full_disk(self):
        """An edit counts as done when it is on the disk, whoever does it; else it is told, and nothing is half written."""
        def limit():
            resource.setrlimit(resource.RLIMIT_FSIZE, (400, 400))

        def add_many():
            return subprocess.run([self.program.command, "shelf", "add", *names], env=self.program.environment,
                                  capture_output=True, text=True, timeout=30, preexec_fn=limit)

        names = [self.path(f"file {number}") for number in range(9)]
        for name in names:
            open(name, "w").close()
        failure = f"ostrelle: cannot write {self.folder}/shelf.json\n"
        self.program.call("shelf", "add", self.path("a"))
        before = self.stored("shelf.json")
        alone = add_many()
        self.assertEqual((alone.returncode, alone.stderr), (1, failure))
        self.assertEqual((self.stored("shelf.json"), sorted(os.listdir(self.folder))), (before, ["lock", "shelf.json"]))

        with open(self.desktop.folder / "program.log", "ab") as log:
            self.program.process = subprocess.Popen([self.program.command], env=self.program.environment, stdout=log,
                                                    stderr=log, preexec_fn=limit)
        wait_until(self.program.is_listening, "the program answers")
        self.program.expected_lines = ["The shelf could not be saved: cannot write"]
        told = add_many()
        self.assertEqual((told.returncode, told.stderr), (1, failure))
        self.assertEqual((len(self.shelf()), self.stored("shelf.json")), (10, before))
        self.program.call("shelf", "clear")
        self.assertEqual(self.stored("shelf.json"), [])
        self.program.stop()

    def test_a_read_only_folder(self):
        self.program.call("shelf", "add", self.path("a"))
        mount = 'mount --bind -o ro "$XDG_DATA_HOME" "$XDG_DATA_HOME" && exec "$0" "$@"'
        namespace = ["unshare", "--mount"] if os.getuid() == 0 else ["unshare", "--mount", "--user", "--map-root-user"]
        result = subprocess.run([*namespace, "sh", "-c", mount, self.program.command, "shelf", "add", self.path("b")],
                                env=self.program.environment, capture_output=True, text=True, timeout=30)
        self.assertEqual((result.returncode, len(result.stderr.splitlines())), (1, 1), result)
        self.assertEqual(self.shelf(), [self.path("a")])


if __name__ == "__main__":
    unittest.main(verbosity=1)
