"""Kills the agent again and again among others: python3 agent_restarts.py PROGRAM [SECONDS]

Ten people add tasks with reminders, and log those whose reminder they have seen, each command a
process. Meanwhile the agent is killed ten times and started again. In the end each reminder must
have been shown, and none after its task was logged.
"""

import collections
import json
import os
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

PEOPLE = 10
RESTARTS = 10
PAGES = 4  # one has not room for all tasks of a long run
LONGEST = 30  # seconds without the reminder that is waited for


class Household:
    def __init__(self, program, folder, seconds):
        self.program = program
        self.store = folder / "store"
        self.printed = folder / "printed"
        self.end = time.monotonic() + seconds
        self.problems = []
        self.tasks = []
        self.seen_when_logged = {}

    def command(self, *words):
        return [self.program, *words, "--store", str(self.store), "--zone", "UTC"]

    def run(self, *words):
        done = subprocess.run(self.command(*words), capture_output=True, text=True, check=False)
        if done.returncode != 0:
            self.problems.append(f"{' '.join(words)}: {done.returncode} {done.stderr}")

    def start_agent(self):
        with open(self.printed, "ab") as output:
            return subprocess.Popen(self.command("agent", "--print", "--json"), stdout=output)

    def shown(self):
        """How often each task was reminded of. A line that a killed agent has cut is none."""
        counts = collections.Counter()
        for line in self.printed.read_text().splitlines():
            for part in line.split('{"')[1:]:
                try:
                    counts[json.loads('{"' + part)["title"]] += 1
                except (ValueError, KeyError):
                    pass
        return counts

    def wait_for(self, task):
        end = time.monotonic() + LONGEST
        while not self.shown()[task]:
            if time.monotonic() > end:
                self.problems.append(f"{task} was not shown within {LONGEST} seconds")
                return
            time.sleep(0.05)

    def remind(self, task, page):
        self.tasks.append(task)
        self.run("task", "add", task, "--page", str(page))
        self.run("reminder", "mode", task, "none")
        self.run("reminder", "add", task, "+2s")
        self.wait_for(task)
        self.run("log", "add", task)
        self.seen_when_logged[task] = self.shown()[task]

    def live(self, person):
        """One round at least."""
        for i in range(1000):
            self.remind(f"Task {person}.{i}", i % PAGES)
            if self.problems or time.monotonic() > self.end:
                return


def main():
    program = os.path.abspath(sys.argv[1])
    seconds = float(sys.argv[2]) if len(sys.argv) > 2 else 0
    with tempfile.TemporaryDirectory() as folder:
        home = Household(program, Path(folder), seconds)
        agent = home.start_agent()
        people = [threading.Thread(target=home.live, args=(i,)) for i in range(PEOPLE)]
        for person in people:
            person.start()
        for i in range(RESTARTS):
            # A moment that differs from one time to the next; the last one is after all began.
            people[i].join(max(seconds / RESTARTS, 0.15 + 0.07 * i))
            agent.kill()
            agent.wait()
            agent = home.start_agent()
        for person in people:
            person.join()
        home.remind("The last task", 0)
        agent.terminate()
        if agent.wait(LONGEST) != 0:
            home.problems.append(f"the agent ended with {agent.returncode}")
        shown = home.shown()
        for task in home.tasks:
            if shown[task] != home.seen_when_logged.get(task):
                home.problems.append(f"{task} was shown {shown[task]} times, and "
                                     f"{home.seen_when_logged.get(task)} before it was logged")
    print(f"{len(home.tasks)} reminders, {sum(shown.values())} shown, {RESTARTS} restarts")
    sys.exit("\n".join(home.problems) or 0)


if __name__ == "__main__":
    main()
