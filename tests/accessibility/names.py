# SPDX-FileCopyrightText: the VORNAK data display authors
# SPDX-License-Identifier: MIT
"""Whatever an operator can read in or act on has a name to be spoken: in the window, shown or not, and in the dialogs."""
import collections

from screenreader import Program, check, describe, nodes, press, run, spoken_name

NAMED = ("table", "tree table", "tree", "list", "push button", "toggle button", "check box", "radio button", "combo box",
         "spin button", "slider", "dial", "text", "password text", "entry", "menu item",
         "check menu item", "dialog")


def belongs_to_named(node):
    """The list that a box drops down and the field that it holds are spoken of by the box's name."""
    return node.parent is not None and node.parent.getRoleName() in ("combo box", "spin button")


def check_names(window, counts):
    unnamed = []
    for node in nodes(window):
        role = node.getRoleName()
        if role not in NAMED or belongs_to_named(node):
            continue
        counts[role] += 1
        if not spoken_name(node).strip():
            unnamed.append(f"{role} in {describe(node.parent)}")
    check(not unnamed, f"everything in \"{window.name}\" has a name, but not: {'; '.join(unnamed)}")


def test(executable):
    counts = collections.Counter()
    with Program(executable) as program:
        program.need("table", "Bodies")
        check_names(program.window, counts)
        program.press_until_focused("Tab", 'table "Bodies"')
        press("Down", "Right", "Right", "Menu", "Down", "Return")
        for title, key in (("Filter Settings", "alt+h"), ("Help Filter", "Escape")):
            program.focus(title)
            check_names(program.top(title), counts)
            press(key)
    for role, least in {"table": 2, "push button": 6, "combo box": 3, "spin button": 2, "check box": 1, "text": 1}.items():
        check(counts[role] >= least, f"there are at least {least} of the role {role}, not {counts[role]}")
    return ", ".join(f"{count} {role}" for role, count in counts.items()) + ": all have names"


run(test)
