# SPDX-FileCopyrightText: the VORNAK data display authors
# SPDX-License-Identifier: MIT
"""A screen reader that reads every cell and takes every event while the data run costs trackhost no growing memory.

30 seconds, or VORNAK_LONG_MINUTES minutes (5 unless set) where VORNAK_LONG is 1; the bound is the same.
"""
import os
import time

import pyatspi
from screenreader import Program, check, handle_events, press, run, wait_until

BOUND = 256  # [KiB]
PAUSE = 0.1  # [s] between two rows, about as fast as one listens
WARMING = 4  # [s], in which each cell is read and each event comes once
EVENTS = ("object:property-change", "object:state-changed", "object:text-changed", "object:active-descendant-changed",
          "object:visible-data-changed", "object:selection-changed", "object:children-changed", "window")


def seconds():
    if os.environ.get("VORNAK_LONG") == "1":
        return 60 * int(os.environ.get("VORNAK_LONG_MINUTES", "5"))
    return 30


class Reader:
    def __init__(self, program):
        self.tables = [program.panel_table(name) for name in ("Bodies", "Markers")]
        self.events = self.cells = 0
        for kind in EVENTS:
            pyatspi.Registry.registerEventListener(self._count, kind)

    def _count(self, _):
        self.events += 1

    def read(self, duration):
        """Reads row by row, from the first to the last and over again; once a second a key moves the current cell."""
        end = time.monotonic() + duration
        row = 0
        while time.monotonic() < end:
            for table in self.tables:
                for column in range(table.nColumns):
                    self.cells += bool(table.getAccessibleAt(row % table.nRows, column).name)
            row += 1
            if row % 10 == 0:
                press("Down" if row % 20 else "Up")
            handle_events()
            time.sleep(PAUSE)


def test(executable):
    with Program(executable) as program:
        program.press_until_focused("Tab", 'table "Bodies"')
        reader = Reader(program)
        wait_until(lambda: all(table.nRows for table in reader.tables), "both tables have rows")
        reader.read(WARMING)
        before = program.memory()
        reader.cells = reader.events = 0
        duration = seconds()
        reader.read(duration)
        growth = program.memory() - before
        what = f"{reader.cells} texts and {reader.events} events in {duration} s: {growth} KiB more than {before} KiB"
        check(reader.cells > 10 * duration, f"a reader reads more than 10 cells a second, not as in: {what}")
        check(reader.events > duration / 2, f"a reader is told of the moves, not as in: {what}")
        check(growth <= BOUND, f"reading costs at most {BOUND} KiB, not {what}")
        return what


run(test)
