# SPDX-FileCopyrightText: the VORNAK data display authors
# SPDX-License-Identifier: MIT
"""Every dock and menu is reached by keys: F6 and Shift+F6 go around the docks, F10 and the menus open and close them."""
import pyatspi
from screenreader import Program, check, describe, press, run, wait_until

BODIES, LIST = 'table "Bodies"', 'list "States of the bodies"'


def docks(program):
    """The names of the docks that can be seen."""
    return {node.name for node in program.window
            if node.getRoleName() == "frame" and node.getState().contains(pyatspi.STATE_SHOWING)}


def open_bodies(program):
    """Opens a third dock, so that F6 and Shift+F6 differ."""
    program.press_until_focused("Tab", BODIES)
    program.choose("alt+v", 'menu item "Bodies"')
    wait_until(lambda: "Bodies" in docks(program), "the menu opens the list of bodies")


def check_round(program):
    """F6 enters each dock once before it is back, Shift+F6 likewise in the opposite order."""
    program.press_until_focused("F6", BODIES)
    forth = program.press_until_focused("F6", BODIES)
    back = program.press_until_focused("shift+F6", BODIES)
    count = len(docks(program))
    check(len(set(forth)) == len(forth) == count, f"F6 enters each of the {count} docks once, not {', '.join(forth)}")
    check(back[:-1] == forth[-2::-1], f"Shift+F6 goes back the way of F6, {', '.join(forth)}, not by {', '.join(back)}")
    return forth


def check_menus(program):
    """Alt opens a menu, the arrow keys go on to the others, Escape returns to where the keyboard was."""
    bar = next(node for node in program.window if node.getRoleName() == "menu bar")
    titles = [describe(node) for node in bar]
    press("alt+f")
    program.focused.clear()
    opened = []
    for _ in titles:
        press("Right")
        wait_until(lambda: program.focused, "Right goes on to the next menu")
        opened.append(program.focused[-1])
        program.focused.clear()
    check(len(set(opened)) == len(titles), f"each of the {len(titles)} menus is opened, not {', '.join(opened)}")
    press("Escape", "Escape")
    return titles


def test(executable):
    with Program(executable) as program:
        program.need("table", "Bodies")
        open_bodies(program)
        forth = check_round(program)
        titles = check_menus(program)
        program.press_until_focused("F6", LIST)
        press("F10")
        wait_until(lambda: "Data Display" not in docks(program), "F10 closes the panel")
        program.focused.clear()
        press("F6")
        press("F10")
        wait_until(lambda: "Data Display" in docks(program), "F10 opens the panel again")
        program.press_until_focused("F6", BODIES)
        return f"F6: {' > '.join(forth)}; menus: {', '.join(titles)}"


run(test)
