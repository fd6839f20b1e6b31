#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Keeps some words out of the project's texts.

check_words.py FOLDER    prints every violation as "file:line: text"; exits 1 if there is any
"""

import pathlib
import re
import sys

from source_files import SOURCES, run, text_of

TEXT_SUFFIXES = SOURCES | {"", ".md", ".cmake", ".txt", ".json", ".py", ".sh", ".xml", ".desktop",
                           ".in", ".yml", ".svg", ".supp", ".1"}
# The only homes that this project speaks of are the robot's and everybody's own.
HOME = re.compile(r"/(?:home|Users)/(?!tam\b)\w+|(?<![\w.~}])/(?:root|work)/")
URL = re.compile(r"\bhttps?://([^\s/\"'<>)]+)")
# Hosts that are named for reading; nothing is ever fetched from a host named here.
HOSTS = re.compile(r"(^|\.)(zeromq\.org|github\.com|w3\.org|freedesktop\.org|apache\.org|"
                   r"editorconfig\.org|keepachangelog\.com|semver\.org|spdx\.org|"
                   r"example\.(org|com))$")
# Everything comes from the system's packages.
DOWNLOAD = re.compile(r"\b(Fetch[C]ontent|External[P]roject\w*|file\s*\(\s*DOWN[L]OAD|"
                      r"(?:pip3?|npm|cargo) [i]nstall)\b")
LICENCE = "SPDX-License-Identifier: Apache-2.0"


def names_licence(path, lines):
    """Whether a program's file does, in its first line or the one after "#!"; None for others."""
    is_script = lines and lines[0].startswith("#!")
    name = pathlib.PurePath(path)
    if name.suffix in SOURCES | {".py", ".cmake"} or name.name == "CMakeLists.txt" or is_script:
        return LICENCE in "".join(lines[:2 if is_script else 1])
    return None


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
    for path in files:
        suffix = pathlib.PurePath(path).suffix
        if suffix not in TEXT_SUFFIXES:
            continue
        lines = text_of(root, path).splitlines()
        if names_licence(path, lines) is False:
            yield f"{path}:1: the licence is not named at its begin: {LICENCE}"
        for number, line in enumerate(lines, 1):
            for problem in check_words(line):
                yield f"{path}:{number}: {problem}"


if __name__ == "__main__":
    sys.exit(run(check, __doc__))
