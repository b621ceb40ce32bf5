# SPDX-FileCopyrightText: the VORNAK data display authors
# SPDX-License-Identifier: MIT
"""What a screen reader sees of trackhost, and what a keyboard does to it, for the tests of this folder.

They run in a session (see there) without a window manager; Program.focus() plays its part.
"""
import collections
import os
import re
import subprocess
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
import pyatspi  # noqa: E402
from gi.repository import Atspi, GLib  # noqa: E402

PATIENCE = 20  # [s], for what takes no time on a machine that is not busy
VIEWS = ("table", "tree table", "tree")

# Every look asks the program itself: what the client's library keeps follows events, which may come late or never.
pyatspi.Registry.getDesktop(0).set_cache_mask(Atspi.Cache.NONE)


class Unmet(Exception):
    """What has to be true and is not, as a sentence."""


def check(condition, sentence):
    if not condition:
        raise Unmet(sentence)


def handle_events():
    while GLib.MainContext.default().iteration(False):
        pass


def wait_until(condition, sentence, seconds=PATIENCE):
    """Returns what the condition returns as soon as that is true."""
    end = time.monotonic() + seconds
    while True:
        handle_events()
        if result := condition():
            return result
        if time.monotonic() > end:
            raise Unmet(f"{sentence} (not within {seconds} s)")
        time.sleep(0.05)


def nodes(node):
    """The node and all below it, hidden ones included, but for the cells of tables and trees."""
    if node is None:
        return
    yield node
    if node.getRoleName() not in VIEWS:
        for index in range(node.childCount):
            yield from nodes(node.getChildAtIndex(index))


def spoken_name(node):
    """The name of the node's label, or else its own: that of a box is the value it shows."""
    for relation in node.getRelationSet():
        if relation.getRelationType() == pyatspi.RELATION_LABELLED_BY:
            return " ".join(relation.getTarget(i).name for i in range(relation.getNTargets()))
    return "" if node.getRoleName() == "combo box" else node.name


def describe(node):
    return f"{node.getRoleName()} \"{spoken_name(node)}\""


def xdotool(*words):
    """The words of the answer; none where nothing was found."""
    return subprocess.run(["xdotool", *words], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True,
                          check=False).stdout.split()


def press(*keys):
    xdotool("key", *keys)


class Program:
    """trackhost as a child, found on the bus, with its window active."""

    def __init__(self, executable, *arguments, stdin=None):
        self.focused = collections.deque(maxlen=100)  # what has taken the focus, as described, the last one last
        pyatspi.Registry.registerEventListener(self._take_focus, "object:state-changed:focused")
        self.process = subprocess.Popen([executable, *arguments], stdin=stdin, stdout=subprocess.DEVNULL)
        try:
            self.root = wait_until(self._application, "trackhost is on the bus of the screen readers")
            self.window = wait_until(lambda: self.top("trackhost"), "trackhost shows its window")
            self.focus("trackhost")
        except BaseException:
            self.close()
            raise

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        self.process.kill()
        self.process.wait()

    def _take_focus(self, event):
        if event.detail1:
            self.focused.append(describe(event.source))

    def _application(self):
        check(self.process.poll() is None, "trackhost goes on running")
        for application in pyatspi.Registry.getDesktop(0):
            if application is not None and application.get_process_id() == self.process.pid and application.childCount:
                return application
        return None

    def top(self, title):
        """The window whose title ends so, or None."""
        return next((window for window in self.root if window is not None and window.name.endswith(title)), None)

    def focus(self, title):
        """Gives the window the keyboard, as a window manager does to a new window and to what a closed one leaves."""
        def is_given():
            for found in xdotool("search", "--onlyvisible", "--name", f"{re.escape(title)}$"):
                xdotool("windowfocus", found)
            window = self.top(title)
            return window is not None and window.getState().contains(pyatspi.STATE_ACTIVE)
        wait_until(is_given, f"the window \"{title}\" takes the keyboard")

    def find(self, role, name, within=None):
        """The first such node, or None."""
        return next((node for node in nodes(within or self.root)
                     if node.getRoleName() == role and spoken_name(node) == name), None)

    def need(self, role, name, within=None):
        return wait_until(lambda: self.find(role, name, within), f"there is a {role} \"{name}\"")

    def panel_table(self, name):
        """A table of the panel, as rows and columns; another dock has one of the same name."""
        return self.need("table", name, self.need("frame", "Data Display")).queryTable()

    def press_until_focused(self, key, what, most=12):
        """Presses the key until what is so described has the focus; returns what had it on the way."""
        way = []
        while what not in way:
            check(len(way) < most, f"{key} leads to the {what}, not to {', '.join(way)} alone")
            self.focused.clear()
            press(key)
            wait_until(lambda: self.focused, f"{key} moves the focus on from {way[-1] if way else 'where it is'}")
            time.sleep(0.1)  # a table is named after its cell
            handle_events()
            way.append(self.focused[-1])
        return way

    def choose(self, keys, item):
        """Opens a menu and chooses an item. On a busy machine a menu may close as the keys that opened it are let go."""
        for attempt in range(3):
            self.focused.clear()
            press(keys)
            try:
                wait_until(lambda: any("menu" in what for what in self.focused), f"{keys} opens a menu", 5)
                while item not in self.focused:
                    self.focused.clear()
                    press("Down")
                    wait_until(lambda: any("menu" in what for what in self.focused), f"Down goes on to the {item}", 5)
                break
            except Unmet:
                if attempt == 2:
                    raise
                press("Escape")
        press("Return")

    def memory(self):
        """[KiB] that are no file's."""
        with open(f"/proc/{self.process.pid}/smaps_rollup", encoding="ascii") as figures:
            return next(int(line.split()[1]) for line in figures if line.startswith("Anonymous:"))


def run(test):
    """Runs the test with the path of trackhost, and prints what it returns, which is what it has seen."""
    status = 0
    try:
        print(test(sys.argv[1]), flush=True)
    except Unmet as unmet:
        print(f"FAILED: {unmet}", flush=True)
        status = 1
    os._exit(status)  # the client's library, at its own end, may wait for a bus that has gone
