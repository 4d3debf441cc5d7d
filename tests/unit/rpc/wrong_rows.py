#!/usr/bin/env python3
"""wrong_rows.py BUILD SOURCE: checks that rows with mistakes do not compile and that the
messages name the procedure and what to write. One copy of procedures.def has all mistakes."""
import json
import os
import re
import shlex
import subprocess
import sys
import tempfile

# Procedure, pattern in its row, replacement, message of the compiler, name in the message.
MISTAKES = [
    ("WLAN_RESET", r"(?s)OWN.*", "", "has no row: write one in procedures.def"),
    ("WLAN_INIT", r"OWN\(2, WLAN_INIT", "OWN(2, WLAN_INITIALIZE",
     "has a row and is not in wlan_config.x", "WLAN_INITIALIZE"),
    ("WLAN_GET_STATS", r"\d+", "4000", ": write the number that wlan_config.x has"),
    ("WLAN_GET_CHANNEL", r"\d+", "1", ": another row has its number"),
    ("WLAN_SET_SSID", r"string_t, ssid", "string_t, name",
     ": the row has INDEX(bss) FIELD(string_t, name); write the members"),
    ("WLAN_SET_ENABLE", r"FIELD\(\w+,", "FIELD(string_t,", "; write the members"),
    ("WLAN_SET_CHANNEL", r" FIELD\(\w+, \w+\)", "", "; write the members"),
    ("WLAN_GET_SSID", r"ONLY_INDEX", "INDEX", ": wlan_config.x declares another argument"),
    ("WLAN_SET_CHANNEL_UTILIZATION_ENABLE", r"CODE", "NONE",
     ": wlan_config.x declares another result"),
    ("WLAN_GET_BASIC_STATS", r"WORDS\(\w+\)", "WORDS(bssid_port)",
     "has to take the members of the row"),
    ("WLAN_GET_NA_STA_REPORT", r"IMAGE\(\w+\)", "IMAGE(mac_answer)",
     "has to take the members of the row"),
    ("WLAN_GET_CHANNEL_UTILIZATION", r"INT\(\w+\)", "TEXT(channel_utilization)",
     "has to take the members of the row"),
]


def with_mistakes(rows):
    for name, old, new, *_ in MISTAKES:
        row = re.search(rf"^[A-Z_]+\(\w+, {name},.*?(?=^[A-Z_]+\(|^//)", rows, re.M | re.S)
        wrong, replaced = re.subn(old, new, row.group(0), count=1)
        assert replaced and wrong != row.group(0), f"the row of {name} has no {old}"
        rows = rows[:row.start()] + wrong + rows[row.end():]
    return rows


def compile_command(build):
    """The command for procedures_check.cpp without compiler cache, input and output."""
    with open(f"{build}/compile_commands.json", encoding="utf-8") as file:
        command = next(shlex.split(entry["command"]) for entry in json.load(file)
                       if entry["file"].endswith("/src/rpc/procedures_check.cpp"))
    compiler = next(i for i, word in enumerate(command) if word.endswith("++"))
    return command[compiler:command.index("-o")]


def main(build, source):
    with open(f"{source}/src/rpc/procedures.def", encoding="utf-8") as file:
        rows = file.read()
    with tempfile.TemporaryDirectory() as directory:
        os.mkdir(f"{directory}/rpc")
        with open(f"{directory}/rpc/procedures.def", "w", encoding="utf-8") as file:
            file.write(with_mistakes(rows))
        with open(f"{directory}/all.cpp", "w", encoding="utf-8") as file:
            file.write('#include "rpc/procedures_check.cpp"\n#include "rpc/handlers.h"\n')
        compiler, *flags = compile_command(build)
        said = subprocess.run(
            [compiler, f"-I{directory}", *flags, "-fsyntax-only", f"{directory}/all.cpp"],
            cwd=build, capture_output=True, text=True, check=False).stderr
    messages = [line for line in said.splitlines() if "static assertion failed" in line]
    # No flood of messages may hide the right ones; some mistakes cause a second message.
    status = 0 if len(messages) <= 2 * len(MISTAKES) else 1
    for name, _, _, message, *other in MISTAKES:
        name = (other or [name])[0]
        named = rf"[ :]{name}\b"
        if not any(re.search(named, line) and message in line for line in messages):
            print(f"no message names {name} and says: {message}")
            status = 1
    if status:
        print(f"{len(messages)} messages:\n" + "\n".join(messages[:20]))
    return status


sys.exit(main(*sys.argv[1:]))
