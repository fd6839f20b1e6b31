#!/usr/bin/env python3
"""Keeps the arrows between the folders, and some words out.

check_architecture.py FOLDER    prints every violation as "file:line: text"; exits 1 if there is any
"""

import pathlib
import re
import subprocess
import sys

VIEWER = {"plugin", "acquisition", "view", "detection", "settings", "recording", "desktop"}

# Which parts a part may include. Every part may include itself.
ARROWS = {
    "zu": set(),
    "ky": {"zu"},
    "lookout/sdk": {"ky", "zu"},
    "viewer": {"lookout/sdk", "ky", "zu"},
    "lookout/app": {"lookout/sdk", "ky", "zu"},
    "robot": {"ky", "zu"},
    "cli": {"ky", "zu"},
}
# The parts that know no Qt.
WITHOUT_QT = {"zu", "ky", "robot", "cli"}

SOURCES = {".cpp", ".h", ".inl", ".hpp", ".cc"}
INCLUDE = re.compile(r'^\s*#\s*include\s*["<]([^">]+)[">]')
QT_INCLUDE = re.compile(r"^Q[A-Z]|^Qt|^qt|^q[a-z]+\.h$")
# What the typed proxies, and nothing else in the runtime, may know.
CAMERA_WORDS = re.compile(r"\b(camera|image|picture|photo|KyVideoDevice|KyPhotoCapture)\b", re.I)
PROXIES = re.compile(r"^ky/(include/ky/\w+_proxy\.h|src/proxies/.*)$")

TEXT_SUFFIXES = SOURCES | {"", ".md", ".cmake", ".txt", ".json", ".py", ".sh", ".xml", ".desktop",
                           ".in", ".yml", ".svg", ".supp", ".1"}
# The only homes that this project speaks of are the robot's and everybody's own.
HOME = re.compile(r"/(?:home|Users)/(?!tam\b)\w+|(?<![\w.~}])/(?:root|work)/")
URL = re.compile(r"\bhttps?://([^\s/\"'<>)]+)")
# Hosts that are named for reading; nothing is ever fetched from a host named here.
HOSTS = re.compile(r"(^|\.)(zeromq\.org|github\.com|w3\.org|freedesktop\.org|"
                   r"keepachangelog\.com|semver\.org|spdx\.org|example\.(org|com))$")
# Everything comes from the system's packages.
DOWNLOAD = re.compile(r"\b(Fetch[C]ontent|External[P]roject\w*|file\s*\(\s*DOWN[L]OAD|"
                      r"(?:pip3?|npm|cargo) [i]nstall)\b")


def part_of(path):
    """The part that a file belongs to; None for what may include everything."""
    folders = path.split("/")
    if folders[0] in VIEWER:
        return "viewer"
    if folders[0] == "lookout":
        return "/".join(folders[:2])
    return folders[0] if folders[0] in ARROWS else None


def part_of_include(name, files):
    """The part that an included file belongs to; None for what is not ours."""
    first = name.split("/")[0]
    if first in ("ky", "zu"):
        return first
    if first == "lookout" and f"lookout/sdk/include/{name}" in files:
        return "lookout/sdk"
    if name in files:
        return "tests" if first in ("tests", "benchmarks", "fuzz", "examples") else part_of(name)
    if first == "support":
        return "tests"
    return None


def check_include(path, part, name, files):
    if part in WITHOUT_QT and QT_INCLUDE.match(name):
        return f"{part} knows no Qt, but includes {name}"
    target = part_of_include(name, files)
    if target is None or target == part or target in ARROWS[part]:
        return None
    return f"no arrow leads from {part} to {target}: {name}"


def check_source(path, line, files):
    part = part_of(path)
    if part is None:
        return
    include = INCLUDE.match(line)
    problem = include and check_include(path, part, include.group(1), files)
    if problem:
        yield problem
    if part == "ky" and include and not PROXIES.match(path) and include.group(1).endswith("_proxy.h"):
        yield f"only the typed proxies know what they stand for: {include.group(1)}"
    code = line.split("//")[0]
    if part == "ky" and not PROXIES.match(path) and not include and CAMERA_WORDS.search(code):
        yield "only the typed proxies know of cameras"


def check_words(line):
    for match in HOME.finditer(line):
        yield f"a path of somebody's machine: {match.group(0)}"
    for match in URL.finditer(line):
        if not HOSTS.search(match.group(1).split(":")[0]):
            yield f"a host that is not named here: {match.group(1)}"
    if download := DOWNLOAD.search(line):
        yield f"a download that is no package of the system: {download.group(0)}"


def check(root, files):
    """Yields "file:line: text" for every violation in these files of the folder `root`."""
    known = set(files)
    for path in files:
        file = pathlib.Path(root, path)
        if file.suffix not in TEXT_SUFFIXES or not file.is_file():
            continue
        text = file.read_text(encoding="utf-8", errors="replace")
        for number, line in enumerate(text.splitlines(), 1):
            problems = list(check_words(line))
            if file.suffix in SOURCES:
                problems += check_source(path, line, known)
            for problem in problems:
                yield f"{path}:{number}: {problem}"


def files_of(root):
    """What is under version control, or everything where nothing is."""
    listing = subprocess.run(["git", "-C", root, "ls-files", "-co", "--exclude-standard"],
                             capture_output=True, text=True, check=False)
    if listing.returncode == 0 and listing.stdout:
        return listing.stdout.splitlines()
    found = (f.relative_to(root).as_posix() for f in pathlib.Path(root).rglob("*") if f.is_file())
    return sorted(f for f in found if not f.startswith(("build/", ".git/")))


def main():
    if len(sys.argv) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    files = files_of(sys.argv[1])
    problems = list(check(sys.argv[1], files))
    for problem in problems:
        print(problem)
    print(f"{len(files)} files, {len(problems)} violations")
    return 1 if problems or not files else 0


if __name__ == "__main__":
    sys.exit(main())
