"""The command on real processes and real files."""
import json
import os
import pty
import shutil
import subprocess
import time
import unittest

from machine import PROGRAMS, Machine, eventually


class ListTest(unittest.TestCase):
    def setUp(self):
        self.machine = Machine()
        self.addCleanup(self.machine.close)

    def test_three_sessions_with_their_states(self):
        machine = self.machine
        pids = [machine.start_claude() for _ in range(3)]
        for pid, session, status in zip(pids, "abc", ("busy", "waiting", "idle")):
            machine.write_session(pid, session, status=status)
        machine.write_record("a", prompt="사진 올리기", working_since=time.time() - 75 * 60,
                             todos={"done": 3, "total": 7, "current": "캐시 확인 중"})
        machine.write_record("c", state="done", done_at=time.time() - 1, prompt="문구 정리")
        shown = machine.list()
        self.assertEqual(shown["v"], 1)
        self.assertLess(abs(shown["at"] - time.time()), 5)
        self.assertEqual([(row["id"], row["state"], row["subtitle"]) for row in shown["sessions"]],
                         [("b", "waiting", "대답을 기다려요"), ("a", "working", "캐시 확인 중"),
                          ("c", "done", "proj")])
        working = shown["sessions"][1]
        self.assertEqual((working["pid"], working["progress"]), (pids[0], {"done": 3, "total": 7}))
        self.assertEqual(working["tty"], os.readlink(f"/proc/{pids[0]}/fd/0"))
        self.assertIn("1시간째", machine.run("list").stdout)

        machine.tmux("kill-session", "-t", "0")
        eventually(lambda: set(machine.states()) == {"b", "c"}, what="the killed one is gone")

    def test_bad_files_leave_the_others_alone(self):
        machine = self.machine
        machine.write_session(machine.start_claude(), "good", status="busy")
        pid = machine.start_claude()
        samples = {
            "empty": b"", "cut-in-half": b'{"pid":', "not-utf8": b'{"pid":%d,"sessionId":"\xff"}' % pid,
            "deep": b"[" * 100_000, "deep-object": b'{"a":' * 100_000 + b"1" + b"}" * 100_000,
            "a-path": b'{"pid":%d,"sessionId":"../../x"}' % pid, "list": b"[]",
            "huge-number": b'{"pid":1e400,"sessionId":"n"}', "nul": b"\0" * 4096,
        }
        for name, content in samples.items():
            (machine.sessions / f"{name}.json").write_bytes(content)
        with open(machine.sessions / "huge.json", "wb") as file:
            file.write(b'{"pid":%d,"sessionId":"huge","x":"' % pid)
            file.truncate(100 << 20)
        os.mkfifo(machine.sessions / "pipe.json")
        (machine.sessions / "secret.key").symlink_to("/dev/zero")
        for number in range(40):  # each as large as a file may be, and dense
            dense = ",".join(['{"":0}'] * 9000)
            (machine.sessions / f"dense-{number}.json").write_text(
                f'{{"pid":{pid},"sessionId":"n","kind":"none","a":[{dense}]}}')
        # Far less address space than one of the hostile files would take if it were read.
        result = machine.run("list", "--json", limit=220 << 20)
        self.assertEqual([row["id"] for row in json.loads(result.stdout)["sessions"]], ["good"])

    def test_models_come_from_the_ends_of_transcripts(self):
        machine = self.machine
        projects = machine.home / ".claude/projects/-home-me-proj"
        projects.mkdir(parents=True)
        answer = {"message": {"model": "claude-opus-4-1-20250805", "content": [
            {"type": "text", "text": "지금 작업은 **HIGH** 로 충분해요."}]},
            "type": "assistant", "effort": "max"}
        line = json.dumps(answer, ensure_ascii=False).encode() + b"\n"
        for session in ("found", "told", "pipe", "device", "one-line"):
            machine.write_session(machine.start_claude(), session, status="idle")
        with open(projects / "found.jsonl", "wb") as file:
            file.truncate(3 << 30)
            file.seek(0, os.SEEK_END)
            file.write(b"\n" + line + b'{"type":"attachment","x":"' + b"." * 80_000 + b'"}\n')
        (machine.home / "elsewhere.jsonl").write_bytes(line)
        machine.write_record("told", transcript_path=str(machine.home / "elsewhere.jsonl"))
        os.mkfifo(projects / "pipe.jsonl")
        machine.write_record("device", transcript_path="/dev/zero")
        with open(projects / "one-line.jsonl", "wb") as file:
            file.write(b'{"x":"')
            file.truncate(200 << 20)
        rows = json.loads(machine.run("list", "--json", limit=220 << 20).stdout)["sessions"]
        told = {row["id"]: (row["model"], row["effort"], row["suggestedEffort"]) for row in rows}
        known, unknown = ("Opus 4.1", "max", "high"), ("", "", "")
        self.assertEqual(told, {"found": known, "told": known, "pipe": unknown, "device": unknown,
                                "one-line": unknown})
        self.assertEqual(len({row["friend"] for row in rows}), 5)

    def test_list_writes_nothing(self):
        machine = self.machine
        machine.write_session(machine.start_claude(), "a")
        def everything():
            return {path: path.lstat().st_mtime_ns for path in machine.home.rglob("*")}

        before = everything()
        machine.run("list")
        machine.run("list", "--json")
        self.assertEqual(everything(), before)

    def test_watch_shows_a_rewritten_file_within_a_second_and_a_half(self):
        machine = self.machine
        machine.sessions.rmdir()
        watch = machine.start("zelvane", "watch", "--json")
        self.assertEqual(json.loads(watch.stdout.readline())["sessions"], [])
        pid = machine.start_claude()
        machine.sessions.mkdir()
        start = time.monotonic()
        machine.write_session(pid, "a", status="busy")
        for state, status in (("working", None), ("waiting", "waiting"), ("idle", "idle")):
            if status:
                start = time.monotonic()
                machine.write_session(pid, "a", status=status)
            row = json.loads(watch.stdout.readline())["sessions"][0]
            self.assertEqual(row["state"], state)
            self.assertLess(time.monotonic() - start, 1.5, state)

    def test_titles_and_memos(self):
        machine = self.machine
        for session in ("alpha", "beta"):
            machine.write_session(machine.start_claude(), session)
        machine.run("title", "al", "내 이름")
        machine.run("memo", "alpha", "첫 줄\n둘째 줄")
        row = next(row for row in machine.list()["sessions"] if row["id"] == "alpha")
        self.assertEqual((row["title"], row["renamed"], row["memo"]),
                         ("내 이름", True, "첫 줄\n둘째 줄"))
        self.assertEqual(machine.run("memo", "alpha").stdout, "첫 줄\n둘째 줄\n")
        machine.run("memo", "alpha", "")
        machine.run("title", "alpha", row["claudeTitle"])
        removed = (machine.home / ".local/share/Zelvane/removed-notes.jsonl").read_text()
        self.assertEqual([set(json.loads(line)) - {"sid", "at"} for line in removed.splitlines()],
                         [{"memo"}, {"title"}])
        self.assertEqual(machine.run("title", "alpha").stdout, "")
        self.assertEqual(machine.run("memo", "gamma", "x", check=False).returncode, 1)

    def test_damaged_notes_are_told_by_every_command(self):
        machine = self.machine
        machine.write_session(machine.start_claude(), "a")
        notes = machine.home / ".local/share/Zelvane"
        good = '{"v":1,"entries":{"a":{"memo":"backup-word","updated":1.0}}}'
        for backup in (good, "{"):
            shutil.rmtree(notes, ignore_errors=True)
            notes.mkdir(parents=True)
            (notes / "notes.json").write_text('{"v":1,"entries":{"a":{"memo":5}}}')
            (notes / "notes.bak.json").write_text(backup)
            listed = machine.run("list", "--json")
            self.assertIn("메모 파일을 읽지 못", json.loads(listed.stdout)["notesProblem"])
            self.assertIn("메모 파일을 읽지 못", listed.stderr)
            self.assertIn("메모 파일을 읽지 못", machine.run("list").stderr)
            shown = machine.run("memo", "a", check=False)
            self.assertEqual((shown.returncode, shown.stdout),
                             (1, "backup-word\n" if backup == good else ""))
            self.assertIn("메모 파일을 읽지 못", shown.stderr)
            changed = machine.run("memo", "a", "new-word", check=False)
            self.assertEqual(changed.returncode, 0 if backup == good else 1)
            self.assertIn("메모 파일", changed.stderr)
        self.assertEqual((notes / "notes.bak.json").read_text(), "{")

    def test_a_memo_that_cannot_be_saved_or_read_changes_nothing(self):
        machine = self.machine
        machine.write_session(machine.start_claude(), "a")
        machine.run("memo", "a", "old-word")
        notes = machine.home / ".local/share/Zelvane"

        def everything():
            return {path.name: path.read_bytes() for path in notes.iterdir() if path.is_file()}

        before = everything()
        for unreadable in ("</", "<&-", "0>/dev/null"):
            result = machine.run("-c", f'exec "$0" memo a - {unreadable}', PROGRAMS / "zelvane",
                                 program="/bin/sh", check=False)
            self.assertEqual((result.returncode, everything()), (1, before), unreadable)
            self.assertIn("표준 입력을 읽지 못해서", result.stderr)
        (notes / "notes.bak.json").mkdir()
        failed = machine.run("memo", "a", "new-word", check=False)
        self.assertEqual((failed.returncode, everything()), (1, before))
        self.assertIn("저장하지 못했어요", failed.stderr)
        self.assertNotIn("5초", failed.stderr)
        (notes / "notes.bak.json").rmdir()
        machine.run("memo", "a", "new-word")
        self.assertIn("old-word", (notes / "removed-notes.jsonl").read_text())

    def test_a_memo_does_not_steer_the_terminal(self):
        machine = self.machine
        machine.write_session(machine.start_claude(), "a")
        memo = "\x1b]0;evil\x07\n  red\x1b[31m"
        machine.run("memo", "a", memo)
        self.assertEqual(machine.run("memo", "a").stdout, memo + "\n")
        terminal, its_other_end = pty.openpty()
        self.addCleanup(os.close, terminal)
        subprocess.run([PROGRAMS / "zelvane", "memo", "a"], env=machine.env, stdout=its_other_end,
                       check=True, timeout=60)
        os.close(its_other_end)
        self.assertEqual(os.read(terminal, 1000), b"]0;evil\r\n  red [31m\r\n")

    def test_wrong_use_is_told_on_standard_error(self):
        wrong = self.machine.run("nonsense", check=False)
        self.assertEqual(wrong.returncode, 2)
        self.assertEqual(wrong.stdout, "")
        self.assertTrue(wrong.stderr)
        self.assertIn("0.1.0", self.machine.run("--version").stdout)


if __name__ == "__main__":
    unittest.main()
