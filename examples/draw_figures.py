#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Draws a figure that follows a circle over the picture of a robot's viewer.

    draw_figures.py [HOST:PORT [SECONDS]]

Needs Debian's python3-zmq and python3-msgpack; docs/protocol.md explains every message.
"""
import math
import sys
import time
import uuid

import msgpack
import zmq

HELLO, WELCOME, CALL, RESULT, ERROR, PING, PONG, BYE = range(1, 9)
DEADLINE = 3000  # ms


class Robot:
    def __init__(self, address):
        self.socket = zmq.Context.instance().socket(zmq.DEALER)
        self.socket.setsockopt(zmq.IMMEDIATE, 1)
        self.socket.setsockopt(zmq.LINGER, 200)
        self.socket.setsockopt(zmq.MAXMSGSIZE, 33554432)
        self.socket.connect("tcp://" + address)
        self.calls, self.last_sign = 0, 0.0
        hello = [HELLO, 1, uuid.uuid4().hex, "draw_figures.py", []]
        self.wait_for(lambda message: message[0] == WELCOME, sign_of_life=hello)

    def wait_for(self, wanted, sign_of_life=(PING, 0)):
        end = time.monotonic() + DEADLINE / 1000
        while time.monotonic() < end:
            if time.monotonic() - self.last_sign > 0.4 and self.socket.poll(0, zmq.POLLOUT):
                self.socket.send(msgpack.packb(sign_of_life))
                self.last_sign = time.monotonic()
            if self.socket.poll(50):
                message = msgpack.unpackb(self.socket.recv_multipart()[0])
                if message[0] == BYE:
                    raise RuntimeError("the robot says bye: " + message[1])
                if wanted(message):
                    return message
        raise RuntimeError("the robot does not answer")

    def call(self, module, method, *arguments):
        self.calls += 1
        call = [CALL, self.calls, module, method, arguments, DEADLINE]
        self.socket.send(msgpack.packb(call))
        answer = self.wait_for(lambda m: m[0] in (RESULT, ERROR) and m[1] == self.calls)
        if answer[0] == ERROR:
            raise RuntimeError(f"{answer[2]}.{answer[3]}: {answer[4]}")
        return answer[2]

    def close(self):
        self.socket.send(msgpack.packb([BYE, "done"]))
        self.socket.close()


def main(address="127.0.0.1:9559", seconds="60"):
    robot = Robot(address)
    robot.call("KyMemory", "insertData", "Circle", [])
    robot.call("Periscope", "subscribeLog", "Circle")
    start = time.monotonic()
    while (now := time.monotonic() - start) < float(seconds):
        x, y = 0.5 + 0.3 * math.cos(now), 0.5 + 0.3 * math.sin(now)
        robot.call("KyMemory", "insertData", "Circle", [[x, y, 40.0, 2, 0, 255, 160, 0, "circling"]])
        time.sleep(1 / 30)
    robot.call("KyMemory", "insertData", "Circle", [])
    robot.close()


if __name__ == "__main__":
    try:
        main(*sys.argv[1:])
    except RuntimeError as error:
        sys.exit(f"draw_figures.py: {error}")
