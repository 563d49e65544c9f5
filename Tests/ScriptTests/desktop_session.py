"""Lets real notification servers show reminders: python3 desktop_session.py PROGRAM [SCREENSHOTS]

Each server runs on a screen and a message bus of its own, with an agent. A reminder falls due, is
seen on the screen, is answered, and must then be in the log and gone from the screen; another is
withdrawn when its task is done by a command. A server that is not installed is left out; with none
the test is skipped (exit code 77).
"""

import contextlib
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import time
import zlib
from pathlib import Path

SKIPPED = 77
LONGEST = 20  # seconds
WIDTH, HEIGHT = 800, 600
DUNST_SETTINGS = '[global]\ndmenu = "/bin/grep -m 1 done"\nfont = Sans 11\nwidth = 360\n'
MATE_DAEMON = "/usr/lib/mate-notification-daemon/mate-notification-daemon"


def wait_for(what, condition):
    end = time.monotonic() + LONGEST
    while time.monotonic() < end:
        found = condition()
        if found:
            return found
        time.sleep(0.05)
    raise SystemExit(f"{what}: not within {LONGEST} seconds")


class Desktop:
    """A screen, a bus, a server and a user with a folder of their own."""

    def __init__(self, stack, program):
        self.program = program
        self.home = Path(stack.enter_context(tempfile.TemporaryDirectory()))
        self.stack = stack
        self.environment = {
            **os.environ, "HOME": str(self.home), "TZ": "UTC", "LANG": "C.UTF-8",
            "XDG_CONFIG_HOME": str(self.home / "config"), "XDG_DATA_HOME": str(self.home / "data"),
            "XDG_CACHE_HOME": str(self.home / "cache"), "XDG_RUNTIME_DIR": str(self.home),
            "GSETTINGS_BACKEND": "memory",
        }
        self.start_screen()
        self.start_bus()

    def start(self, *words, **options):
        log = open(self.home / f"{Path(words[0]).name}.log", "ab")
        process = subprocess.Popen(words, env=self.environment, stdout=options.get("stdout", log),
                                   stderr=log, pass_fds=options.get("pass_fds", ()))
        self.stack.callback(log.close)
        self.stack.callback(process.wait)
        self.stack.callback(process.terminate)
        return process

    def start_screen(self):
        reading, writing = os.pipe()
        self.start("Xvfb", "-displayfd", str(writing), "-screen", "0", f"{WIDTH}x{HEIGHT}x24",
                   "-fbdir", str(self.home), "-nolisten", "tcp", pass_fds=(writing,))
        os.close(writing)
        with os.fdopen(reading) as pipe:
            self.environment["DISPLAY"] = ":" + pipe.readline().strip()

    def start_bus(self):
        # Servers install service files that would start one of them instead of the one under test.
        (self.home / "bus.conf").write_text(
            "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen><auth>EXTERNAL</auth>"
            '<policy context="default"><allow send_destination="*" eavesdrop="true"/>'
            '<allow eavesdrop="true"/><allow own="*"/></policy></busconfig>')
        bus = self.start("dbus-daemon", f"--config-file={self.home}/bus.conf", "--print-address",
                         "--nofork", stdout=subprocess.PIPE)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().decode().strip()

    def run(self, *words):
        done = subprocess.run(words, env=self.environment, capture_output=True, text=True, check=False)
        if done.returncode != 0:
            raise SystemExit(f"{' '.join(words)}: {done.returncode}\n{done.stdout}{done.stderr}")
        return done.stdout

    def velloro(self, *words):
        return self.run(self.program, *words)

    def has_server(self):
        names = self.run("dbus-send", "--print-reply", "--dest=org.freedesktop.DBus", "/",
                         "org.freedesktop.DBus.ListNames")
        return "org.freedesktop.Notifications" in names

    def pixels(self):
        """The screen as rows of RGB, from the dump that the screen server keeps (XWD)."""
        dump = (self.home / "Xvfb_screen0").read_bytes()
        header = struct.unpack(">25I", dump[:100])
        offset, stride = header[0] + 12 * header[19], header[12]
        rows = []
        for y in range(HEIGHT):
            row = dump[offset + y * stride:offset + y * stride + 4 * WIDTH]
            rgb = bytearray(3 * WIDTH)
            rgb[0::3], rgb[1::3], rgb[2::3] = row[2::4], row[1::4], row[0::4]
            rows.append(bytes(rgb))
        return rows

    def shown(self):
        """The left, upper and lower end of what differs from the empty screen."""
        changed = [(y, row) for y, row in enumerate(self.pixels()) if row != self.empty[y]]
        if not changed:
            return None
        left = min(next(x for x in range(3 * WIDTH) if row[x] != self.empty[y][x]) // 3
                   for y, row in changed)
        return left, changed[0][0], changed[-1][0]

    def screenshot(self, file):
        def chunk(kind, data):
            body = kind + data
            return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))

        data = zlib.compress(b"".join(b"\0" + row for row in self.pixels()))
        file.write_bytes(b"\x89PNG\r\n\x1a\n" +
                         chunk(b"IHDR", struct.pack(">2I5B", WIDTH, HEIGHT, 8, 2, 0, 0, 0)) +
                         chunk(b"IDAT", data) + chunk(b"IEND", b""))


