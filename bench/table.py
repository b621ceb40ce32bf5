#!/usr/bin/env python3
# SPDX-FileCopyrightText: the VORNAK data display authors
# SPDX-License-Identifier: MIT
"""Prints the medians of a benchmark run as one Markdown table: each aim, ours, the rival, their ratio, whether met.
Of lines lost, which are few and chance, the mean of all runs, and the least and the most of one."""
import json
import sys


def medians(path):
    """The median of each benchmark by name, in nanoseconds, and its counters by "name counter"."""
    to_ns = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}
    values = {}
    with open(path, encoding="utf-8") as file:
        runs = json.load(file)["benchmarks"]
    for run in runs:
        parts = run["run_name"].split("/")
        own = [part for part in parts if part not in ("manual_time", "real_time") and not part.startswith("iter")]
        name = "/".join(own)
        aggregate = run.get("aggregate_name")
        if "lost_percent" in run and aggregate in ("mean", "least", "most"):
            values[f"{name} lost_percent {aggregate}"] = run["lost_percent"]
        if aggregate != "median":
            continue
        # The reading is timed by the processor's clock, so that other programs on the machine count for nothing.
        time = run["real_time"] if "manual_time" in parts else run["cpu_time"]
        values[name] = time * to_ns[run["time_unit"]]
        for counter in ("bytes_per_row", "locked_percent"):
            if counter in run:
                values[name + " " + counter] = run[counter]
    return values


