# SPDX-License-Identifier: Apache-2.0
"""Trees of files that a test makes for a check."""

import pathlib
import tempfile
import unittest


class TreeTest(unittest.TestCase):
    check = None  # what is tested: check(root, files) yields violations

    def violations(self, tree):
        """What is found in a folder of these files, {path: text}."""
        with tempfile.TemporaryDirectory() as root:
            for path, text in tree.items():
                file = pathlib.Path(root, path)
                file.parent.mkdir(parents=True, exist_ok=True)
                file.write_bytes(text if isinstance(text, bytes) else text.encode())
            return list(type(self).check(root, sorted(tree)))

    def assert_clean(self, tree):
        self.assertEqual(self.violations(tree), [])

    def assert_found(self, tree, *expected):
        self.assertEqual(self.violations(tree), list(expected))
