"""The program as it is installed, in a folder of its own."""
import os
import pathlib
import shutil
import subprocess
import tempfile

from .desktop import BUILD

APPLICATION = "org.ostrelle.Ostrelle"
# Whoever deploys the program states these; the validators want some.
LICENSES = ["-DOSTRELLE_LICENSE=LicenseRef-proprietary", "-DOSTRELLE_METADATA_LICENSE=FSFAP"]


class Installation:
    """Below `root` lies what the build installs into `prefix`."""

    def __init__(self, prefix="/usr"):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="ostrelle-installed-"))
        self.prefix = self.root / prefix.lstrip("/")
        self._environment = {**os.environ, "DESTDIR": str(self.root)}
        self._run("--install", str(BUILD), "--prefix", prefix)
        self.unlicensed_metainfo = self.metainfo().read_text()
        self._run(f"-DCMAKE_INSTALL_PREFIX={prefix}", *LICENSES, "-P", str(BUILD / "packaging" / "metadata.cmake"))

    def _run(self, *arguments):
        subprocess.run(["cmake", *arguments], env=self._environment, check=True, stdout=subprocess.DEVNULL)

    def share(self, *parts):
        return self.prefix.joinpath("share", *parts)

    def metainfo(self):
        return self.share("metainfo", f"{APPLICATION}.metainfo.xml")

    def desktop_entry(self):
        return self.share("applications", f"{APPLICATION}.desktop")

    def command(self):
        return self.prefix / "bin" / "ostrelle"

    def remove(self):
        shutil.rmtree(self.root)
