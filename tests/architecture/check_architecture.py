#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Keeps every include on the arrows of the house, and files out of circles.

check_architecture.py FOLDER    prints every violation as "file:line: text"; exits 1 if there is any
"""

import pathlib
import re
import sys

from source_files import SOURCES, run, text_of

# The house, from the ground up: the rooms of each floor, and what of the floors below each may
# include. A room may always include itself; a file belongs to the room with the longest name that
# its path begins with.
FLOORS = (
    {"zu": ()},
    {"ky/include": ("zu",)},
    {"ky/src": ("ky/include", "zu"),  # values, errors, keys, modules
     "ky/src/wire": ("ky/include", "zu"),
     "ky/src/video": ("ky/include", "zu")},
    {"film": ("ky/include", "zu"),
     "ky/src/transport": ("ky/src/wire", "ky/include", "zu"),
     "ky/src/proxies": ("ky/src/video", "ky/include", "zu")},
    {"ky/src/broker": ("ky/src/transport", "ky/src/wire", "ky/include", "zu"),
     "lookout/sdk": ("ky/include", "zu"),
     "lookout/app/language": (),
     "cli": ("film", "ky/include", "zu"),
     "robot/camera": ("ky/include", "zu")},
    {"robot/extractors": ("robot/camera", "ky/include", "zu"),
     "robot/streaming": ("robot/camera", "film", "ky/include", "zu"),
     "robot/recording": ("robot/camera", "ky/include", "zu"),
     "robot/ftp": ("ky/include", "zu")},
    {"robot/services": ("robot/streaming", "robot/camera", "ky/include", "zu"),
     "robot/extractors/faces": ("robot/extractors", "robot/camera", "ky/include", "zu"),
     "robot/extractors/landmarks": ("robot/extractors", "robot/camera", "ky/include", "zu"),
     "robot/extractors/pictures": ("robot/extractors", "robot/camera", "ky/include", "zu"),
     "robot/extractors/toys": ("robot/extractors", "robot/camera", "ky/include", "zu"),
     "viewer/core": ("ky/include", "zu"),
     "viewer/dialogs": (),
     "lookout/app/log": ("zu",),
     "lookout/app/plugins": ("lookout/app/language", "lookout/sdk", "zu")},
    {"robot": ("robot/extractors", "robot/extractors/faces", "robot/extractors/landmarks",
               "robot/extractors/pictures", "robot/extractors/toys", "robot/services",
               "robot/recording", "robot/ftp", "robot/camera", "ky/include", "zu"),
     "viewer/acquisition": ("viewer/core", "ky/include", "zu"),
     "viewer/detection": ("viewer/core", "ky/include", "zu"),
     "viewer/settings": ("viewer/core", "ky/include", "zu"),
     "viewer/recording": ("viewer/core", "ky/include", "zu"),
     "viewer/download": ("viewer/dialogs",),
     "lookout/app/robots": ("lookout/app/plugins", "lookout/sdk", "ky/include", "zu")},
    {"viewer/stage": ("viewer/acquisition", "viewer/download", "viewer/dialogs", "viewer/core",
                      "lookout/sdk", "film", "ky/include", "zu")},
    {"viewer/view": ("viewer/stage", "viewer/acquisition", "viewer/settings", "viewer/recording",
                     "viewer/download", "viewer/dialogs", "viewer/core", "lookout/sdk",
                     "ky/include", "zu"),
     "lookout/app/window": ("lookout/app/robots", "lookout/app/plugins", "lookout/app/log",
                            "lookout/sdk", "ky/include", "zu")},
    {"viewer/plugin": ("viewer/view", "viewer/core", "lookout/sdk", "ky/include", "zu"),
     "lookout/app": ("lookout/app/window", "lookout/app/robots", "lookout/app/plugins",
                     "lookout/app/log", "lookout/app/language", "lookout/sdk", "ky/include", "zu"),
     "examples": ("lookout/sdk", "ky/include", "zu")},
)
FLOOR_OF = {room: floor for floor, rooms in enumerate(FLOORS) for room in rooms}
BENEATH = {room: set(beneath) for rooms in FLOORS for room, beneath in rooms.items()}

# What stands outside of the house: it may include every room, and no room may include it.
OUTSIDE = ("tests", "benchmarks", "fuzz", "cmake")
# The parts that know no Qt.
WITHOUT_QT = ("zu", "ky", "film", "robot", "cli")

# Where an include is looked for, after the folder of the file that has it.
INCLUDE_FOLDERS = ("", "zu/include/", "ky/include/", "ky/src/", "lookout/sdk/include/",
                   "lookout/app/", "tests/", "benchmarks/")

INCLUDE = re.compile(r'^\s*#\s*include\s*["<]([^">]+)[">]')
QT_INCLUDE = re.compile(r"^Q[A-Z]|^Qt|^qt|^q[a-z]+\.h$")
# What the typed proxies, and what decodes pictures for them, may know, and nothing else in the
# runtime.
CAMERA_WORDS = re.compile(r"\b(camera|image|picture|photo|KyVideoDevice|KyPhotoCapture)\b", re.I)
PROXIES = re.compile(r"^ky/(include/ky/\w+_proxy\.h|src/(proxies|video)/.*)$")


def is_in(path, folder):
    return path.startswith(folder + "/")


def room_of(path):
    """The room that a file stands in; None for what is outside, or in no room."""
    rooms = [room for room in FLOOR_OF if is_in(path, room)]
    return max(rooms, key=len, default=None)


def is_outside(path):
    return any(is_in(path, folder) for folder in OUTSIDE)


def find_include(path, name, files):
    """The file of ours that an include means; None for what is not ours."""
    folders = (path.rpartition("/")[0] + "/",) + INCLUDE_FOLDERS
    return next((folder + name for folder in folders if folder + name in files), None)


def check_arrow(path, target):
    """What is wrong with `path` including `target`; None if nothing is."""
    room, other = room_of(path), room_of(target)
    if other is None:
        return f"no room includes what is outside of the house: {target}"
    if other == room or other in BENEATH[room]:
        return None
    if FLOOR_OF[other] > FLOOR_OF[room]:
        return f"{room} stands below {other}, an include that runs up: {target}"
    return f"{room} has no business with {other}: {target}"


def check_line(path, line, files):
    """Yields what is wrong with one line of a file in a room."""
    include = INCLUDE.match(line)
    name = include.group(1) if include else ""
    target = find_include(path, name, files) if include else None
    if target and (problem := check_arrow(path, target)):
        yield problem
    part = path.split("/")[0]
    if part in WITHOUT_QT and QT_INCLUDE.match(name):
        yield f"{part} knows no Qt, but includes {name}"
    if part == "ky" and not PROXIES.match(path):
        if name.endswith("_proxy.h"):
            yield f"only the typed proxies know what they stand for: {name}"
        if not include and CAMERA_WORDS.search(line.split("//")[0]):
            yield "only the typed proxies know of cameras"


def unit_of(path):
    """A header and what implements it are one: they may include each other."""
    return re.sub(r"(-inl)?\.\w+$", "", path)


def find_circles(includes):
    """Every circle of the graph {unit: {unit: line}}, each once, as a list of units."""
    circles, done = [], set()
    for start in sorted(includes):
        road, standing = [], set()

        def walk(unit):
            if unit in standing:
                circles.append(road[road.index(unit):])
            if unit in standing or unit in done:
                return
            road.append(unit)
            standing.add(unit)
            for following in sorted(includes.get(unit, ())):
                walk(following)
            road.pop()
            standing.remove(unit)
            done.add(unit)

        walk(start)
    return circles


def check(root, files):
    """Yields "file:line: text" for every violation in these files of the folder `root`."""
    known = set(files)
    includes = {}
    for path in files:
        if pathlib.PurePath(path).suffix not in SOURCES:
            continue
        if not is_outside(path) and room_of(path) is None:
            yield f"{path}:1: this folder has no place among the floors of the house"
            continue
        for number, line in enumerate(text_of(root, path).splitlines(), 1):
            if not is_outside(path):
                for problem in check_line(path, line, known):
                    yield f"{path}:{number}: {problem}"
            include = INCLUDE.match(line)
            target = include and find_include(path, include.group(1), known)
            if target and unit_of(target) != unit_of(path):
                place = includes.setdefault(unit_of(path), {})
                place.setdefault(unit_of(target), f"{path}:{number}")
    for circle in find_circles(includes):
        after = circle[1] if len(circle) > 1 else circle[0]
        yield (f"{includes[circle[0]][after]}: files that include each other in a circle: "
               + " -> ".join(circle + circle[:1]))


if __name__ == "__main__":
    sys.exit(run(check, __doc__))
