"""Terminals that can be written to and looked at, on a virtual X server.

Each runs the probe (probe.cpp), which writes with the library. What the terminal did is read off its pixels, and asked from
the terminal itself.
"""

import collections
import dataclasses
import os
import pathlib
import shutil
import signal
import socket
import struct
import subprocess
import tempfile
import time

ROWS, COLS = 24, 80


@dataclasses.dataclass(frozen=True)
class Look:
    """What a stretch of cells looks like."""

    ink: tuple          # the colour farthest from the ground
    ground: tuple       # the most frequent colour
    weight: float       # how much ink there is
    lines: frozenset    # "under", "through": lines over the whole width
    shape: object       # equal where the same is drawn, whatever its colours

    @property
    def empty(self):
        return self.ink == self.ground


def distance(a, b):
    return sum(abs(x - y) for x, y in zip(a, b))


class Picture:
    """The pixels of an X server: rows of four bytes a pixel, blue first."""

    def __init__(self, dump):
        header = struct.unpack(">25I", dump[:100])
        self.width, self.height, self.line = header[4], header[5], header[12]
        start = header[0] + 12 * header[19]
        self.rows = [dump[start + y * self.line:start + y * self.line + 4 * self.width] for y in range(self.height)]

    def box_of_difference(self, other):
        """Left, top, right and bottom of what differs."""
        rows = [y for y in range(self.height) if self.rows[y] != other.rows[y]]
        if not rows:
            return None
        columns = [x for y in rows for x in range(self.width)
                   if self.rows[y][4 * x:4 * x + 3] != other.rows[y][4 * x:4 * x + 3]]
        return min(columns), rows[0], max(columns) + 1, rows[-1] + 1

    def crop(self, box):
        left, top, right, bottom = box
        return [self.rows[y][4 * left:4 * right] for y in range(top, bottom)]


