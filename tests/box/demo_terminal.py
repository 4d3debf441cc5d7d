#!/usr/bin/env python3
# Tests the shell that the demonstration leaves on a terminal: Ctrl-C there does not reach
# the daemon, and its radios stay up.
# usage: demo_terminal.py GWBOX DEMO
import os
import pty
import select
import sys
import time

PROMPT = b"(gateway) # "
SECONDS = 90  # including the demonstration


def read_until(terminal, text, deadline):
    """Returns what the terminal shows up to TEXT; ends the test if TEXT never appears."""
    seen = b""
    while text not in seen:
        ready = select.select([terminal], [], [], max(0, deadline - time.monotonic()))[0]
        try:
            piece = os.read(terminal, 4096) if ready else b""
        except OSError:  # the other end is closed
            piece = b""
        if not piece:
            sys.stdout.buffer.write(seen)
            sys.exit(f"\nFAILED: {text!r} is not shown")
        seen += piece
    return seen


def ask(terminal, command, deadline):
    os.write(terminal, command + b"\r")
    return read_until(terminal, PROMPT, deadline)


def main():
    gwbox, demo = sys.argv[1:]
    os.environ.update(SHELL="/bin/bash", TERM="dumb", HOME="/")
    child, terminal = pty.fork()
    if child == 0:
        os.execv(gwbox, [gwbox, "run", "--cold", "--companions", "--", demo])
    deadline = time.monotonic() + SECONDS
    read_until(terminal, PROMPT, deadline)
    # If Ctrl-C arrives while the shell is about to read its first line, no new prompt
    # appears, so none is awaited here. The shell may lose the character after Ctrl-C.
    os.write(terminal, b"\x03\recho $((40 + 2)) is back\r")
    read_until(terminal, b"42 is back\r\n" + PROMPT, deadline)
    answers = {
        b"wificonf --timeout 5 ping": b"answered in",
        b"gwbox status | grep '^ra[08] *on' | wc -l": b"\n2\r",
        b"wificonf wlan_get_assoc_devices_num 1": b"\n1\r",
    }
    failed = [c for c, said in answers.items() if said not in ask(terminal, c, deadline)]
    os.write(terminal, b"exit 7\r")
    status = os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])
    for command in failed:
        print("FAILED:", command.decode())
    print("exit status", status)
    sys.exit(bool(failed) or status != 7)


main()
