# SPDX-License-Identifier: Apache-2.0
"""What the checks of this folder read."""

import pathlib
import subprocess
import sys

SOURCES = {".cpp", ".h", ".inl", ".hpp", ".cc"}


def files_of(root):
    """What is under version control, or everything where nothing is."""
    listing = subprocess.run(["git", "-C", root, "ls-files", "-co", "--exclude-standard"],
                             capture_output=True, text=True, check=False)
    if listing.returncode == 0 and listing.stdout:
        return sorted(p for p in set(listing.stdout.splitlines()) if pathlib.Path(root, p).is_file())
    found = (f.relative_to(root).as_posix() for f in pathlib.Path(root).rglob("*") if f.is_file())
    return sorted(f for f in found if not f.startswith(("build/", ".git/")))


def text_of(root, path):
    return pathlib.Path(root, path).read_text(encoding="utf-8", errors="replace")


def run(check, doc):
    """The whole program around one check(root, files) that yields violations; its exit code."""
    if len(sys.argv) != 2:
        print(doc, file=sys.stderr)
        return 2
    files = files_of(sys.argv[1])
    problems = list(check(sys.argv[1], files))
    for problem in problems:
        print(problem)
    print(f"{len(files)} files, {len(problems)} violations")
    return 1 if problems or not files else 0