def duration(nanoseconds):
    for unit, size in (("ms", 1e6), ("µs", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.2f} {unit}"
    return f"{nanoseconds:.0f} ns"


class Table:
    def __init__(self, values):
        self.values = values
        self.missed = 0
        print("| what | aim | ours | rival | ratio | met? |")
        print("|---|---|---|---|---|---|")

    def row(self, what, aim, ours, rival, ratio, met):
        verdict = "–" if met is None else "yes" if met else "**no**"
        self.missed += met is False
        print(f"| {what} | {aim} | {ours} | {rival} | {ratio} | {verdict} |")

    def faster(self, what, name, rival, least=None, rival_name=None):
        """How many times faster than the rival we are."""
        ours, theirs = self.values.get(name + "/ours"), self.values.get(name + "/" + rival)
        if ours is None or theirs is None:
            return
        ratio = theirs / ours
        self.row(f"{what}, against {rival_name or rival}", f"≥ {least} times" if least else "–", duration(ours),
                 duration(theirs), f"{ratio:.2f}", ratio >= least if least else None)

    def share(self, what, name, rival, most=None, rival_name=None, own=None):
        """Which part of the rival's time we take."""
        ours, theirs = self.values.get(own or name + "/ours"), self.values.get(name + "/" + rival)
        if ours is None or theirs is None:
            return
        ratio = ours / theirs
        self.row(f"{what}, against {rival_name or rival}", f"≤ {most}" if most else "–", duration(ours),
                 duration(theirs), f"{ratio:.3f}", ratio <= most if most else None)

    def within(self, what, name, rival, most=None, rival_name=None):
        """Our time against an aim of its own [ns]; the rival tells how fast the machine was."""
        ours, theirs = self.values.get(name + "/ours"), self.values.get(name + "/" + rival)
        if ours is None or theirs is None:
            return
        self.row(f"{what}, against {rival_name or rival}", f"≤ {duration(most)}" if most else "–", duration(ours),
                 duration(theirs), f"{ours / theirs:.3f}", ours <= most if most else None)

    def counter(self, what, name, counter, unit, most=None):
        ours, theirs = (self.values.get(f"{name}/{side} {counter}") for side in ("ours", "naive"))
        if ours is None or theirs is None:
            return
        ratio = f"{ours / theirs:.3f}" if theirs else "–"
        self.row(what + ", against naive", f"≤ {most} {unit}" if most else "–", f"{ours:.3g} {unit}",
                 f"{theirs:.3g} {unit}", ratio, ours <= most if most else None)

    def lost(self, what, name, most):
        sides = [[self.values.get(f"{name}/{side} lost_percent {value}") for value in ("mean", "least", "most")]
                 for side in ("ours", "naive")]
        if None in sides[0] + sides[1]:
            return
        ours, theirs = (f"{mean:.3g} % ({least:.2g} to {highest:.2g})" for mean, least, highest in sides)
        ratio = f"{sides[0][0] / sides[1][0]:.3f}" if sides[1][0] else "–"
        self.row(what + ", against naive", f"≤ {most} %", ours, theirs, ratio, sides[0][0] <= most)

    def alone(self, what, name):
        if name in self.values:
            self.row(what, "–", duration(self.values[name]), "–", "–", None)

    def flat(self, what, pattern, counts):
        """The cost per row, at the smallest and at the largest count."""
        few, many = (self.values.get(pattern.format(count)) for count in (counts[0], counts[-1]))
        if few is None or many is None:
            return
        each = [few / counts[0], many / counts[-1]]
        self.row(f"{what}: each of {counts[-1]}, against each of {counts[0]}", "≤ 1.25", duration(each[1]),
                 duration(each[0]), f"{each[1] / each[0]:.2f}", each[1] / each[0] <= 1.25)


def main():
    table = Table(medians(sys.argv[1]))
    for tag, counts, least in (("6d", (10, 50, 200), 5), ("6di", (10, 50, 200), 5), ("3d", (10, 50, 300), 4)):
        for count in counts:
            what, name = f'reading "{tag}" of {count}', f"read/{tag}/{count}"
            table.faster(what, name, "naive", least)
            table.faster(what, name, "fast_float")
            table.share(what, name, "floor", 8 if tag == "6d" else None, "copy and search for ']' (stretch)")
    for tag in ("6d", "6di"):
        for count in (10, 50, 200):
            what, name, most = f'watching "{tag}" of {count}', f"watch/{tag}/{count}", 5e3 if count == 50 else None
            table.within(what, name, "panel", most, "the panel's own reading")
            table.within(what, name, "strings", None, "QString::split")
    table.alone('watching "3d" of 100', "watch/3d/100/ours")
    for motion, most in (("moving", 0.17), ("still", 0.08)):
        for count in (10, 50, 200, 1000):
            what = f"6DOF redraw under the lock, {count} bodies, {motion}"
            table.share(what, f"redraw6d/{motion}/{count}", "naive", most)
            if motion == "still":
                table.share(what, f"redraw6d/moving/{count}", "naive", rival_name="naive with everything moving",
                            own=f"redraw6d/still/{count}/ours")
    for count in (10, 100, 300):
        table.share(f"3DOF redraw under the lock, {count} markers", f"redraw3d/{count}", "naive", 0.2)
    table.share("painting both tables, 50 bodies and 100 markers", "paint/50+100", "stock", 0.5, "the stock delegate")
    for load in ("50+100", "200+300"):
        table.share(f"GUI thread's processor time per tick, {load}", f"tick/{load}", "naive", 0.5)
    for load, most in (("50+100", 0.1), ("200+300", 0.2)):
        table.counter(f"lock held, of 200 ms, with threads, {load}", f"threads/{load}", "locked_percent", "%", most)
        table.lost(f"lines lost at 1000 a second, {load}", f"threads/{load}", 0.15)
    table.flat("moving bodies", "redraw6d/moving/{}/ours", (10, 1000))
    table.flat("still bodies", "redraw6d/still/{}/ours", (10, 1000))
    table.flat("markers", "redraw3d/{}/ours", (10, 300))
    for count in (50, 200):
        table.share(f"6DOF redraw under the lock, {count} bodies, moving", f"redraw6d/moving/{count}", "model",
                    rival_name="standard model")
    table.share("3DOF redraw under the lock, 100 markers", "redraw3d/100", "model", rival_name="standard model")
    table.share("GUI thread's processor time per tick, 50+100", "tick/50+100", "model", rival_name="standard model")
    table.alone("start-up of the panel", "panel/startup/ours")
    table.alone("reconfiguration with 200 bodies", "panel/reconfiguration200/ours")
    table.counter("memory per body", "memory/body", "bytes_per_row", "bytes")
    table.counter("memory per marker", "memory/marker", "bytes_per_row", "bytes")
    print(f"\n{table.missed} aims missed.")


main()
