"""Connecting, what the hooks then leave, and disconnecting: with the command that Claude Code would run, run as
it runs it."""
import json
import subprocess
import unittest

from machine import Machine

THEIRS = {"model": "opus", "n": 12345678901234567890123,
          "hooks": {"Stop": [{"hooks": [{"type": "command", "command": "true"}]}], "Else": []}}


class ConnectTest(unittest.TestCase):
    def setUp(self):
        self.machine = Machine()
        self.addCleanup(self.machine.close)
        self.settings = self.machine.home / ".claude/settings.json"

    def hook(self, **payload):
        """Runs our hook of the event, for which the settings must have one."""
        settings = json.loads(self.settings.read_text())
        command = settings["hooks"][payload["hook_event_name"]][0]["hooks"][0]["command"]
        result = subprocess.run(["/bin/sh", "-c", command], input=json.dumps(payload), text=True,
                                env=self.machine.env, capture_output=True, timeout=10, check=True)
        self.assertEqual(result.stdout + result.stderr, "")

    def status(self):
        result = self.machine.run("status", "--json", check=False)
        told = json.loads(result.stdout)
        if told["state"] == "connected":
            self.assertGreaterEqual(told["build"], 1)
        return result.returncode, told["state"]

    def test_connect_use_disconnect(self):
        self.settings.write_text(json.dumps(THEIRS))
        self.assertEqual(self.status(), (1, "notConnected"))
        self.assertIn("연결했어요", self.machine.run("connect").stdout)
        self.assertEqual(self.status(), (0, "connected"))
        pid = self.machine.start_claude()
        self.machine.write_session(pid, "s", status="waiting")
        self.hook(session_id="s", hook_event_name="UserPromptSubmit", prompt="색을 골라 줘")
        self.hook(session_id="s", hook_event_name="PreToolUse", tool_name="AskUserQuestion",
                  tool_input={"questions": [{"question": "어떤 색?"}]})
        row = self.machine.list()["sessions"][0]
        self.assertEqual((row["state"], row["title"], row["subtitle"]),
                         ("waiting", "색을 골라 줘", "질문: 어떤 색?"))
        self.hook(session_id="s", hook_event_name="PostToolUse", tool_name="Read",
                  tool_response={"content": "x" * 5_000_000})
        self.hook(session_id="../../evil", hook_event_name="Stop")
        self.hook(session_id="s", hook_event_name="Stop")
        self.machine.write_session(pid, "s")
        self.assertEqual(self.machine.states(), {"s": "done"})
        self.assertEqual([path.name for path in self.machine.records.iterdir()], ["s.json"])
        self.assertEqual((self.machine.records / "s.json").stat().st_mode & 0o077, 0)
        self.assertIn("해제했어요", self.machine.run("disconnect").stdout)
        self.assertEqual(json.loads(self.settings.read_text()), THEIRS)
        self.assertFalse((self.machine.home / ".claude/hooks/zelvane").exists())

    def test_another_folder_of_claudes_is_pointed_out(self):
        self.assertNotIn("CLAUDE_CONFIG_DIR", self.machine.run("connect").stdout)
        usual = {"CLAUDE_CONFIG_DIR": str(self.machine.home / ".claude/")}
        self.assertNotIn("CLAUDE_CONFIG_DIR", self.machine.run("status", **usual).stdout)
        other = {"CLAUDE_CONFIG_DIR": str(self.machine.home / "other")}
        for command in ("connect", "status"):
            self.assertIn("CLAUDE_CONFIG_DIR", self.machine.run(command, **other).stdout)

    def test_refusals_say_why_and_change_nothing(self):
        self.settings.write_text('{"a":1,"a":2}')
        result = self.machine.run("connect", check=False)
        self.assertEqual(result.returncode, 1)
        self.assertIn("같은 이름의 항목이 두 번", result.stderr)
        self.assertEqual(self.settings.read_text(), '{"a":1,"a":2}')
        self.assertFalse((self.machine.home / ".claude/hooks").exists())

    def test_a_missing_helper_is_told_and_mended(self):
        self.machine.run("connect")
        (self.machine.home / ".claude/hooks/zelvane/zelvane").unlink()
        self.assertEqual(self.status(), (1, "helperMissing"))
        self.machine.run("connect")
        self.assertEqual(self.status(), (0, "connected"))


if __name__ == "__main__":
    unittest.main()
