"""The whole story with the real client: connected, every turn of a session shows in its row within a second
and a half of the client's own change, whether a hook tells of it or not."""
import json
import os
import select
import time
import unittest

import client
from machine import Machine, eventually


@unittest.skipIf(client.missing(), f"SKIPPED: {client.missing()}")
class HooksTest(unittest.TestCase):
    def setUp(self):
        self.machine = Machine()
        self.addCleanup(self.machine.close)
        self.settings = self.machine.home / ".claude/settings.json"
        self.before = {"model": "opus", "hooks": {"Stop": [{"hooks": [
            {"type": "command", "command": "true", "timeout": 5}]}]}}
        self.settings.write_text(json.dumps(self.before))
        self.connect()
        # What writes: it keeps the records true, and carries title and memo along.
        self.machine.start("zelvane-app", QT_QPA_PLATFORM="offscreen")
        self.watch = self.machine.start("zelvane", "watch", "--json")
        self.rows = None
        self.buffer = b""
        self.next_rows(10)

    def connect(self):
        self.machine.run("connect")
        self.assertEqual(json.loads(self.machine.run("status", "--json").stdout)["state"], "connected")

    def start_client(self, **settings):
        self.client = client.Client(self.machine, **settings)
        self.addCleanup(self.client.close)

    def next_rows(self, seconds):
        """Reads what the watch prints within the seconds; true when something came."""
        descriptor = self.watch.stdout.fileno()
        if select.select([descriptor], [], [], seconds)[0]:
            self.buffer += os.read(descriptor, 1 << 20)
        *lines, self.buffer = self.buffer.split(b"\n")
        if lines:
            self.rows = json.loads(lines[-1])["sessions"]
        return bool(lines)

    def row(self):
        return self.rows[0] if self.rows else {}

    def shows(self, what, seconds=1.5, **wanted):
        """The row takes the wanted values within the seconds."""
        start = time.monotonic()
        while any(self.row().get(key) != value for key, value in wanted.items()):
            left = start + seconds - time.monotonic()
            if left <= 0:
                self.fail(f"{what}: after {seconds} s the row is {self.row()}, not {wanted};\n"
                          f"record {self.record()}\nfile {self.client.file()}\n{self.client.screen()}")
            self.next_rows(left)
        print(f"{what}: after {time.monotonic() - start:.2f} s")
        return self.row()

    def record(self):
        path = self.machine.records / f"{self.client.file().get('sessionId')}.json"
        return json.loads(path.read_text()) if path.exists() else None

    def recorded(self, **wanted):
        """Waits until the record has the values."""
        def fits():
            record = self.record() or {}
            return all(record.get(key) == value for key, value in wanted.items())
        eventually(fits, 20, f"the record says {wanted}, not {self.record()}")

    def turn(self, prompt):
        """A prompt whose turn ends by itself."""
        self.client.say(prompt)
        self.client.says("busy")
        self.client.says("idle", 30)

    def test_turns_and_dialogs(self):
        self.start_client()
        self.client.says("idle")
        self.shows("started", state="idle")
        self.client.say("please do mock:slow")
        self.client.says("busy")
        self.shows("prompt", state="working", title="please do mock:slow")
        self.client.says("idle")
        self.shows("turn over", state="done")
        # Its transcript was looked at before there was an answer, and is again half a minute later.
        self.shows("its model", 45, model="Opus 5.5", effort="medium")
        # A permission, given.
        self.client.say("please do mock:bash")
        self.client.says("waiting")
        self.shows("permission asked", state="waiting")
        self.recorded(state="waiting")
        self.shows("its reason", state="waiting", subtitle="허락을 기다려요")
        self.client.answer("Enter")
        self.client.says("idle")
        self.shows("permission given", state="done")
        # Esc at the dialog.
        self.client.say("please do mock:bash2")
        self.client.says("waiting")
        self.recorded(state="waiting")
        self.shows("second permission", state="waiting", subtitle="허락을 기다려요")
        self.client.answer("Escape")
        self.client.says("idle")
        self.shows("dismissed", state="idle")
        self.recorded(state="idle")
        # A long command, approved.
        self.client.say("please do mock:bashlong")
        self.client.says("waiting")
        self.recorded(state="waiting")
        self.client.answer("Enter")
        self.client.says("busy")
        self.shows("long command approved", state="working")
        self.recorded(state="working")
        # Esc in the running turn.
        self.client.press("Escape")
        self.client.says("idle")
        self.shows("interrupted", state="idle")
        self.recorded(state="idle")
        # A question.
        self.client.say("please do mock:ask")
        self.client.says("waiting")
        self.shows("question", state="waiting", subtitle="질문: Which colour should it be?")
        self.client.answer("Enter")
        self.client.says("idle")
        self.shows("answered", state="done")
        # An error of the API ends the turn without a hook.
        self.client.say("please do mock:overload")
        self.client.says("busy")
        self.client.says("idle")
        self.shows("failed call", state="idle")

    def test_background_work_and_the_end(self):
        self.start_client()
        self.client.says("idle")
        self.turn_to("please do mock:bgshell", "shell")
        self.shows("background shell", state="agents")
        self.assertEqual(self.record()["bg_shell_desc"], "Sleep in the background")
        self.client.says("idle", 40)
        self.client.says("idle", 40)
        self.recorded(bg_shells=0, state="done", prompt="please do mock:bgshell")
        self.shows("shell ended", 3, state="done", title="please do mock:bgshell")
        self.client.say("please do mock:bgagent")
        self.recorded(bg_agents=1)
        self.recorded(bg_agents=0, state="done")
        # A new conversation in the same tab takes title and memo along.
        old = self.client.file()["sessionId"]
        self.machine.run("title", old, "내 탭")
        self.machine.run("memo", old, "잊지 말 것")
        self.shows("title", 3, title="내 탭")
        self.client.say("/clear")
        eventually(lambda: self.client.file().get("sessionId", old) != old, 20, "the new session")
        eventually(lambda: (self.record() or {}).get("source") == "clear", 20, "the new record")
        def carried():
            row = self.machine.list()["sessions"][0]
            return (row["id"], row["title"], row["memo"]) == (self.client.file()["sessionId"], "내 탭", "잊지 말 것")
        print(f"carried: after {eventually(carried, 3, 'title and memo move')[1]:.2f} s")
        self.client.press("C-c")
        self.client.press("C-c")
        eventually(lambda: not self.client.file(), 20, "the client is gone")
        start = time.monotonic()
        while self.rows and time.monotonic() - start < 1.5:
            self.next_rows(0.5)
        self.assertEqual(self.rows, [])
        eventually(lambda: json.loads((self.machine.records / f"{old}.json").read_text())["state"] == "ended",
                   10, "the first session's record is closed")
        self.machine.run("disconnect")
        after = json.loads(self.settings.read_text())
        self.assertEqual(after, self.before)
        self.assertFalse((self.machine.home / ".claude/hooks/zelvane").exists())

    def turn_to(self, prompt, status):
        self.client.say(prompt)
        self.client.says(status, 30)

    def test_todos(self):
        self.start_client(CLAUDE_CODE_ENABLE_TODO_TOOLS="1")
        self.client.says("idle")
        self.client.say("please do mock:tasks")
        self.recorded(state="done")
        todos = self.record()["todos"]
        self.assertEqual((todos["done"], todos["total"]), (1, 2), todos)


if __name__ == "__main__":
    unittest.main()
