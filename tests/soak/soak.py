#!/usr/bin/env python3
"""Lets the real column live through much in little time: sessions start, work, wait and die, their
terminals close, files are half written, settings are rewritten, the clock jumps, the machine sleeps, the
disk is full. Memory, descriptors and threads must stay flat, and no session be missed or made up.

    tests/soak/soak.py [--minutes 60] [--seed N]
"""
import argparse
import contextlib
import ctypes
import json
import os
import pathlib
import random
import signal
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "e2e"))
from display import Display  # noqa: E402
from machine import Machine, eventually  # noqa: E402

MOST_SESSIONS = 20
FAKETIME = next(iter(pathlib.Path("/usr/lib").glob("*/faketime/libfaketime.so.1")), None)
STATES = ("idle", "busy", "waiting", "shell")


class Figures:
    """What a process has of the machine, over time."""

    def __init__(self, pid):
        self.proc = pathlib.Path(f"/proc/{pid}")
        self.samples = []

    def sample(self):
        fields = dict(line.split(":", 1) for name in ("smaps_rollup", "status")
                      for line in (self.proc / name).read_text().splitlines()[1:] if ":" in line)
        ticks = (self.proc / "stat").read_text().rsplit(")", 1)[1].split()[11:13]
        # Not the shared part: what falls to us of a library depends on who else uses it.
        self.samples.append({"memory": int(fields["Private_Dirty"].split()[0]) / 1024,
                             "share": int(fields["Pss"].split()[0]) / 1024,
                             "descriptors": len(list((self.proc / "fd").iterdir())),
                             "threads": int(fields["Threads"]),
                             "seconds": sum(map(int, ticks)) / os.sysconf("SC_CLK_TCK")})

    def middle(self, name, begin, end):
        """The middle value of a stretch of the samples, in shares of all."""
        part = self.samples[int(begin * len(self.samples)):int(end * len(self.samples))]
        return sorted(sample[name] for sample in part)[len(part) // 2]


class Soak:
    def __init__(self, seed):
        self.random = random.Random(seed)
        self.machine = Machine()
        self.sessions = {}
        self.counts = {}
        self.full = None
        self.clock = self.machine.folder / "clock"
        self.set_clock(0)
        self.machine.run("connect")
        self.display = Display(self.machine)
        preload = {"LD_PRELOAD": f"libnss_wrapper.so {FAKETIME}", "FAKETIME_NO_CACHE": "1",
                   "FAKETIME_TIMESTAMP_FILE": str(self.clock), "FAKETIME_DONT_FAKE_MONOTONIC": "1",
                   "NO_FAKE_STAT": "1"} if FAKETIME else {}
        self.column = self.machine.start("zelvane-app", DISPLAY=self.display.name, **preload)
        eventually(lambda: self.display.output("xdotool", "search", "--onlyvisible", "--class",
                                               "zelvane"), what="the window appears", seconds=30)

    def set_clock(self, hours):
        self.clock.write_text(f"+{hours}h\n" if hours >= 0 else f"{hours}h\n")

    # What may happen; each takes no longer than a moment.

    def session_starts(self):
        if len(self.sessions) < MOST_SESSIONS:
            pid = self.machine.start_claude()
            self.sessions[pid] = f"s{pid}"
            self.machine.write_session(pid, self.sessions[pid], status="busy")

    def session_works(self):
        if pid := self.any():
            self.machine.write_session(pid, self.sessions[pid], status=self.random.choice(STATES))

    def hook_fires(self):
        if pid := self.any():
            event = self.random.choice((
                {"hook_event_name": "UserPromptSubmit", "prompt": "고쳐 줘 " * self.random.randrange(50)},
                {"hook_event_name": "Stop"},
                {"hook_event_name": "Notification", "notification_type": "permission_prompt"}))
            helper = self.machine.home / ".claude/hooks/zelvane/zelvane"
            subprocess.run([helper, "hook"], env={**self.machine.env, "CLAUDE_PID": str(pid)}, check=True,
                           input=json.dumps({"session_id": self.sessions[pid], **event}), text=True)

    def session_ends(self):
        if pid := self.take():
            (self.machine.sessions / f"{pid}.json").unlink()
            os.kill(pid, signal.SIGTERM)

    def session_is_killed(self):
        if pid := self.take():
            os.kill(pid, signal.SIGKILL)

    def window_closes(self):
        """Several tabs at once."""
        for _ in range(3):
            self.session_is_killed()

    def files_are_bad(self):
        junk = self.random.choice((b"", b"{", b"\xff" * 100, b"[" * 100_000, b"{}" * 50_000))
        (self.machine.sessions / f"{self.random.randrange(5)}.json").write_bytes(junk)

    def file_is_half_written(self):
        if pid := self.any():
            path = self.machine.sessions / f"{pid}.json"
            whole = path.read_bytes()
            path.write_bytes(whole[:self.random.randrange(len(whole) + 1)])
            time.sleep(0.02)
            path.write_bytes(whole)

    def user_writes(self):
        if pid := self.any():
            word = self.random.choice(("title", "memo"))
            self.machine.run(word, self.sessions[pid], f"{word} {self.random.random()}", check=False)

    def user_pins(self):
        if pid := self.any():
            self.machine.run("pin", self.sessions[pid], check=False)

    def settings_change(self):
        path = self.machine.home / ".claude/settings.json"
        settings = json.loads(path.read_text())
        settings["model"] = str(self.random.random())
        path.write_text(json.dumps(settings))

    def clock_jumps(self):
        self.set_clock(self.random.choice((-48, -1, 0, 0, 1, 200)))

    def machine_sleeps(self):
        self.column.send_signal(signal.SIGSTOP)
        time.sleep(0.5)
        self.set_clock(self.random.choice((0, 8)))
        self.column.send_signal(signal.SIGCONT)

    def disk_fills_or_empties(self):
        if self.full:
            self.full.unlink(missing_ok=True)
            self.full = None
            for pid, name in self.sessions.items():
                self.machine.write_session(pid, name, status="idle")
        elif os.statvfs(self.machine.home).f_blocks * 4096 < 1 << 30:
            self.full = self.machine.home / "filler"
            # Unbuffered: what a buffer could not write it would try again when the file is closed.
            with open(self.full, "wb", buffering=0) as file, contextlib.suppress(OSError):
                while file.write(b"x" * 65536):
                    pass

    # How it goes on.

    def any(self):
        return self.random.choice(sorted(self.sessions)) if self.sessions else None

    def take(self):
        # One stays: the server of the terminals ends with the last.
        pid = self.any() if len(self.sessions) > 1 else None
        if pid:
            del self.sessions[pid]
        return pid

    def step(self):
        weights = {self.session_starts: 6, self.session_works: 12, self.hook_fires: 12, self.session_ends: 3,
                   self.session_is_killed: 2, self.window_closes: 1, self.files_are_bad: 2,
                   self.file_is_half_written: 3, self.user_writes: 3, self.user_pins: 1,
                   self.settings_change: 1, self.clock_jumps: 1, self.machine_sleeps: 1}
        action = self.random.choices(list(weights), list(weights.values()))[0]
        try:
            action()
        except OSError as error:
            if not self.full:
                raise error
        self.counts[action.__name__] = self.counts.get(action.__name__, 0) + 1
        if self.column.poll() is not None:
            raise AssertionError(f"the column ended: {self.column.stderr.read()}")

    def inherited(self, pid):
        """Whether a process began after the file that names it: nobody can tell that it is another's."""
        try:
            ticks = int(pathlib.Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()[19])
            written = (self.machine.sessions / f"{pid}.json").stat().st_mtime
        except FileNotFoundError:
            return False
        booted = time.time() - time.clock_gettime(time.CLOCK_BOOTTIME)
        return booted + ticks / os.sysconf("SC_CLK_TCK") > written

    def sweep(self):
        """Takes away the files of those that were killed, before too many of their pids are others'."""
        for file in self.machine.sessions.glob("*.json"):
            if file.stem.isdigit() and int(file.stem) not in self.sessions:
                file.unlink()

    def check(self):
        """Nobody is missed, nobody made up: by the command, and by the column's own snapshot."""
        expected = set(self.sessions.values())
        listed = {row["id"] for row in self.machine.list()["sessions"]}
        made_up = {name for name in listed - expected if not self.inherited(int(name[1:]))}
        if expected - listed or made_up:
            raise AssertionError(f"missed {expected - listed}, made up {made_up}")
        self.sweep()
        self.set_clock(0)

        def seen():
            try:
                snapshot = json.loads((self.machine.home / ".claude/zelvane/autosnap.json").read_text())
            except FileNotFoundError:
                return not expected
            now = time.time()
            return {item["sid"] for item in snapshot["items"]
                    if begun < item["last_seen"] <= now} == expected

        # Its clock was set just now: a pass that began before may still be on its way.
        time.sleep(0.1)
        begun = time.time()
        eventually(seen, seconds=25, what=f"the column shows {len(expected)} sessions")


def limited_home():
    """A small file system of our own for temporary files, so that it can be full; False without the right."""
    libc = ctypes.CDLL(None, use_errno=True)
    new_namespace = 0x00020000
    if libc.unshare(new_namespace) != 0:
        return False
    quiet = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL, "check": False}
    subprocess.run(["mount", "--make-rprivate", "/"], **quiet)
    folder = pathlib.Path("/var/tmp/zelvane-soak")
    folder.mkdir(exist_ok=True)
    mounted = subprocess.run(["mount", "-t", "tmpfs", "-o", "size=64m", "soak", folder], **quiet)
    if mounted.returncode == 0:
        os.environ["TMPDIR"] = str(folder)
    return mounted.returncode == 0


