# SPDX-FileCopyrightText: the VORNAK data display authors
# SPDX-License-Identifier: MIT
"""The list of bodies is opened and entered by keys, and says of each body when it is lost and found again, once."""
import pyatspi
from scenario import write_scenario
from screenreader import Program, check, run, wait_until

LIST = 'list "States of the bodies"'


def test(executable):
    told = []

    def take(event):
        if event.source.getRoleName() == "list item":
            told.append(event.source.name)

    with Program(executable, "--simulate", write_scenario()) as program:
        pyatspi.Registry.registerEventListener(take, "object:property-change:accessible-name")
        program.press_until_focused("Tab", 'table "Bodies"')
        program.choose("alt+v", 'menu item "Bodies"')
        bodies = program.need("list", "States of the bodies")
        program.press_until_focused("F6", LIST)
        wait_until(lambda: bodies.childCount == 2, "the list has a line for each body")
        wait_until(lambda: len(told) >= 4, "a screen reader is told four times that a body is lost or found")
        for one, other in zip(told, told[1:]):
            words = [text.split(": ")[-1].split(" ")[0] for text in (one, other)]
            check(sorted(words) == ["lost", "tracked"], f"each change is told once, not \"{one}\" and then \"{other}\"")
        check(all(text.startswith("2 Blinks: ") for text in told), f"only the second body changes, not as in {told}")
        first = bodies.getChildAtIndex(0).name
        check(first == "1 Steps: tracked", f"the first body is tracked, not \"{first}\"")
        return "; ".join(told)


run(test)
