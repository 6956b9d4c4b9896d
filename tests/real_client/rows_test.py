"""Rows of the real client: what it does shows within a second and a half of its own file."""
import json
import time
import unittest

import client
from machine import Machine


@unittest.skipIf(client.missing(), f"SKIPPED: {client.missing()}")
class RowsTest(unittest.TestCase):
    def setUp(self):
        self.machine = Machine()
        self.addCleanup(self.machine.close)
        self.watch = self.machine.start("zelvane", "watch", "--json")
        self.assertEqual(self.next_rows(), [])
        self.client = client.Client(self.machine)
        self.addCleanup(self.client.close)

    def next_rows(self):
        return json.loads(self.watch.stdout.readline())["sessions"]

    def shows(self, state, status):
        """The client reaches the status, and the row the state within a second and a half."""
        self.client.says(status)
        since = time.monotonic()
        while True:
            rows = self.next_rows()
            if rows and rows[0]["state"] == state:
                break
        elapsed = time.monotonic() - since
        print(f"{status} shows as {state} after {elapsed:.2f} s")
        self.assertLess(elapsed, 1.5)
        return rows[0]

    def test_a_life(self):
        row = self.shows("idle", "idle")
        self.assertEqual(row["cwd"], str(self.client.project))
        self.assertEqual(row["title"], "project")
        self.client.say("please do mock:slow")
        self.shows("working", "busy")
        self.shows("idle", "idle")
        told = self.machine.list()["sessions"][0]
        print(f"its transcript and tab tell: {told['model']} / {told['effort']}, {told['claudeTitle']}")
        self.assertRegex(told["model"], r"^(Opus|Sonnet|Haiku) \d")
        self.client.say("please do mock:bash")
        row = self.shows("waiting", "waiting")
        self.assertEqual(row["subtitle"], "대답을 기다려요")
        self.client.answer("Enter")
        self.shows("idle", "idle")
        self.client.say("please do mock:bgshell")
        self.client.says("shell")
        rows = self.next_rows()
        while rows[0]["subtitle"] != "뒤에서 명령 실행 중":
            rows = self.next_rows()
        self.assertEqual(rows[0]["state"], "idle", "without hooks nothing tells how old the shell is")
        self.client.press("C-c")
        self.client.press("C-c")


if __name__ == "__main__":
    unittest.main()
