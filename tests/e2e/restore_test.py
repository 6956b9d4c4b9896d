"""Reopening conversations after a reboot, with a stand-in for claude that records how it was started."""
import ctypes
import json
import os
import signal
import subprocess
import time
import unittest

from display import Display
from machine import Machine, eventually

STAND_IN = """#!/bin/sh
printf '%s\\t%s\\n' "$PWD" "$*" >>"$HOME/started"
while :; do sleep 1000; done
"""


class RestoreTest(unittest.TestCase):
    def setUp(self):
        self.machine = Machine()
        self.addCleanup(self.machine.close)
        self.home = self.machine.home
        self.data = self.home / ".claude/zelvane"
        self.data.mkdir(parents=True)
        self.machine.claude.unlink()
        self.machine.claude.write_text(STAND_IN)
        self.machine.claude.chmod(0o755)
        (self.home / ".bash_profile").write_text(f"PATH={self.machine.claude.parent}:$PATH\n")
        self.environment = {"SHELL": "/bin/bash"}

    def tearDown(self):
        # Windows of terminals outlive the command that opened them, and so does what runs in them.
        subprocess.run(["pkill", "-f", str(self.machine.folder)], check=False)

    def start_tmux(self):
        """A tmux server whose windows find the stand-in, with a session that runs in it."""
        subprocess.run([*self.machine._tmux, "new-session", "-d", "sleep 1000"], check=True,
                       env={**os.environ, **self.machine.env, **self.environment})
        pid = int(self.machine.tmux("list-panes", "-F", "#{pane_pid}"))
        self.machine.write_session(pid, "runs")

    def folder(self, name):
        path = self.home / name
        path.mkdir(exist_ok=True)
        return str(path)

    def snapshot(self, items, name="rebootsnap.json"):
        (self.data / name).write_text(json.dumps({"saved_at": time.time() - 60, "items": items}))

    def started(self):
        """Folder and arguments of each stand-in, in the order of their starts."""
        log = self.home / "started"
        return [tuple(line.split("\t")) for line in log.read_text().splitlines()] if log.exists() else []

    def restore(self, *arguments, **environment):
        return self.machine.run("restore", *arguments, check=False,
                                **{**self.environment, **environment})

    def test_says_when_there_is_nothing(self):
        result = self.restore()
        self.assertEqual((result.returncode, result.stdout), (0, "되살릴 탭이 없어요\n"))

    def test_hostile_snapshots_execute_nothing(self):
        self.start_tmux()
        evil = f"x'; touch {self.home}/pwned; $(touch {self.home}/pwned) `touch {self.home}/pwned` \n"
        folder = self.folder(evil.replace("/", "_"))
        self.snapshot([{"sid": f"a;touch {self.home}/pwned", "cwd": folder, "title": evil},
                       {"sid": "--help", "cwd": folder}, {"sid": "../x", "cwd": folder},
                       {"sid": "good", "cwd": folder, "title": "\x1b[2J\u202e" + "긴" * 9000},
                       {"sid": "gone", "cwd": str(self.home / "gone")},
                       {"sid": "dash", "cwd": self.folder("-rf")}])
        result = self.restore()
        self.assertIn("완료: 연 탭 2개, 실패 0", result.stdout)
        self.assertNotIn("\x1b", result.stdout)
        log = (self.home / "started").read_text()
        self.assertEqual(log, f"{folder}\t--resume good\n{self.home}/-rf\t--resume dash\n")
        self.assertFalse((self.home / "pwned").exists())

    def test_killed_in_the_middle_the_next_run_opens_the_rest(self):
        self.start_tmux()
        self.snapshot([{"sid": f"s{i}", "cwd": self.folder(f"p{i}"), "terminal": "tmux"} for i in range(5)])
        dry = self.restore("--dry-run").stdout
        self.assertIn("5개를 열어요.", dry)
        self.assertEqual(self.started(), [])
        first = self.machine.start("zelvane", "restore", **self.environment)
        eventually(lambda: len(self.started()) == 2, what="two are open")
        first.send_signal(signal.SIGKILL)
        first.wait()
        second = self.restore()
        self.assertIn("실패 0", second.stdout)
        self.assertEqual(sorted(self.started()),
                         [(f"{self.home}/p{i}", f"--resume s{i}") for i in range(5)])
        self.assertIn("되살릴 탭이 없어요", self.restore().stdout)

    def test_a_conversation_that_does_not_come_up_is_named(self):
        self.start_tmux()
        self.machine.claude.write_text("#!/bin/sh\nexit 1\n")
        self.snapshot([{"sid": "a", "cwd": self.folder("p"), "title": "첫 일"}])
        result = self.restore()
        self.assertEqual(result.returncode, 1)
        self.assertIn("열지 못했어요: 첫 일 (10초 안에 대화가 시작되지 않았어요.)", result.stdout)
        self.assertIn("실패 1", result.stdout)
        self.machine.claude.write_text(STAND_IN)
        self.assertIn("완료: 연 탭 1개, 실패 0", self.restore().stdout)

    def test_a_reboot_is_offered_and_one_press_reopens_all(self):
        """Five conversations in tmux and five in xterm, by the column's button."""
        display = Display(self.machine)
        self.machine.run("connect")
        self.start_tmux()
        (self.data / "autosnap.json").write_text(json.dumps({
            "v": 2, "saved_at": 1000, "items": [
                {"sid": f"s{i}", "cwd": self.folder(f"p{i}"), "title": f"일 {i}", "last_seen": 1000,
                 "terminal": "tmux" if i < 5 else "xterm"} for i in range(10)]}))
        self.machine.start("zelvane-app", DISPLAY=display.name, **self.environment)
        (x, y), _ = eventually(lambda: display.find((29, 29, 27), run=20), what="the offer shows")
        pictures = os.environ.get("ZELVANE_PICTURES", str(self.machine.folder))
        display.picture(f"{pictures}/column-restore.png")
        display.click(x + 5, y + 5)
        eventually(lambda: len(self.started()) == 10, seconds=60, what="all ten are open")
        self.assertEqual(sorted(self.started()),
                         [(f"{self.home}/p{i}", f"--resume s{i}") for i in range(10)])
        windows = display.output("xdotool", "search", "--class", "xterm").split()
        self.assertEqual(len(windows), 5)
        self.assertEqual(len(self.machine.tmux("list-windows", "-a").splitlines()), 6)
        eventually(lambda: not (self.data / "rebootsnap.json").exists(), what="the offer is done")


