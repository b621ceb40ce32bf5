# SPDX-FileCopyrightText: the VORNAK data display authors
# SPDX-License-Identifier: MIT
"""The filter dialog is opened, a value changed in it and the dialog left with keys alone, and each step can be heard."""
from screenreader import Program, check, press, run, wait_until

DIALOG = "Filter Settings"


def open_dialog(program):
    """From the body table's current cell, which the keys have brought to the filter of body 2."""
    press("Menu")
    program.press_until_focused("Down", 'menu item "Filter"', most=1)
    press("Return")
    program.focus(DIALOG)
    return program.top(DIALOG)


def strength(program, dialog):
    return program.need("spin button", "strength", dialog).queryValue().currentValue


def test(executable):
    with Program(executable) as program:
        program.press_until_focused("Tab", 'table "Bodies"')
        program.press_until_focused("Down", 'table cell "2, tracked by cameras"', most=1)
        program.press_until_focused("Right", 'table cell "active"', most=2)
        dialog = open_dialog(program)
        before = strength(program, dialog)
        way = program.press_until_focused("Tab", 'spin button "strength"')
        check('combo box "preset"' in way, f"Tab goes by the preset, not by {', '.join(way)}")
        press("Up")
        wait_until(lambda: strength(program, dialog) > before, f"Up changes the strength of {before}")
        changed = strength(program, dialog)
        press("Escape")
        wait_until(lambda: program.top(DIALOG) is None, "Escape closes the dialog")

        program.focus("trackhost")
        program.press_until_focused("Tab", 'table "Bodies"')
        dialog = open_dialog(program)
        kept = strength(program, dialog)
        check(abs(kept - changed) < 1e-9, f"the backend has the strength {changed}, not {kept}")
        press("alt+x")
        wait_until(lambda: program.top(DIALOG) is None, "Alt+X leaves the dialog")
        return f"{' > '.join(way)}; strength from {before} to {kept}"


run(test)