def look_of(crop):
    pixels = [[(row[i + 2], row[i + 1], row[i]) for i in range(0, len(row), 4)] for row in crop]
    counted = collections.Counter(p for row in pixels for p in row)
    ground = counted.most_common(1)[0][0]
    ink = max(counted, key=lambda color: distance(color, ground))
    reach = max(1, distance(ink, ground))
    weight = sum(distance(color, ground) * count for color, count in counted.items()) / reach
    lines = set()
    for y, row in enumerate(pixels):
        if ink != ground and sum(distance(p, ground) > reach / 3 for p in row) > 0.95 * len(row):
            lines.add("under" if y > 0.72 * len(pixels) else "through")
    shape = tuple(tuple(distance(p, ground) * 4 // reach for p in row) for row in pixels)
    return Look(ink, ground, weight, frozenset(lines), shape)


class Probe:
    """The program that runs in the terminal."""

    def __init__(self, folder):
        self.path = str(folder / "commands")
        self.listener = socket.socket(socket.AF_UNIX)
        self.listener.bind(self.path)
        self.listener.listen(1)
        self.stream = None

    def wait(self, seconds):
        self.listener.settimeout(seconds)
        connection, _ = self.listener.accept()
        connection.settimeout(20)
        self.stream = connection.makefile("rw", encoding="utf-8", newline="\n")

    def do(self, *commands):
        """Carries out commands, and returns the answer to the last one."""
        for command in commands:
            self.stream.write(command + "\n")
            self.stream.flush()
            answer = self.stream.readline()
            if not answer:
                raise ConnectionError(f"the terminal is gone, at: {command}")
            answer = answer.rstrip("\n")
            if answer == "unknown":
                raise ValueError(f"the probe does not know: {command}")
        return answer

    def close(self):
        if self.stream is not None:
            self.stream.close()
        self.listener.close()


class Terminal:
    """A terminal on an X server of its own, in a folder of its own. One for Wayland is told the size of its compositor's screen.
    """

    def __init__(self, command, probe, wayland=None):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="hueline-terminal-"))
        self.probe = Probe(self.folder)
        self.log = self.folder / "log"
        self.processes = []
        try:
            self.start(command, str(probe), wayland)
            self.calibrate()
        except BaseException as e:
            e.args = (*e.args, self.log.read_text(encoding="utf-8", errors="replace")[-600:])
            self.close()
            raise

    def start(self, command, probe, wayland):
        read, write = os.pipe()
        x_server = ["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x800x24", "-nolisten", "tcp", "-br",
                    "-fbdir", str(self.folder)]
        environment = {"PATH": os.environ["PATH"], "HOME": str(self.folder), "LANG": "C.UTF-8", "SHELL": "/bin/sh",
                       "XDG_RUNTIME_DIR": str(self.folder), "TMUX_TMPDIR": str(self.folder),
                       "LIBGL_ALWAYS_SOFTWARE": "1"}
        self.run(x_server, environment, pass_fds=(write,))
        os.close(write)
        with os.fdopen(read) as display:
            environment["DISPLAY"] = ":" + display.readline().strip()
        if wayland:
            self.run(["weston", "--backend=x11-backend.so", "--shell=kiosk-shell.so", "--socket=probe",
                      f"--width={wayland[0]}", f"--height={wayland[1]}"], environment)
            self.wait_for(lambda: (self.folder / "probe").exists(), 20)
            environment["WAYLAND_DISPLAY"] = "probe"
        if "{probe}" in command[-1]:
            argv = [*command[:-1], command[-1].replace("{probe}", f"{probe} {self.probe.path}")]
        else:
            argv = [*command, probe, self.probe.path]
        if not wayland:  # without a window manager the window under the pointer has the keyboard
            self.point_at(320, 240, environment)
        self.run(["dbus-run-session", "--", *argv], environment)
        self.probe.wait(30)
        if wayland:  # the compositor's pointer is out of the way in the corner
            self.point_at(10, 10, environment)
            self.point_at(wayland[0] - 1, wayland[1] - 1, environment)
        time.sleep(1.0)  # the first frames, and a size that may change still

    def run(self, argv, environment, pass_fds=()):
        with open(self.log, "ab") as log:
            self.processes.append(subprocess.Popen(
                argv, env=environment, stdin=subprocess.DEVNULL, stdout=log, stderr=log, start_new_session=True,
                pass_fds=pass_fds))

    @staticmethod
    def point_at(x, y, environment):
        subprocess.run(["xdotool", "mousemove", str(x), str(y)], env=environment, check=True)
        time.sleep(0.2)

    @staticmethod
    def wait_for(condition, seconds):
        end = time.monotonic() + seconds
        while not condition():
            if time.monotonic() > end:
                raise TimeoutError("the terminal did not come up")
            time.sleep(0.05)

    def do(self, *commands):
        return self.probe.do(*commands)

    def environment(self):
        term, colorterm, rows, cols = self.do("environment").split()
        return term, colorterm, int(rows), int(cols)

    def answer(self, command, quiet_ms=400):
        """What the terminal says to a command."""
        self.do("ask 20", command)
        return bytes.fromhex(self.do(f"ask {quiet_ms}"))

    def position(self):
        self.do("ask 20", "dsr")
        answer = bytes.fromhex(self.do("until R 2000"))
        if not answer.startswith(b"\x1b[") or not answer.endswith(b"R"):
            return None
        row, col = answer[2:-1].split(b";")
        return int(row), int(col)

    def shot(self):
        return Picture((self.folder / "Xvfb_screen0").read_bytes())

    def settle(self):
        """The picture as soon as it stands still."""
        self.position()
        time.sleep(0.15)
        before = self.shot()
        for _ in range(40):
            time.sleep(0.1)
            now = self.shot()
            if now.rows == before.rows:
                return now
            before = now
        return before

    def calibrate(self):
        """Finds the cells: a cell in the first corner and one in the last."""
        self.do("hide_cursor", "reset", "cls")
        empty = self.settle()
        self.do("thin", "reverse", "cup 1 1", "text  ", f"cup {ROWS} {COLS}", "text  ", "reset", "cup 1 1")
        self.grid = self.settle().box_of_difference(empty)
        if self.grid is None or self.grid[2] - self.grid[0] < COLS or self.grid[3] - self.grid[1] < ROWS:
            raise RuntimeError(f"no cells to be seen: {self.grid}")
        self.do("cls")

    def box(self, row, col, count=1):
        left, top, right, bottom = self.grid
        width, height = (right - left) / COLS, (bottom - top) / ROWS
        return (round(left + (col - 1) * width), round(top + (row - 1) * height),
                round(left + (col - 1 + count) * width), round(top + row * height))

    def look(self, row, col, count=1, picture=None):
        return look_of((picture or self.settle()).crop(self.box(row, col, count)))

    def middle(self, row, col, count, picture):
        """The colour in the middle of cells that have one."""
        left, top, right, bottom = self.box(row, col, count)
        x, y = (left + right) // 2, (top + bottom) // 2
        b, g, r = picture.rows[y][4 * x:4 * x + 3]
        return r, g, b

    def changes(self, row, col, count=1, seconds=2.6):
        """Whether these cells change by themselves."""
        self.settle()
        box = self.box(row, col, count)
        crops = []
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            crops.append(tuple(self.shot().crop(box)))
            time.sleep(0.1)
        return len(set(crops)) > 1

    def sees_cursor(self, row, col):
        """Whether the cursor, which is on this blank cell, can be seen at any time."""
        self.settle()
        blank = tuple(self.shot().crop(self.box(row, col + 20)))
        end = time.monotonic() + 2.0
        while time.monotonic() < end:
            if tuple(self.shot().crop(self.box(row, col))) != blank:
                return True
            time.sleep(0.1)
        return False

    def save(self, target, rows):
        """A screenshot of the first rows."""
        left, top, right, _ = self.grid
        bottom = self.box(rows, 1)[3]
        margin = 6
        x, y = max(0, left - margin), max(0, top - margin)
        subprocess.run(["convert", f"xwd:{self.folder / 'Xvfb_screen0'}", "-crop",
                        f"{right + margin - x}x{bottom + margin - y}+{x}+{y}", "+repage", "-strip",
                        "-define", "png:compression-level=9", "-define", "png:exclude-chunk=date,time", str(target)],
                       check=True)

    def close(self):
        self.probe.close()
        for process in reversed(self.processes):
            try:
                os.killpg(process.pid, signal.SIGTERM)
                process.wait(5)
            except ProcessLookupError:
                pass
            except subprocess.TimeoutExpired:
                os.killpg(process.pid, signal.SIGKILL)
                process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)
