#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Installs a build into a new folder, builds another's project on it and runs what is there.

install_test.py CMAKE BUILD CONSUMER EXAMPLES    the build folder, the other project's source, ours
"""

import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import unittest

CMAKE, BUILD, CONSUMER, EXAMPLES = sys.argv[1:5]


def run(*command):
    """What a command that must succeed prints, both streams."""
    done = subprocess.run([str(part) for part in command], stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, check=False)
    assert done.returncode == 0, f"{command} ended with {done.returncode}:\n{done.stdout}"
    return done.stdout


class Running:
    """A program that says a line when it is ready, and stops at SIGTERM."""

    def __init__(self, ready, *command):
        self.process = subprocess.Popen([str(part) for part in command], stdout=subprocess.PIPE,
                                        text=True)
        line = self.process.stdout.readline()
        assert ready in line, f"{command} said {line!r}"
        self.said = line.split(ready)[1].strip()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.send_signal(signal.SIGTERM)
        self.process.communicate()


class Installation(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        scratch = tempfile.TemporaryDirectory()
        cls.addClassCleanup(scratch.cleanup)
        cls.prefix = pathlib.Path(scratch.name, "prefix")
        cls.consumer = pathlib.Path(scratch.name, "consumer")
        # Nothing of the user's own, and nothing left behind there.
        os.environ.update(HOME=scratch.name, XDG_CONFIG_HOME=scratch.name + "/config",
                          QT_QPA_PLATFORM="offscreen")
        run(CMAKE, "--install", BUILD, "--prefix", cls.prefix)
        run(CMAKE, "-S", CONSUMER, "-B", cls.consumer, "-DCMAKE_PREFIX_PATH=" + str(cls.prefix),
            "-DEXAMPLES=" + EXAMPLES)
        run(CMAKE, "--build", cls.consumer)

    def program(self, name):
        return self.prefix / "bin" / name

    def robot(self):
        return Running("listening on ", self.program("kyrobot"), "--port", "0")

    def test_everything_is_where_it_belongs(self):
        for file in ("bin/lookout", "bin/kyrobot", "bin/ky", "lib/libky.so", "lib/libzu.so",
                     "lib/liblookout.so", "lib/lookout/plugins/libperiscope.so",
                     "include/ky/broker.h", "include/zu/log.h", "include/lookout/widget_interface.h",
                     "share/lookout/icons/buttons/play.png",
                     "share/lookout/translations/lookout_de.qm",
                     "share/lookout/translations/periscope_de.qm", "share/applications/lookout.desktop",
                     "share/doc/periscope/copyright"):
            self.assertTrue((self.prefix / file).is_file(), file)

    def test_the_libraries_need_nothing_of_the_build_folder(self):
        for file in ("bin/lookout", "bin/kyrobot", "bin/ky", "lib/libky.so", "lib/liblookout.so",
                     "lib/lookout/plugins/libperiscope.so"):
            libraries = run("ldd", self.prefix / file)
            self.assertNotIn("not found", libraries)
            self.assertNotIn(BUILD, libraries)

    def test_a_program_of_somebody_else_serves_a_module(self):
        with self.robot() as robot:
            with Running("serving ", self.consumer / "robot_module", robot.said):
                answer = run(self.program("ky"), "call", "Greeter.greet", '"you"', "--robot",
                             robot.said)
        self.assertEqual(answer, '"Hello you!"\n')

    def test_a_program_of_somebody_else_logs(self):
        self.assertIn("consumer.main: hello", run(self.consumer / "log_user"))

    def test_a_plugin_of_somebody_else_loads(self):
        with self.robot() as robot:
            said = run(self.program("lookout"), "--plugins", self.consumer / "plugins", "--robot",
                       robot.said, "--quit-after", "1", "--report")
        self.assertIn("robot: " + robot.said, said)
        self.assertNotIn("error", said)

    def test_lookout_finds_the_viewer_and_shows_a_robot(self):
        with self.robot() as robot:
            said = run(self.program("lookout"), "--robot", robot.said, "--play", "--quit-after",
                       "5", "--report")
        self.assertRegex(said, r"frames painted: [1-9]\d*, fps shown: [\d.]+, robot: " + robot.said)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
