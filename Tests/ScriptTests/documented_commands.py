"""Runs the commands that documents show: python3 documented_commands.py PROGRAM DOCUMENT…

A command is an indented line that begins with `scripts/run` or `velloro` and has arguments, or code
in a sentence that begins with the former. All of them run in order, in an empty home, with PROGRAM in
the place of both; each must succeed without a complaint. Indented lines after them are what the
last command prints: there may be more lines between, and in a line with an instant the digits may
differ. `watch` runs until it has printed them, and is then interrupted. Fenced code is no command.
"""

import os
import re
import signal
import subprocess
import sys
import tempfile
from itertools import takewhile
from pathlib import Path

COMMAND = re.compile(r"(scripts/run|velloro) [^#\s]")


def steps(document):
    """Yields ("run", line number, command) and ("shows", line number, lines), in order."""
    block, is_fenced = [], False
    for number, line in enumerate([*document.split("\n"), "."], 1):
        is_fenced ^= line.startswith("```")
        if is_fenced:
            continue
        if line.startswith("    "):
            block.append((number, line[4:]))
        elif line:
            shown = list(takewhile(lambda each: not each[1].startswith("scripts/"), block))
            commands = [("run", *each) for each in block if COMMAND.match(each[1])]
            if shown and ("run", *shown[0]) not in commands:
                yield "shows", shown[0][0], [text for _, text in shown]
            yield from commands
            block = []
            for code in re.findall(r"`(scripts/run [^`]+)`", line):
                yield "run", number, code


def unmet(expected, printed):
    """The first expected line that `printed` has not, behind those before it."""
    rest = iter(printed.split("\n"))
    for line in filter(None, expected):
        pattern = re.escape(line)
        if re.search(r"T\d\d:\d\d", line):
            pattern = re.sub(r"\d+", r"\\d+", pattern)
        if not any(re.fullmatch(pattern, each.rstrip()) for each in rest):
            return line
    return None


class Session:
    def __init__(self, program, home):
        self.home = Path(home)
        (self.home / "scripts").mkdir()
        for name in ("scripts/run", "velloro"):
            (self.home / name).write_text(f'#!/bin/sh\nexec "{program}" "$@"\n')
            (self.home / name).chmod(0o755)
        kept = {k: v for k, v in os.environ.items() if not k.startswith(("XDG_", "LC_"))}
        self.environment = kept | {
            "HOME": home,
            "PATH": f"{home}:{os.environ['PATH']}",
            "LANG": "en_US.UTF-8",
            "TZ": "Europe/Berlin",
        }
        self.printed = None  # by the last command of the document
        self.watching = None

    def start(self, command):
        return subprocess.Popen(
            ["bash", "-c", f"exec {command}"],
            cwd=self.home,
            env=self.environment,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            text=True,
        )

    def run(self, command):
        """Runs it, and returns what is wrong."""
        process = self.start(command)
        if " watch" in command:
            process.stderr.readline()  # that it watches now
            self.watching = process
            return None
        output, errors = process.communicate()
        if not self.watching:
            self.printed = output
        complains = process.returncode or "velloro: " in errors
        return f"exit code {process.returncode}: {errors}" if complains else None

    def shows(self, expected):
        if self.watching:
            self.printed = self.watching.stdout.readline()
            self.watching.send_signal(signal.SIGINT)
            more, _ = self.watching.communicate()
            self.printed += more
            code, self.watching = self.watching.returncode, None
            if code:
                return f"exit code {code} after an interrupt"
        line = None if self.printed is None else unmet(expected, self.printed)
        return f"does not print: {line}\nbut:\n{self.printed}" if line else None


def main(program, documents):
    failures = 0
    with tempfile.TemporaryDirectory() as home:
        session = Session(Path(program).resolve(), home)
        for document in documents:
            session.printed = None
            for kind, number, what in steps(Path(document).read_text(encoding="utf-8")):
                problem = session.run(what) if kind == "run" else session.shows(what)
                if problem:
                    failures += 1
                    print(f"{document}:{number}: {what if kind == 'run' else ''} {problem}")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2:]))
