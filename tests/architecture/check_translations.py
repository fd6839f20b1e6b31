#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Checks that every text of the sources is translated, and that the translations fit.

check_translations.py LUPDATE FOLDER    prints every violation as "file: text"; exits 1 if there is any
"""

import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

from source_files import SOURCES, files_of, text_of

PLACE = re.compile(r"%(?:L?\d{1,2}|n)")
ACCELERATOR = re.compile(r"&(?=\w)")


# A function around translate() hides the texts that it is called with.
HIDING = re.compile(r'\btranslate\(\s*"[^"]*",\s*[^"\s]')
ROOMS = ("lookout/", "viewer/")


def messages(text):
    """{(context, source): translation} of a file of texts; None where there is none yet."""
    found = {}
    for context in ElementTree.fromstring(text).findall("context"):
        for message in context.findall("message"):
            translation = message.find("translation")
            is_done = "type" not in translation.attrib and translation.text
            key = (context.findtext("name"), message.findtext("source"))
            found[key] = translation.text if is_done else None
    return found


def mistakes(source, translation):
    """What of a text must be in its translation too, and isn't, or is there and shouldn't be."""
    if sorted(PLACE.findall(source)) != sorted(PLACE.findall(translation)):
        yield "other placeholders than in the source"
    is_html = "</" in source or "&nbsp;" in source
    if not is_html and len(ACCELERATOR.findall(source)) != len(ACCELERATOR.findall(translation)):
        yield "an accelerator (&) in one of them only"
    if source.endswith("...") != translation.endswith("..."):
        yield "'...' at the end of one of them only"


def check(before, after):
    """Yields what is wrong in a file of texts, which the sources have turned into `after`."""
    known, wanted = messages(before), messages(after)
    for context, source in sorted(wanted):
        translation = known.get((context, source))
        if translation is None:
            yield f"{context}: not translated: {source!r}"
            continue
        for mistake in mistakes(source, translation):
            yield f"{context}: {mistake}: {source!r}, {translation!r}"
    for context, source in sorted(known.keys() - wanted.keys()):
        yield f"{context}: no longer in the sources: {source!r}"


def check_source(text):
    """Yields what is wrong in a source."""
    for match in HIDING.finditer(text):
        line = text.count("\n", 0, match.start()) + 1
        yield f"{line}: give translate() the text itself, or use Q_DECLARE_TR_FUNCTIONS"


def main(lupdate, root):
    """Prints what is wrong in a project; its exit code."""
    files = sorted(pathlib.Path(root, "translations").glob("*.ts"))
    with tempfile.TemporaryDirectory() as folder:
        for file in files:
            shutil.copy(file, folder)
        update = subprocess.run([pathlib.Path(root, "translations/update"), lupdate, folder],
                                capture_output=True, text=True, check=False)
        # What it doesn't understand stays English.
        problems = update.stderr.splitlines()
        if update.returncode != 0:
            problems.append(f"translations/update ends with {update.returncode}")
        for path in (path for path in files_of(root) if path.startswith(ROOMS)):
            if pathlib.PurePath(path).suffix in SOURCES:
                problems += [f"{path}:{problem}" for problem in check_source(text_of(root, path))]
        for file in files:
            after = pathlib.Path(folder, file.name).read_text(encoding="utf-8")
            problems += [f"{file.name}: {problem}"
                         for problem in check(file.read_text(encoding="utf-8"), after)]
    for problem in problems:
        print(problem)
    print(f"{len(files)} files, {len(problems)} violations")
    return 1 if problems or not files else 0


if __name__ == "__main__":
    if len(sys.argv) != 3:
        print(__doc__, file=sys.stderr)
        sys.exit(2)
    sys.exit(main(*sys.argv[1:]))
