#!/usr/bin/env python3
# Tests the shell of a box: Tab completes wificonf and gwbox without any setup, and the
# user's own settings are read and not changed.
# usage: shell_completion.py GWBOX
import os
import pty
import select
import sys
import tempfile
import time

PROMPT = b"(gateway) # "
SECONDS = 20
OWN_SETTINGS = "own_setting=read\nPS1='mine '\n"


def read_until(terminal, text, deadline):
    """Reads from the terminal up to TEXT; ends the test if TEXT never appears."""
    seen = b""
    while text not in seen:
        ready = select.select([terminal], [], [], max(0, deadline - time.monotonic()))[0]
        try:
            piece = os.read(terminal, 4096) if ready else b""
        except OSError:  # the other end is closed
            piece = b""
        if not piece:
            sys.exit(f"FAILED: {text!r} is not shown, but {seen!r}")
        seen += piece


def start(gwbox, home):
    os.environ.update(SHELL="/bin/bash", TERM="dumb", HOME=home)
    child, terminal = pty.fork()
    if child == 0:
        os.execv(gwbox, [gwbox, "run", "--no-portmap"])
    return child, terminal


def main():
    gwbox = os.path.realpath(sys.argv[1])
    typed = {
        b"gwbox adv": b"gwbox advance ",
        b"gwbox set station 02:00:5e:00:00:01 by": b"gwbox set station 02:00:5e:00:00:01 by_wps=",
        b"gwbox scenario show ap": b"gwbox scenario show apartment ",
        b"wificonf wlan_set_ssid_a": b"wificonf wlan_set_ssid_advertisement_enabled ",
        b"wificonf pin": b"wificonf ping ",
    }
    with tempfile.TemporaryDirectory(dir=os.path.dirname(gwbox)) as home:
        settings = os.path.join(home, ".bashrc")
        with open(settings, "w") as file:
            file.write(OWN_SETTINGS)
        child, terminal = start(gwbox, home)
        deadline = time.monotonic() + SECONDS
        read_until(terminal, PROMPT, deadline)
        for line, whole in typed.items():
            # Tab completes the line on the screen; Ctrl-U deletes it.
            os.write(terminal, line + b"\t")
            read_until(terminal, whole, deadline)
            os.write(terminal, b"\x15echo $own_setting done\r")
            read_until(terminal, b"\r\nread done\r\n" + PROMPT, deadline)
        os.write(terminal, b"exit 7\r")
        status = os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])
        with open(settings) as file:
            kept = file.read() == OWN_SETTINGS and os.listdir(home) == [".bashrc"]
    if not kept or status != 7:
        sys.exit(f"FAILED: own files kept: {kept}, exit status {status}")


main()
