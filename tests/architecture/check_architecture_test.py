#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Tests that check_architecture.py sees what it is there to see."""

import unittest

import check_architecture
from made_tree import TreeTest


class CheckArchitecture(TreeTest):
    check = check_architecture.check

    def test_arrows_that_are_there_may_be_used(self):
        self.assert_clean({
            "zu/include/zu/log.h": "",
            "zu/src/log.cpp": '#include "zu/log.h"\n#include <mutex>\n',
            "ky/include/ky/value.h": "",
            "ky/src/wire/b.h": '#include "ky/value.h"\n',
            "ky/src/broker/a.cpp": '#include "zu/log.h"\n#include "wire/b.h"\n',
            "robot/main.cpp": '#include "ky/value.h"\n#include "robot/ftp/server.h"\n',
            "robot/ftp/server.h": "#include <opencv2/core.hpp>\n",
            "viewer/core/m.h": "",
            "viewer/view/a.cpp": '#include <QWidget>\n#include "viewer/core/m.h"\n'
                                 '#include "lookout/w.h"\n',
            "lookout/sdk/include/lookout/w.h": '#include <QWidget>\n#include "ky/value.h"\n',
            "lookout/app/window/b.h": "",
            "lookout/app/a.cpp": '#include "lookout/w.h"\n#include "window/b.h"\n',
            "tests/support/wait.h": "",
            "tests/viewer/view/t.cpp": '#include "viewer/core/m.h"\n#include "support/wait.h"\n'
                                       '#include "robot/ftp/server.h"\n',
        })

    def test_what_a_room_may_include_stands_on_floors_beneath_it(self):
        for room, beneath in check_architecture.BENEATH.items():
            for other in beneath:
                self.assertLess(check_architecture.FLOOR_OF[other],
                                check_architecture.FLOOR_OF[room], f"{room} -> {other}")

    def test_the_foundation_does_not_know_what_stands_on_it(self):
        self.assert_found(
            {"zu/src/a.cpp": '#include "ky/value.h"\n', "ky/include/ky/value.h": ""},
            "zu/src/a.cpp:1: zu stands below ky/include, an include that runs up: "
            "ky/include/ky/value.h")

    def test_the_runtime_knows_neither_viewer_nor_robot(self):
        self.assert_found(
            {"ky/src/a.cpp": '\n#include "viewer/view/a.h"\n#include "robot/b.h"\n',
             "viewer/view/a.h": "", "robot/b.h": ""},
            "ky/src/a.cpp:2: ky/src stands below viewer/view, an include that runs up: "
            "viewer/view/a.h",
            "ky/src/a.cpp:3: ky/src stands below robot, an include that runs up: robot/b.h")

    def test_the_ground_of_the_viewer_does_not_know_its_roof(self):
        self.assert_found(
            {"viewer/core/m.cpp": '#include "viewer/plugin/i.h"\n', "viewer/plugin/i.h": ""},
            "viewer/core/m.cpp:1: viewer/core stands below viewer/plugin, an include that runs up: "
            "viewer/plugin/i.h")

    def test_rooms_side_by_side_do_not_know_each_other(self):
        self.assert_found(
            {"viewer/settings/a.cpp": '#include "viewer/recording/b.h"\n',
             "viewer/recording/b.h": ""},
            "viewer/settings/a.cpp:1: viewer/settings has no business with viewer/recording: "
            "viewer/recording/b.h")

    def test_a_room_below_is_not_open_to_everybody_above(self):
        self.assert_found(
            {"viewer/settings/a.cpp": '#include "viewer/dialogs/b.h"\n',
             "viewer/dialogs/b.h": ""},
            "viewer/settings/a.cpp:1: viewer/settings has no business with viewer/dialogs: "
            "viewer/dialogs/b.h")

    def test_robot_and_viewer_do_not_know_each_other(self):
        self.assert_found(
            {"robot/a.cpp": '#include "viewer/core/m.h"\n', "viewer/core/m.h": "",
             "viewer/view/b.cpp": '#include "robot/camera/b.h"\n', "robot/camera/b.h": ""},
            "robot/a.cpp:1: robot has no business with viewer/core: viewer/core/m.h",
            "viewer/view/b.cpp:1: viewer/view has no business with robot/camera: "
            "robot/camera/b.h")

    def test_the_host_never_includes_the_viewer(self):
        self.assert_found(
            {"lookout/app/a.cpp": '#include "viewer/core/m.h"\n', "viewer/core/m.h": ""},
            "lookout/app/a.cpp:1: lookout/app has no business with viewer/core: viewer/core/m.h")

    def test_some_parts_know_no_qt(self):
        for part, file in (("zu", "zu/a.h"), ("ky", "ky/src/a.h"), ("film", "film/a.h"),
                           ("robot", "robot/a.h"), ("cli", "cli/a.h")):
            for header in ("QString", "QtGlobal", "qglobal.h", "QtCore/QObject"):
                self.assert_found({file: f"#include <{header}>\n"},
                                  f"{file}:1: {part} knows no Qt, but includes {header}")

    def test_no_room_includes_tests(self):
        self.assert_found(
            {"ky/src/a.cpp": '#include "support/wait.h"\n#include "tests/ky/b.h"\n',
             "tests/support/wait.h": "", "tests/ky/b.h": ""},
            "ky/src/a.cpp:1: no room includes what is outside of the house: tests/support/wait.h",
            "ky/src/a.cpp:2: no room includes what is outside of the house: tests/ky/b.h")

    def test_only_the_typed_proxies_of_the_runtime_know_cameras(self):
        self.assert_clean({
            "ky/src/proxies/video.cpp": '#include "ky/video_device_proxy.h"\nint camera;\n',
            "ky/src/video/decoder.cpp": '#include "ky/video_device_proxy.h"\nint picture;\n',
            "ky/include/ky/video_device_proxy.h": "int image;\n",
            "ky/include/ky/binary.h": "// an image stays one piece\n"})
        self.assert_found(
            {"ky/src/broker.cpp": '#include "ky/video_device_proxy.h"\nint camera;\n'},
            "ky/src/broker.cpp:1: only the typed proxies know what they stand for: "
            "ky/video_device_proxy.h",
            "ky/src/broker.cpp:2: only the typed proxies know of cameras")

    def test_a_new_folder_needs_its_place(self):
        self.assert_found(
            {"garage/a.cpp": "", "viewer/attic/b.h": ""},
            "garage/a.cpp:1: this folder has no place among the floors of the house",
            "viewer/attic/b.h:1: this folder has no place among the floors of the house")

    def test_files_that_include_each_other_in_a_circle_are_found(self):
        self.assert_found(
            {"viewer/view/a.h": '#include "b.h"\n', "viewer/view/b.h": '\n#include "c.h"\n',
             "viewer/view/c.h": '#include "a.h"\n'},
            "viewer/view/a.h:1: files that include each other in a circle: "
            "viewer/view/a -> viewer/view/b -> viewer/view/c -> viewer/view/a")

    def test_what_implements_a_header_belongs_to_it_in_a_circle(self):
        self.assert_clean({"tests/a.h": "", "tests/a.cpp": '#include "a.h"\n'})
        self.assert_found(
            {"tests/a.h": "", "tests/a.cpp": '#include "a.h"\n#include "b.h"\n',
             "tests/b.h": '#include "a.h"\n'},
            "tests/a.cpp:2: files that include each other in a circle: "
            "tests/a -> tests/b -> tests/a")

    def test_every_circle_is_found_once(self):
        found = self.violations(
            {"fuzz/a.h": '#include "b.h"\n', "fuzz/b.h": '#include "a.h"\n#include "c.h"\n',
             "fuzz/c.h": '#include "b.h"\n', "fuzz/d.h": '#include "a.h"\n'})
        self.assertEqual(len(found), 2, found)


if __name__ == "__main__":
    unittest.main()