class SnapshotTest(unittest.TestCase):
    def setUp(self):
        self.machine = Machine()
        self.addCleanup(self.machine.close)
        self.display = Display(self.machine)
        self.file = self.machine.home / ".claude/zelvane/autosnap.json"
        self.machine.write_session(self.machine.start_claude(), "a")

    def snapshot(self):
        try:
            return json.loads(self.file.read_text())
        except FileNotFoundError:
            return {}

    def start_column(self, **environment):
        column = self.machine.start("zelvane-app", DISPLAY=self.display.name, **environment)
        eventually(self.snapshot, what="a snapshot")
        return column

    def test_only_a_quit_on_purpose_is_marked(self):
        column = self.start_column()
        column.terminate()
        self.assertEqual(column.wait(10), 0)
        self.assertNotIn("app_quit", self.snapshot(), "the session's end may be a shutdown's beginning")
        column = self.start_column()
        window = eventually(lambda: self.display.output(
            "xdotool", "search", "--onlyvisible", "--class", "zelvane"), what="the window")[0]
        self.display.click(self.display.size[0] - 34, 28)
        eventually(lambda: self.display.output("xdotool", "search", "--onlyvisible", "--class",
                                               "zelvane") != window, what="the menu opens")
        self.display.output("xdotool", "key", "Up", "Return")
        self.assertEqual(column.wait(10), 0)
        self.assertIn("app_quit", self.snapshot())
        self.assertEqual([item["sid"] for item in self.snapshot()["items"]], ["a"])
        self.assertEqual(self.snapshot()["items"][0]["terminal"], "tmux")

    def test_what_a_shutdown_closes_is_not(self):
        bus = self.machine.folder / "bus"
        self.machine.spawn("dbus-daemon", "--session", "--nofork", f"--address=unix:path={bus}")
        eventually(bus.exists, what="a bus")
        manager = LoginManager(f"unix:path={bus}")

        self.start_column(DBUS_SYSTEM_BUS_ADDRESS=f"unix:path={bus}")
        eventually(lambda: manager.is_heard(self.snapshot), seconds=60, what="the notice arrives")
        self.machine.tmux("kill-server")
        self.assertEqual([item["sid"] for item in self.snapshot()["items"]], ["a"])


class LoginManager:
    """What tells of a shutdown, on a bus of the test's own."""

    def __init__(self, address):
        self._library = ctypes.CDLL("libsystemd.so.0")
        os.environ["DBUS_SYSTEM_BUS_ADDRESS"] = address
        self._bus = ctypes.c_void_p()
        self._check(self._library.sd_bus_open_system(ctypes.byref(self._bus)))
        self._check(self._library.sd_bus_request_name(self._bus, b"org.freedesktop.login1",
                                                      ctypes.c_uint64(0)))

    def is_heard(self, snapshot):
        """Announces a shutdown; whether snapshots are no longer written after that."""
        self._check(self._library.sd_bus_emit_signal(
            self._bus, b"/org/freedesktop/login1", b"org.freedesktop.login1.Manager",
            b"PrepareForShutdown", b"b", ctypes.c_int(1)))
        self._check(self._library.sd_bus_flush(self._bus))
        before = snapshot()["saved_at"]
        time.sleep(12)  # snapshots are due every ten seconds; none must come
        return snapshot()["saved_at"] == before

    @staticmethod
    def _check(result):
        if result < 0:
            raise OSError(-result, os.strerror(-result))


if __name__ == "__main__":
    unittest.main()
