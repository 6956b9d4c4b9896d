#!/usr/bin/env python3
"""What the column costs, beside a bare window of the toolkit's in the same run: its start, memory,
frames, processor time and wake-ups. On an X server of its own, in a scratch home:
  ZELVANE_PROGRAMS=build/bench/bin bench/column_figures.py
"""
import os
import pathlib
import statistics
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "tests/e2e"))
from display import Display  # noqa: E402
from machine import PROGRAMS, Machine  # noqa: E402

TICKS = os.sysconf("SC_CLK_TCK")


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
        best = [min(times[run]) for run in runs]  # what other programs do only adds to it
        for run, seconds in zip(runs, best):
            print(f"start to first frame, {' '.join(run):9} {seconds * 1000:7.0f} ms"
                  f"  {seconds / best[0]:5.2f} x bare {seconds / best[1]:5.2f} x text")

    def memory(self):
        for run in (("bare",), ("open", "50")):
            child, _ = self.open(*run)
            time.sleep(3)
            text = pathlib.Path(f"/proc/{child.pid}/smaps_rollup").read_text()
            pss = next(int(line.split()[1]) for line in text.split("\n") if line.startswith("Pss:"))
            child.kill()
            print(f"memory (PSS), {' '.join(run):17} {pss / 1024:7.1f} MB")

    def frames(self):
        output = subprocess.run([PROGRAMS / "column_bench", "frames", "300"], check=True, text=True,
                                capture_output=True,
                                env={**self.machine.env, "DISPLAY": self.display.name}).stdout
        times = sorted(map(float, output.split()))
        print(f"frames of 300 rows, median           {statistics.median(times):7.1f} ms"
              f"  95 %: {times[len(times) * 95 // 100]:.1f}  worst: {times[-1]:.1f}")

    def processor(self, seconds=20):
        child, _ = self.open("open", "20")
        time.sleep(3)
        before = processor_ticks(child.pid)
        time.sleep(seconds)
        used = processor_ticks(child.pid) - before
        child.kill()
        print(f"20 working rows                      {100 * used / TICKS / seconds:7.1f} % of a core")

    def wake_ups(self, seconds=60):
        """Of the true program, with three resting sessions."""
        for name in "abc":
            self.machine.write_session(self.machine.start_claude(), name)
        self.machine.run("connect")
        child = self.machine.start("zelvane-app", DISPLAY=self.display.name)
        time.sleep(8)
        before = switches(child.pid)
        time.sleep(seconds)
        after = switches(child.pid)
        for name, count in sorted(after.items()):
            print(f"idle, wake-ups of {name:16}   {(count - before.get(name, 0)) * 60 / seconds:7.0f} / min")
        child.kill()


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
    try:
        figures = Figures(machine)
        figures.starts()
        figures.memory()
        figures.frames()
        figures.processor()
        figures.wake_ups()
    finally:
        machine.close()


if __name__ == "__main__":
    main()
