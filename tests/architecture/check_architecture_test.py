#!/usr/bin/env python3
"""Tests that check_architecture.py sees what it is there to see."""

import pathlib
import tempfile
import unittest

import check_architecture


class CheckArchitecture(unittest.TestCase):
    def violations(self, tree):
        """What is found in a folder of these files, {path: text}."""
        with tempfile.TemporaryDirectory() as root:
            for path, text in tree.items():
                file = pathlib.Path(root, path)
                file.parent.mkdir(parents=True, exist_ok=True)
                file.write_text(text, encoding="utf-8")
            return list(check_architecture.check(root, sorted(tree)))

    def assert_clean(self, tree):
        self.assertEqual(self.violations(tree), [])

    def assert_found(self, tree, *expected):
        self.assertEqual(self.violations(tree), list(expected))

    def test_arrows_that_are_there_may_be_used(self):
        self.assert_clean({
            "zu/src/log.cpp": '#include "zu/log.h"\n#include <mutex>\n',
            "ky/src/a.cpp": '#include "zu/log.h"\n#include "wire/b.h"\n#include "ky/value.h"\n',
            "robot/main.cpp": '#include "ky/broker.h"\n#include "robot/robot.h"\n',
            "robot/robot.h": "#include <opencv2/core.hpp>\n",
            "view/a.cpp": '#include <QWidget>\n#include "acquisition/m.h"\n'
                          '#include "lookout/w.h"\n',
            "acquisition/m.h": "",
            "lookout/sdk/include/lookout/w.h": '#include <QWidget>\n#include "ky/broker.h"\n',
            "lookout/app/a.cpp": '#include "lookout/w.h"\n#include "window/b.h"\n',
            "tests/view/t.cpp": '#include "view/a.h"\n#include "support/wait.h"\n',
        })

    def test_the_foundation_does_not_know_what_stands_on_it(self):
        self.assert_found({"zu/src/a.cpp": '#include "ky/value.h"\n'},
                          "zu/src/a.cpp:1: no arrow leads from zu to ky: ky/value.h")

    def test_the_runtime_knows_neither_viewer_nor_robot(self):
        self.assert_found(
            {"ky/src/a.cpp": '\n#include "view/a.h"\n#include "robot/b.h"\n', "view/a.h": "",
             "robot/b.h": ""},
            "ky/src/a.cpp:2: no arrow leads from ky to viewer: view/a.h",
            "ky/src/a.cpp:3: no arrow leads from ky to robot: robot/b.h")

    def test_robot_and_viewer_do_not_know_each_other(self):
        self.assert_found(
            {"robot/a.cpp": '#include "view/a.h"\n', "view/a.h": "",
             "view/b.cpp": '#include "robot/b.h"\n', "robot/b.h": ""},
            "robot/a.cpp:1: no arrow leads from robot to viewer: view/a.h",
            "view/b.cpp:1: no arrow leads from viewer to robot: robot/b.h")

    def test_the_host_never_includes_the_viewer(self):
        self.assert_found(
            {"lookout/app/a.cpp": '#include "plugin/module.h"\n', "plugin/module.h": ""},
            "lookout/app/a.cpp:1: no arrow leads from lookout/app to viewer: plugin/module.h")

    def test_the_sdk_knows_neither_host_nor_viewer(self):
        self.assert_found(
            {"lookout/sdk/src/a.cpp": '#include "lookout/app/run.h"\n#include "view/a.h"\n',
             "lookout/app/run.h": "", "view/a.h": ""},
            "lookout/sdk/src/a.cpp:1: no arrow leads from lookout/sdk to lookout/app: "
            "lookout/app/run.h",
            "lookout/sdk/src/a.cpp:2: no arrow leads from lookout/sdk to viewer: view/a.h")

    def test_some_parts_know_no_qt(self):
        for part, file in (("zu", "zu/a.h"), ("ky", "ky/src/a.h"), ("robot", "robot/a.h"),
                           ("cli", "cli/a.h")):
            for header in ("QString", "QtGlobal", "qglobal.h", "QtCore/QObject"):
                self.assert_found({file: f"#include <{header}>\n"},
                                  f"{file}:1: {part} knows no Qt, but includes {header}")

    def test_no_part_includes_tests(self):
        self.assert_found(
            {"ky/src/a.cpp": '#include "support/wait.h"\n#include "tests/ky/b.h"\n',
             "tests/ky/b.h": ""},
            "ky/src/a.cpp:1: no arrow leads from ky to tests: support/wait.h",
            "ky/src/a.cpp:2: no arrow leads from ky to tests: tests/ky/b.h")

    def test_only_the_typed_proxies_of_the_runtime_know_cameras(self):
        self.assert_clean({
            "ky/src/proxies/video.cpp": '#include "ky/video_device_proxy.h"\nint camera;\n',
            "ky/include/ky/video_device_proxy.h": "int image;\n",
            "ky/include/ky/binary.h": "// an image stays one piece\n"})
        self.assert_found(
            {"ky/src/broker.cpp": '#include "ky/video_device_proxy.h"\nint camera;\n'},
            "ky/src/broker.cpp:1: only the typed proxies know what they stand for: "
            "ky/video_device_proxy.h",
            "ky/src/broker.cpp:2: only the typed proxies know of cameras")

    def test_paths_of_somebodys_machine_are_found(self):
        # In pieces: this file is checked too.
        for path in ("/home" + "/ann/src", "/Users" + "/ann", "/ro" + "ot/x", "/wo" + "rk/x"):
            found = self.violations({"README.md": f"See {path}.\n"})
            self.assertEqual(len(found), 1, path)
            self.assertIn("README.md:1: a path of somebody's machine: ", found[0])
        self.assert_clean({"a.cpp": 'auto p = "/home/tam/recordings/";\n"build/home.x"\n'})

    def test_hosts_that_are_not_known_are_found(self):
        host = "packages.somewhere" + ".net"
        self.assert_found({"scripts/get": f"curl https:/" + f"/{host}/list\n"},
                          f"scripts/get:1: a host that is not named here: {host}")
        self.assert_clean({"ky/keys.h": "// see https://rfc.zeromq.org/spec/26/\n"})

    def test_downloads_are_found(self):
        for text in ("include(Fetch" + "Content)", "External" + "Project_Add(x)", "pip in" + "stall x",
                     "file(DOWN" + "LOAD x y)"):
            found = self.violations({"cmake/x.cmake": text + "\n"})
            self.assertEqual(len(found), 1, text)
            self.assertIn("cmake/x.cmake:1: a download that is no package of the system: ", found[0])

    def test_files_that_are_no_text_are_left_alone(self):
        with tempfile.TemporaryDirectory() as root:
            pathlib.Path(root, "a.png").write_bytes(b"\x89PNG /home" + b"/ann/")
            self.assertEqual(list(check_architecture.check(root, ["a.png"])), [])


if __name__ == "__main__":
    unittest.main()
