"""Runs programs inside the simulated gateway, on the measured CPU."""

import json
import os
import subprocess
import time

BUILD = os.environ["BENCH_BUILD"]
CPU = os.environ["BENCH_CPU"]
BARE = [f"{BUILD}/bench/bare_server"]
OUT = "/tmp/out"


def pinned(*command):
    return ["taskset", "-c", CPU, *command]


def client(*arguments):
    """What bench_client prints for these arguments."""
    words = pinned(f"{BUILD}/bench/bench_client", *map(str, arguments))
    return json.loads(subprocess.run(words, check=True, stdout=subprocess.PIPE).stdout)


def run(*command):
    """A command whose output does not matter and that must succeed."""
    subprocess.run(pinned(*command), check=True, stdout=subprocess.DEVNULL)


def wait_until(condition, seconds=10):
    end = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > end:
            raise SystemExit("bench: waited in vain")
        time.sleep(0.002)


def answers(port, program):
    ping = ["rpcinfo", "-n", str(port), "-u", "192.168.254.254", str(program), "1"]
    quiet = subprocess.DEVNULL
    return subprocess.run(ping, stdout=quiet, stderr=quiet, check=False).returncode == 0


def start_daemon():
    """Starts the daemon, whose traces go to a file on tmpfs, and returns the supervisor."""
    with open(OUT, "a") as out, open("/tmp/err", "a") as err:
        daemon = subprocess.Popen(pinned("wificonfd"), stdout=out, stderr=err)
    wait_until(lambda: answers(60001, 0x20131337))
    return daemon


def start_bare():
    server = subprocess.Popen(pinned(*BARE))
    wait_until(lambda: answers(60002, 0x20000001))
    return server


def stop(process):
    process.terminate()
    process.wait()


def child_of(process):
    with open(f"/proc/{process.pid}/task/{process.pid}/children") as children:
        return int(children.read().split()[0])


def mark(path, present):
    if present:
        os.makedirs(os.path.dirname(path), exist_ok=True)
        open(path, "w").close()
    elif os.path.exists(path):
        os.remove(path)
