#!/usr/bin/python3
"""clang-tidy on every source of src/ without a stamp in the build folder: in full on a clean checkout, on what changed
afterwards. Usage: tidy.py BUILD_FOLDER. A build folder of joined sources (asan) takes a quarter of the time, since the
headers of the toolkit, which are most of what there is to read, are read once for several sources."""
import concurrent.futures
import json
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(sys.argv[1]).resolve()
STAMPS = BUILD / "tidy"
CONFIGURATION = ROOT / ".clang-tidy"


def sources_of(file):
    """The project's own sources that a translation unit is made of."""
    if "/Unity/" not in str(file):
        return [file] if ROOT / "src" in file.parents and BUILD not in file.parents else []
    included = re.findall(r'#include "(.+)"', file.read_text())
    return [path for path in map(pathlib.Path, included) if ROOT / "src" in path.parents and BUILD not in path.parents]


def check(file):
    stamp = STAMPS / str(file).strip("/").replace("/", "_")
    if stamp.exists() and all(stamp.stat().st_mtime > path.stat().st_mtime for path in [*sources_of(file), CONFIGURATION]):
        return ""
    result = subprocess.run(["clang-tidy-14", "-p", str(BUILD), "--quiet", "--extra-arg=-Wno-unknown-warning-option",
                             str(file)], capture_output=True, text=True)
    if result.returncode == 0:
        stamp.touch()
        return ""
    return result.stdout or result.stderr


def main():
    if not (BUILD / "compile_commands.json").exists():
        sys.exit(f"{BUILD} is not built: cmake --preset asan && ninja -C build/asan unit_tests")
    STAMPS.mkdir(exist_ok=True)
    commands = json.loads((BUILD / "compile_commands.json").read_text())
    files = [file for file in (pathlib.Path(command["directory"], command["file"]) for command in commands)
             if sources_of(file)]
    assert files, "nothing to check"
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        problems = [text for text in pool.map(check, files) if text]
    print("\n".join(problems) or f"{len(files)} translation units are clean")
    return 1 if problems else 0


sys.exit(main())
