#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Tests that check_words.py sees what it is there to see."""

import unittest

import check_words
from made_tree import TreeTest


class CheckWords(TreeTest):
    check = check_words.check

    def test_paths_of_somebodys_machine_are_found(self):
        # In pieces: this file is checked too.
        for path in ("/home" + "/ann/src", "/Users" + "/ann", "/ro" + "ot/x", "/wo" + "rk/x"):
            found = self.violations({"README.md": f"See {path}.\n"})
            self.assertEqual(len(found), 1, path)
            self.assertIn("README.md:1: a path of somebody's machine: ", found[0])
        self.assert_clean({"a.md": 'p = "/home/tam/recordings/"\n"build/home.x"\n'})

    def test_hosts_that_are_not_known_are_found(self):
        host = "packages.somewhere" + ".net"
        self.assert_found({"scripts/get": f"curl https:/" + f"/{host}/list\n"},
                          f"scripts/get:1: a host that is not named here: {host}")
        self.assert_clean({"docs/keys.md": "see https://rfc.zeromq.org/spec/26/\n"})

    def test_downloads_are_found(self):
        for text in ("include(Fetch" + "Content)", "External" + "Project_Add(x)",
                     "pip in" + "stall x", "file(DOWN" + "LOAD x y)"):
            found = self.violations({"cmake/x.txt": text + "\n"})
            self.assertEqual(len(found), 1, text)
            self.assertIn("cmake/x.txt:1: a download that is no package of the system: ",
                          found[0])

    def test_a_program_without_the_licence_is_found(self):
        line = check_words.LICENCE
        self.assert_clean({"CMakeLists.txt": f"# {line}\n", "a.cpp": f"// {line}\n",
                           "b.h": f"// {line}\n// What b is for.\n", "c.md": "",
                           "run": f"#!/bin/sh\n# {line}\n"})
        for path, text in (("CMakeLists.txt", ""), ("a.cpp", f"\n// {line}\n"), ("b.h", ""),
                           ("run", f"#!/bin/sh\n\n# {line}\n"), ("x.py", "import sys\n")):
            self.assert_found({path: text},
                              f"{path}:1: the licence is not named at its begin: {line}")

    def test_files_that_are_no_text_are_left_alone(self):
        self.assert_clean({"a.png": b"\x89PNG /home" + b"/ann/"})


if __name__ == "__main__":
    unittest.main()