def main():
    options = argparse.ArgumentParser()
    options.add_argument("--minutes", type=float, default=60)
    options.add_argument("--seed", type=int, default=int(time.time()))
    options = options.parse_args()
    can_fill = limited_home()
    print(f"soak: seed {options.seed}, {options.minutes:g} min"
          f"{'' if can_fill else '; no right to mount: the disk is never full'}"
          f"{'' if FAKETIME else '; no libfaketime: the clock never jumps'}", flush=True)
    soak = Soak(options.seed)
    try:
        run(soak, options.minutes * 60, can_fill)
    finally:
        soak.machine.close()


def run(soak, seconds, can_fill):
    figures = Figures(soak.column.pid)
    begin = time.monotonic()
    next_check = next_sample = 0
    fills = iter([0.3, 0.4, 0.6, 0.7] if can_fill else [])
    next_fill = next(fills, 2)
    while (passed := time.monotonic() - begin) < seconds:
        soak.step()
        if passed >= next_fill * seconds:
            soak.disk_fills_or_empties()
            next_fill = next(fills, 2)
        if passed >= next_sample:
            figures.sample()
            next_sample = passed + seconds / 200
        if passed >= next_check and not soak.full:
            soak.check()
            next_check = passed + max(20, seconds / 60)
        time.sleep(0.02)
    soak.check()
    print("  ".join(f"{name} {count}" for name, count in sorted(soak.counts.items())))
    failed = False
    # Each conversation is remembered for a day; fonts and pictures go on being loaded when they first show.
    kept = soak.counts["session_starts"] * 2 / 1024
    loaded = 4
    for name, unit, more in (("memory", "MB", loaded + kept), ("descriptors", "", 1), ("threads", "", 1)):
        early, late = figures.middle(name, 0.3, 0.5), figures.middle(name, 0.8, 1)
        grows = late > early + more
        failed = failed or grows
        print(f"{name:12} {early:8.1f} -> {late:8.1f} {unit} {'GROWS' if grows else 'flat'}")
    print(f"most memory  {max(sample['share'] for sample in figures.samples):8.1f} MB with its share of libraries")
    used = figures.samples[-1]["seconds"] - figures.samples[0]["seconds"]
    print(f"processor    {used / seconds * 100:8.2f} % of a core")
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
