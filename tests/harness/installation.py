"""The program as it is installed, in a folder of its own."""
import pathlib
import shutil
import subprocess
import tempfile

from .desktop import BUILD

APPLICATION = "org.ostrelle.Ostrelle"
# Whoever deploys the program states these; the validators want some.
LICENSES = ["-DOSTRELLE_LICENSE=LicenseRef-proprietary", "-DOSTRELLE_METADATA_LICENSE=FSFAP"]


class Installation:
    """What the build installs, in `prefix`."""

    def __init__(self):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="ostrelle-installed-"))
        self.prefix = self.root / "usr"
        self._run("--install", str(BUILD), "--prefix", str(self.prefix))
        self.unlicensed_metainfo = self.metainfo().read_text()
        self._run(f"-DCMAKE_INSTALL_PREFIX={self.prefix}", *LICENSES, "-P", str(BUILD / "packaging" / "metadata.cmake"))

    @staticmethod
    def _run(*arguments):
        subprocess.run(["cmake", *arguments], check=True, stdout=subprocess.DEVNULL)

    def share(self, *parts):
        return self.prefix.joinpath("share", *parts)

    def metainfo(self):
        return self.share("metainfo", f"{APPLICATION}.metainfo.xml")

    def desktop_entry(self):
        return self.share("applications", f"{APPLICATION}.desktop")

    def unit(self):
        return self.prefix / "lib" / "systemd" / "user" / f"app-{APPLICATION}.service"

    def command(self):
        return self.prefix / "bin" / "ostrelle"

    def environment(self):
        """By which a desktop sees it."""
        return {"XDG_DATA_DIRS": f"{self.share()}:/usr/local/share:/usr/share",
                "PATH": f"{self.command().parent}:/usr/local/bin:/usr/bin:/bin"}

    def remove(self):
        shutil.rmtree(self.root)
