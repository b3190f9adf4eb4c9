"""A root file system of its own, into which a package is installed and of which it is seen what changed.

An overlay over this system's root, so that the package manager finds what is installed here. Where overlays cannot be
mounted (in many containers) a folder with a copy of the package manager's records stands in.
"""
import os
import pathlib
import shutil
import stat
import subprocess
import tempfile

# Mounts in a name space of its own; the upper layer stays reachable in /media. /tmp is shared: there lies the desktop.
OVERLAY = """
set -e
mount -t tmpfs tmpfs "$0"
mkdir "$0/upper" "$0/work" "$0/root"
mount -t overlay overlay -o "lowerdir=/,upperdir=$0/upper,workdir=$0/work" "$0/root"
for folder in proc dev sys tmp; do mount --rbind "/$folder" "$0/root/$folder"; done
mount --bind "$0" "$0/root/media"
cd "$0/root"
pivot_root . mnt
cd /
umount -l /mnt
echo ready
exec cat
"""
# The package manager's own memory and what it makes of all packages together.
RECORDS = ("var/lib/dpkg/", "var/log/", "var/cache/", "usr/share/applications/mimeinfo.cache", "root/", "run/", "etc/mailcap",
           "usr/share/icons/hicolor/icon-theme.cache", "etc/ld.so.cache")


class OverlayRoot:
    kind = "overlay"

    def __init__(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="ostrelle-root-", dir="/var/tmp"))
        self._holder = subprocess.Popen(["unshare", "-m", "sh", "-c", OVERLAY, str(self.folder)],
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        if self._holder.stdout.readline() != b"ready\n":
            self.close()
            raise OSError("no overlay can be mounted")

    def close(self):
        self._holder.stdin.close()
        self._holder.stdout.close()
        self._holder.wait()
        self.folder.rmdir()

    def command(self, *words):
        """As it must be started to run in there."""
        return ["nsenter", f"--mount=/proc/{self._holder.pid}/ns/mnt", "--", *words]

    def dpkg(self, *words):
        subprocess.run(self.command("dpkg", *words), check=True, capture_output=True, text=True, timeout=60)

    def program(self, path):
        return self.command("/" + path)

    def changes(self):
        """Files that are not as they were, below the root; removed ones too."""
        upper = f"/proc/{self._holder.pid}/root/media/upper"
        changes = set()
        for folder, folders, names in os.walk(upper):
            inside = os.path.relpath(folder, upper)
            for name in names + folders:
                path = os.path.normpath(os.path.join(inside, name))
                status = os.lstat(os.path.join(folder, name))
                # A folder that was there before has been entered only.
                if stat.S_ISDIR(status.st_mode) and os.path.isdir("/" + path):
                    continue
                changes.add(path)
        return {path for path in changes if not (path + "/").startswith(RECORDS) and path not in RECORDS}


class CopiedRoot:
    kind = "folder with the package manager's records"

    def __init__(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="ostrelle-root-"))
        records = self.folder / "var" / "lib" / "dpkg"
        for folder in ("info", "updates", "triggers"):
            (records / folder).mkdir(parents=True)
        shutil.copy("/var/lib/dpkg/status", records / "status")
        for line in subprocess.run(["dpkg-query", "-W", "-f", "${binary:Package}\n"], check=True, capture_output=True,
                                   text=True).stdout.split():
            (records / "info" / f"{line}.list").touch()

    def close(self):
        shutil.rmtree(self.folder)

    def dpkg(self, *words):
        subprocess.run(["dpkg", f"--root={self.folder}", "--force-not-root", "--log=/dev/null", *words], check=True,
                       capture_output=True, text=True, timeout=60)

    def program(self, path):
        return [str(self.folder / path)]

    def changes(self):
        return {path for path in (os.path.relpath(os.path.join(folder, name), self.folder)
                                  for folder, folders, names in os.walk(self.folder) for name in names + folders)
                if not (path + "/").startswith(RECORDS) and path not in ("var", "var/lib")}


def package_root():
    try:
        return OverlayRoot()
    except OSError:
        return CopiedRoot()
