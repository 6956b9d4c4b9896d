#!/usr/bin/env python3
"""What the column costs, beside a bare window of the toolkit's in the same run: its start, memory,
frames, processor time and wake-ups. On an X server of its own, in a scratch home:
  ZELVANE_PROGRAMS=build/bench/bin benchmarks/column_figures.py
"""
import os
import pathlib
import statistics
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "tests/e2e"))
from display import Display  # noqa: E402
from machine import PROGRAMS, Machine, eventually  # noqa: E402

TICKS = os.sysconf("SC_CLK_TCK")


def row(what, figure, unit, baseline=0.0, name="", remark=""):
    """A row of the same table as the other benchmarks print."""
    ratio = f" {figure / baseline:7.2f} x {name:26}" if baseline else ""
    print(f"{what:50} {figure:9.2f} {unit:4}{ratio} {remark}", flush=True)


class Figures:
    def __init__(self, machine):
        self.machine = machine
        self.display = Display(machine)

    def open(self, *arguments):
        """A process of column_bench that has painted, and the seconds until then."""
        start = time.monotonic()
        child = self.machine.start("column_bench", *arguments, DISPLAY=self.display.name)
        assert child.stdout.readline() == "painted\n"
        return child, time.monotonic() - start

    def seconds_to_paint(self, *arguments):
        child, seconds = self.open(*arguments)
        child.kill()
        child.wait()
        return seconds

    def starts(self):
        runs = [("bare",), ("text",), ("open", "0"), ("open", "20"), ("open", "300")]
        times = {run: [] for run in runs}
        for _ in range(15):  # in turns, so that a busy moment hits them all
            for run in runs:
                times[run].append(self.seconds_to_paint(*run))
        best = {run: min(times[run]) * 1000 for run in runs}  # what other programs do only adds to it
        for run in runs[1:]:
            what = "a line of text" if run == ("text",) else f"{run[1]} rows"
            row(f"start to first frame, {what}", best[run], "ms", best["bare",], "a bare window",
                f"{best[run] / best['text',]:.2f} x one with a line of text")

    def memory(self):
        used = {run: self.memory_of(*run) for run in (("bare",), ("open", "0"), ("open", "50"))}
        for run in (("open", "0"), ("open", "50")):
            row(f"memory (PSS), {run[1]} rows", used[run], "MB", used["bare",], "a bare window")

    def memory_of(self, *run):
        child, _ = self.open(*run)
        time.sleep(3)
        text = pathlib.Path(f"/proc/{child.pid}/smaps_rollup").read_text()
        child.kill()
        return next(int(line.split()[1]) for line in text.split("\n") if line.startswith("Pss:")) / 1024

    def frames(self):
        for rows in ("20", "300"):
            output = subprocess.run([PROGRAMS / "column_bench", "frames", rows], check=True, text=True,
                                    capture_output=True,
                                    env={**self.machine.env, "DISPLAY": self.display.name}).stdout
            times = sorted(map(float, output.split()))
            row(f"frame while {rows} rows scroll and change", statistics.median(times), "ms",
                remark=f"95 %: {times[len(times) * 95 // 100]:.1f}, worst {times[-1]:.1f}")

    def processor(self, seconds=20):
        shares = {}
        for rows in (1, 20, 300):
            child, _ = self.open("open", str(rows))
            time.sleep(3)
            before = processor_ticks(child.pid)
            time.sleep(seconds)
            shares[rows] = 100 * (processor_ticks(child.pid) - before) / TICKS / seconds
            child.kill()
            row(f"processor, {rows} working rows", shares[rows], "%",
                remark=f"per tile and character {shares[rows] / rows:.3f} %")

    def jumps(self, times=20):
        """The true command, to and fro between two windows."""
        names = []
        for name in ("one", "two"):
            # A shell stays between: the terminal's child, as in life.
            self.machine.spawn("xterm", "-T", name, "-e", "/bin/sh", "-c",
                               f"echo $$ > {self.machine.folder}/{name}; exec {self.machine.claude} 600",
                               DISPLAY=self.display.name)
            file = self.machine.folder / name
            eventually(lambda: file.exists() and file.read_text().strip(), what=f"{name} runs")
            self.machine.write_session(int(file.read_text()), name, status="busy")
            names.append(name)
        eventually(lambda: {"one", "two"} <= {row["id"] for row in self.machine.list()["sessions"]},
                   what="both are listed")
        jump = self.median_of(lambda i: [PROGRAMS / "zelvane", "jump", names[i % 2]], times)
        bare = self.median_of(lambda i: ["xdotool", "search", "--name", f"^{names[i % 2]}$",
                                         "windowactivate", "--sync"], times)
        row("jump to another window", jump, "ms", bare, "xdotool's")

    def median_of(self, command, times):
        costs = []
        for i in range(times):
            start = time.monotonic()
            subprocess.run(command(i), env={**self.machine.env, "DISPLAY": self.display.name},
                           check=True, capture_output=True)
            costs.append((time.monotonic() - start) * 1000)
        return statistics.median(costs)

    def idle(self, seconds=60):
        """Of the true program, with three resting sessions."""
        for name in "abc":
            self.machine.write_session(self.machine.start_claude(), name)
        child = self.machine.start("zelvane-app", DISPLAY=self.display.name)
        time.sleep(8)
        before, ticks = switches(child.pid), processor_ticks(child.pid)
        time.sleep(seconds)
        after, used = switches(child.pid), processor_ticks(child.pid) - ticks
        child.kill()
        parts = {name: (count - before.get(name, 0)) * 60 / seconds for name, count in after.items()}
        row("idle, wake-ups per minute", sum(parts.values()), "",
            remark=", ".join(f"{name} {count:.0f}" for name, count in sorted(parts.items()) if count))
        row("idle, processor time per hour", used / TICKS * 3600 / seconds, "s")


def processor_ticks(pid):
    fields = pathlib.Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()
    return int(fields[11]) + int(fields[12])


def switches(pid):
    """How often each thread slept and woke, by the thread's name."""
    counts = {}
    for task in pathlib.Path(f"/proc/{pid}/task").iterdir():
        text = (task / "status").read_text()
        count = next(int(line.split()[1]) for line in text.split("\n")
                     if line.startswith("voluntary_ctxt_switches"))
        name = (task / "comm").read_text().strip()
        counts[name] = counts.get(name, 0) + count
    return counts


def main():
    machine = Machine()
    machine.run("connect")  # as it is after the first day
    try:
        figures = Figures(machine)
        figures.starts()
        figures.memory()
        figures.frames()
        figures.processor()
        figures.idle()  # before anything works
        figures.jumps()
    finally:
        machine.close()


if __name__ == "__main__":
    main()
