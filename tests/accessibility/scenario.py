# SPDX-FileCopyrightText: the VORNAK data display authors
# SPDX-License-Identifier: MIT
"""Two bodies whose motion and losses are known: "Steps" moves by a millimetre at a time, "Blinks" comes and goes."""
import json
import os
import pathlib

STEP = 0.25  # [s]; after each, the first body has moved by 1 mm
STEPS = 400  # more than a test takes


def write_scenario():
    folder = pathlib.Path(os.environ["HOME"])
    (folder / "steps.txt").write_text(
        "".join(f"{step * STEP} {step / 1000} 0 1 0 0 0 1\n" for step in range(STEPS)))
    scenario = folder / "scenario.json"
    scenario.write_text(json.dumps({"rate": 20, "bodies": [
        {"name": "Steps", "motion": {"kind": "recorded", "file": "steps.txt"}},
        {"name": "Blinks", "dropouts": {"every": 3, "lasting": 1.5}},
    ]}))
    return str(scenario)
