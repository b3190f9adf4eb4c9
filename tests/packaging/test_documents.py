"""The manual page and the completions that are installed: accepted by their own readers, and of use."""
import os
import pathlib
import re
import subprocess
import tempfile
import unittest

from harness.installation import Installation

BASH = """source "$1"; COMP_WORDS=("${@:2}"); COMP_CWORD=$(( $# - 2 )); compopt() { :; }
_ostrelle; printf '%s\\n' "${COMPREPLY[@]}" """
# Stand-ins for what only an interactive shell has; they tell what they were asked to offer.
ZSH = """_describe() { print -l -- ${(P)@[-1]} }
_files() { [[ $1 == -/ ]] && print -l -- *(/) || print -l -- * }
file=$1; shift; words=("$@"); CURRENT=$#; source $file"""


class Documents(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.installed = Installation()
        cls.bash = cls.installed.share("bash-completion", "completions", "ostrelle")
        cls.zsh = cls.installed.share("zsh", "site-functions", "_ostrelle")
        cls.fish = cls.installed.share("fish", "vendor_completions.d", "ostrelle.fish")
        cls.page = cls.installed.share("man", "man1", "ostrelle.1.gz")
        cls.home = tempfile.TemporaryDirectory()
        for name in ("file.txt", "folder"):
            path = pathlib.Path(cls.home.name, name)
            path.mkdir() if name == "folder" else path.touch()

    @classmethod
    def tearDownClass(cls):
        cls.installed.remove()
        cls.home.cleanup()

    def run_here(self, *command, environment=None):
        result = subprocess.run([str(word) for word in command], cwd=self.home.name, capture_output=True, text=True,
                                env={"PATH": os.environ["PATH"], "HOME": self.home.name, "LC_ALL": "C.UTF-8",
                                     **(environment or {})})
        self.assertEqual((result.returncode, result.stderr), (0, ""), command)
        return result.stdout

    def completed(self, line):
        """What each shell offers at the end of a line, by shell. Of the stand-ins, what begins as the last word does."""
        words = line.split(" ")
        offered = {
            "bash": self.run_here("bash", "-c", BASH, "bash", self.bash, *words).splitlines(),
            "zsh": [word.partition(":")[0] for word in self.run_here("zsh", "-fc", ZSH, "zsh", self.zsh, *words).splitlines()
                    if word.startswith(words[-1])],
            # Which finds them by itself, as it does for a command in the path.
            "fish": [word.partition("\t")[0].rstrip("/") for word in self.run_here(
                "fish", "--command", f"complete --do-complete '{line}'",
                environment=self.installed.environment()).splitlines()],
        }
        return {shell: set(filter(None, words)) for shell, words in offered.items()}

    def assert_completed(self, line, words):
        for shell, offered in self.completed(line).items():
            self.assertEqual(offered, set(words), f"{shell}: {line}")

    def commands(self):
        """The usage of each command, as the help shows them."""
        text = self.run_here(self.installed.command(), "--help")
        return [line.strip().split("  ")[0] for line in text.split("\n\n")[3].splitlines()]

    def test_the_shells_can_read_them(self):
        self.run_here("bash", "-n", self.bash)
        self.run_here("zsh", "-fn", self.zsh)
        self.run_here("fish", "--no-execute", self.fish)

    def test_every_command_is_offered(self):
        names = [usage.split(" ") for usage in self.commands()]
        groups = {name[0] for name in names if [word[0] for word in names].count(name[0]) > 1}
        self.assertIn("clipboard", groups)
        self.assert_completed("ostrelle ", {name[0] for name in names})
        for group in groups:
            # A group may be a command by itself, with options.
            words = {name[1] for name in names if name[0] == group and len(name) > 1 and name[1][0] not in "[-"}
            self.assert_completed(f"ostrelle {group} ", words)

    def test_arguments_and_options_are_offered_where_they_belong(self):
        for line, words in (
                ("ostrelle clip", ["clipboard"]),
                ("ostrelle open c", ["clipboard", "color"]),
                ("ostrelle open clipboard ", []),
                ("ostrelle clipboard pin ", []),
                ("ostrelle settings set general.h", ["general.haptics", "general.hoverOpenDelay"]),
                ("ostrelle settings set general.haptics ", ["true", "false"]),
                ("ostrelle settings set appearance.preference ", ["system", "light", "dark"]),
                ("ostrelle settings set general.hoverOpenDelay ", []),
                ("ostrelle shortcuts unset pick", ["pickColor"]),
                ("ostrelle color pick --format h", ["hex", "hsl"]),
                ("ostrelle status --", ["--json", "--help"]),
                ("ostrelle inspect --re", ["--recursive"]),
                ("ostrelle inspect --jobs ", []),
                ("ostrelle inspect --jobs 4 one.png two.png fi", ["file.txt"]),
                ("ostrelle thumbnail fi", ["file.txt"]),
                ("ostrelle thumbnail --output fi", ["file.txt"]),
                ("ostrelle projects add one two fo", ["folder"]),
                ("ostrelle projects add fi", []),
                ("ostrelle nonsense ", [])):
            self.assert_completed(line, words)

    def test_the_manual_page_is_well_formed_and_tells_of_everything(self):
        self.run_here("mandoc", "-T", "lint", "-W", "warning", self.page)
        self.run_here("man", "--warnings", "-E", "UTF-8", "-Tutf8", "-l", self.page)
        text = re.sub(r".\x08", "", self.run_here("mandoc", "-T", "utf8", "-O", "width=200", self.page))
        for usage in self.commands():
            self.assertRegex(text, rf"(?m)^ +{re.escape(usage.replace('…', ' ...'))}( {{2,}}|$)")
        for line in self.run_here(self.installed.command(), "settings", "list").splitlines():
            self.assertRegex(text, rf"(?m)^ +{re.escape(line.split(' ')[0])}\b")


if __name__ == "__main__":
    unittest.main()
