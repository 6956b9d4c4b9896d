"""What the command does with rows: jump, next, ack, pin; and tabs that close all at once."""
import json
import time
import unittest

from display import Display
from machine import Machine, eventually

# A finished turn in the light minimal theme.
DONE = (63, 138, 74)


class ActionsTest(unittest.TestCase):
    def setUp(self):
        self.machine = Machine()
        self.addCleanup(self.machine.close)

    def rows(self):
        return {row["id"]: row for row in self.machine.list()["sessions"]}

    def test_next_jumps_to_whoever_has_waited_longest(self):
        machine = self.machine
        display = Display(machine)
        pids = {name: machine.start_claude() for name in ("early", "late", "over", "busy")}
        now = time.time()
        statuses = {"early": "waiting", "late": "waiting", "over": "idle", "busy": "busy"}
        for name, pid in pids.items():
            machine.write_session(pid, name, status=statuses[name])
        machine.write_record("early", state="waiting", updated_at=now - 60)
        machine.write_record("late", state="waiting", updated_at=now - 30)
        machine.write_record("over", state="done", done_at=now - 90)
        machine.spawn("xterm", "-T", "tabs", "-e", *machine._tmux, "attach", DISPLAY=display.name)
        eventually(lambda: machine.tmux("list-clients"), what="a client")
        machine.spawn("xterm", "-T", "other", DISPLAY=display.name)

        def front():
            window = display.output("xdotool", "getactivewindow")
            name = display.output("xdotool", "getwindowname", window)
            shown = int(machine.tmux("list-clients", "-F", "#{pane_pid}"))
            return name, [each for each, pid in pids.items() if pid == shown]

        eventually(lambda: front()[0] == "other", what="another window in front")
        for name in ("early", "late", "over"):
            machine.run("next", DISPLAY=display.name)
            self.assertEqual(front(), ("tabs", [name]))
            machine.write_record(name, state="idle") if name != "over" else None
            machine.write_session(pids[name], name)
        self.assertEqual(self.rows()["over"]["state"], "idle", "jumped to: looked at")
        self.assertEqual(machine.run("next", check=False).returncode, 1)
        machine.run("jump", "busy", DISPLAY=display.name)
        self.assertEqual(front(), ("tabs", ["busy"]))
        result = machine.run("jump", "nobody", check=False)
        self.assertEqual((result.returncode, result.stderr.count("\n")), (1, 1))

    def test_a_running_column_follows_what_the_command_does(self):
        machine = self.machine
        display = Display(machine)
        for name in ("a", "b"):
            machine.write_session(machine.start_claude(), name)
            machine.write_record(name, state="done", done_at=time.time() - 5)
        machine.run("connect")
        machine.give_characters(a=1, b=2)
        machine.start("zelvane-app", DISPLAY=display.name)
        eventually(lambda: display.count(DONE), what="two done rows")
        machine.run("ack", "a")
        machine.run("pin", "b")
        self.assertEqual({name: row["state"] for name, row in self.rows().items()},
                         {"a": "idle", "b": "done"})
        machine.run("ack", "b")
        eventually(lambda: not display.count(DONE), seconds=13, what="no row is done any more")
        saved = json.loads(machine.settings.read_text())
        self.assertEqual((saved["pinned"], sorted(saved["acked"])), (["b"], ["a", "b"]))

    def test_tabs_closed_together_are_offered_and_one_alone_is_not(self):
        machine = self.machine
        panes = {}
        for name in "abcd":
            pid = machine.start_claude()
            machine.write_session(pid, name)
            panes[name] = machine.tmux("list-panes", "-a", "-F", "#{session_name}", "-f",
                                       f"#{{==:#{{pane_pid}},{pid}}}")
        watch = machine.start("zelvane", "watch", "--json")

        def next_listing(ids):
            while True:
                listing = json.loads(watch.stdout.readline())
                if {row["id"] for row in listing["sessions"]} == ids:
                    return [item["sid"] for item in listing["recentClosed"]]

        def close(*names):
            for name in names:
                machine.tmux("kill-session", "-t", panes[name])
                for file in machine.sessions.iterdir():
                    if json.loads(file.read_text())["sessionId"] == name:
                        file.unlink()

        self.assertEqual(next_listing(set("abcd")), [])
        close("a")
        self.assertEqual(next_listing(set("bcd")), [])
        time.sleep(3.5)  # further apart than what counts as together
        close("b", "c")
        # What closed a moment before the burst belongs to it.
        self.assertEqual(sorted(next_listing({"d"})), ["a", "b", "c"])


if __name__ == "__main__":
    unittest.main()