def press_dunst(desktop):
    """Its menu takes "Mark as done"."""
    desktop.run("dunstctl", "context")


def press_first_button(desktop):
    """The buttons are the lowest texts; "Mark as done" is the first of them. A click elsewhere
    would close the box."""
    left, _, bottom = wait_for("a box", desktop.shown)
    rows = desktop.pixels()
    edge = 20  # round corners

    def texts(y):
        ground = rows[bottom - edge][3 * (left + edge)]
        return [x for x in range(left + edge, WIDTH - edge) if abs(rows[y][3 * x] - ground) > 100]

    lowest = next(y for y in range(bottom - edge, 0, -1) if texts(y))
    first = min(x for y in range(lowest - 8, lowest) for x in texts(y))
    desktop.run("xdotool", "mousemove", str(first + 5), str(lowest - 4))
    time.sleep(0.3)  # it takes no click before it has seen the pointer
    desktop.run("xdotool", "click", "1")


# Name: command, how "Mark as done" is pressed, what the server calls itself
SERVERS = {
    "dunst": (["dunst", "-conf", "{home}/dunstrc"], press_dunst, "dunst"),
    "mate": ([MATE_DAEMON], press_first_button, "Notification Daemon .* by MATE"),
}


def try_server(name, program, screenshots):
    command, press, announced = SERVERS[name]
    with contextlib.ExitStack() as stack:
        desktop = Desktop(stack, program)
        (desktop.home / "dunstrc").write_text(DUNST_SETTINGS)
        desktop.start(*(word.format(home=desktop.home) for word in command))
        wait_for(f"{name} on the bus", desktop.has_server)
        desktop.empty = desktop.pixels()
        for task in ("Read", "Walk & <run>"):
            desktop.velloro("task", "add", task, "--icon", "book")
            desktop.velloro("reminder", "mode", task, "none")
        agent = desktop.start(program, "agent")
        doctor = desktop.velloro("doctor")
        assert re.search("server +" + announced, doctor), doctor

        desktop.velloro("reminder", "add", "Read", "+2s")
        wait_for(f"{name}: a reminder on the screen", desktop.shown)
        time.sleep(0.5)  # some slide or fade in
        if screenshots:
            desktop.screenshot(screenshots / f"{name}.png")
        press(desktop)
        wait_for(f"{name}: the entry",
                 lambda: "completed_manually" in desktop.velloro("log", "list", "Read"))
        wait_for(f"{name}: the answered reminder gone", lambda: not desktop.shown())

        desktop.velloro("reminder", "add", "Walk & <run>", "+2s")
        wait_for(f"{name}: another reminder", desktop.shown)
        desktop.velloro("log", "add", "Walk & <run>")
        wait_for(f"{name}: the reminder of a task that is done gone", lambda: not desktop.shown())
        assert desktop.velloro("log", "list").count("completed_manually") == 2
        agent.terminate()
        assert agent.wait(LONGEST) == 0, "the agent ends by itself when it is asked to"


def main():
    program = sys.argv[1]
    screenshots = Path(sys.argv[2]) if len(sys.argv) > 2 else None
    tools = ("Xvfb", "dbus-daemon", "dbus-send", "xdotool")
    if not all(shutil.which(tool) for tool in tools):
        return SKIPPED
    installed = [name for name, (command, *_) in SERVERS.items() if shutil.which(command[0])]
    for name in installed:
        try_server(name, program, screenshots)
        print(f"{name}: shown, answered, withdrawn")
    return 0 if installed else SKIPPED


if __name__ == "__main__":
    sys.exit(main())
