# SPDX-FileCopyrightText: the VORNAK data display authors
# SPDX-License-Identifier: MIT
"""What is read in a cell is what the data say now, and the words of a body follow when it is lost and found again."""
import time

from scenario import STEP, write_scenario
from screenreader import Program, check, run, wait_until

ID_COLUMN, X_COLUMN = 0, 4
LATE = 1.0  # [s] that a cell may be behind the data: five redraws


def check_steps(table):
    """The first body's x goes up by a millimetre with every step, and at their pace."""
    def x():
        text = table.getAccessibleAt(0, X_COLUMN).name
        check(text.endswith(".00"), f"the cell shows whole millimetres, as the data do, not \"{text}\"")
        return int(text[:-3])

    wait_until(lambda: table.getAccessibleAt(0, X_COLUMN).name not in ("", "0.00"), "the cell of x is filled")
    begin, first = time.monotonic(), x()
    last, seen = first, {first}
    while time.monotonic() - begin < 4.0:
        time.sleep(0.1)
        here = x()
        check(last <= here, f"the cell never goes back, not from {last} to {here}")
        seen.add(here)
        last = here
    due = (time.monotonic() - begin) / STEP
    check(abs(last - first - due) <= LATE / STEP, f"the cell has moved on by {due:.0f} mm, not by {last - first}")
    check(len(seen) > due / 2, f"the cell shows most of the {due:.0f} steps, not {len(seen)}")
    return f"x from {first} to {last} mm in {due * STEP:.1f} s"


def check_words(table):
    """The second body's words change from tracked to lost and back, the first one's never."""
    heard = []
    for words in ("2, tracked by cameras", "2, lost", "2, tracked by cameras", "2, lost"):
        def follow():
            first, second = (table.getAccessibleAt(row, ID_COLUMN).name for row in (0, 1))
            check(first == "1, tracked by cameras", f"the body that is always there is tracked, not \"{first}\"")
            check(second in ("2, tracked by cameras", "2, lost"), f"a body is tracked or lost, not \"{second}\"")
            return second == words
        wait_until(follow, f"the words become \"{words}\" after {heard}")
        heard.append(words)
    return "; ".join(heard)


def test(executable):
    with Program(executable, "--simulate", write_scenario()) as program:
        table = program.panel_table("Bodies")
        wait_until(lambda: table.nRows == 2, "there is a row for each body")
        return f"{check_steps(table)}; {check_words(table)}"


run(test)
