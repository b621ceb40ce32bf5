# SPDX-FileCopyrightText: the VORNAK data display authors
# SPDX-License-Identifier: MIT
"""The state of the data is part of the window's spoken name: told once when it changes, and not with every second."""
import subprocess
import time

import pyatspi
from screenreader import Program, check, handle_events, run, wait_until

LINE = b"6d 1 [0 1.000][1.0 2.0 3.0][1 0 0 0 1 0 0 0 1]\n"
FLOW = 1.0  # [s], after which no name of the start is still on its way
SILENCE = 4.5  # [s]; frozen from 1 s on, so that the age in the title changes several times


def feed(program, condition, sentence):
    """Lets lines flow until the condition is true."""
    def step():
        program.process.stdin.write(LINE)
        program.process.stdin.flush()
        return condition()
    wait_until(step, sentence)


def test(executable):
    names = []

    def take(event):
        if event.source.getRoleName() == "frame" and event.source.name.endswith("trackhost"):
            if not names or names[-1] != event.source.name:
                names.append(event.source.name)

    # Before the program is there: it sends what somebody listens to, and the name changes with the first line.
    pyatspi.Registry.registerEventListener(take, "object:property-change:accessible-name")
    with Program(executable, "--stdin", stdin=subprocess.PIPE) as program:
        flowing = time.monotonic() + FLOW
        feed(program, lambda: time.monotonic() > flowing and names and not names[-1].startswith("("),
             "the window has a name without a state when data come")
        names.clear()
        end = time.monotonic() + SILENCE
        while time.monotonic() < end:
            handle_events()
            time.sleep(0.05)
        check(len(names) == 1 and names[0].startswith("(frozen) "), f"a silence is told once, not as {names}")
        feed(program, lambda: len(names) == 2, "the window is named anew when data come again")
        check(not names[1].startswith("("), f"the name has no state when data come again, not \"{names[1]}\"")
        return "; ".join(names)


run(test)
