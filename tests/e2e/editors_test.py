"""Titles and memos edited in the column, and whom the keys belong to meanwhile."""
import json
import os
import pathlib
import unittest

from column import TEXT, WAIT, Column
from display import Display
from machine import Machine, eventually

# In a big row below the header and a band, from the window's corner.
TITLE, MEMO_BUTTON, EFFORT_BUTTON = (105, 84), (110, 121), (170, 155)
SMALL_ROW = (150, 90)
# The column's height with one row of a kind.
SMALL, BIG, WITH_EFFORT = 107, 159, 193


class EditorsTest(unittest.TestCase):
    def setUp(self):
        self.machine = Machine()
        self.addCleanup(self.machine.close)
        self.machine.run("connect")
        self.display = Display(self.machine)
        self.pictures = pathlib.Path(os.environ.get("ZELVANE_PICTURES", self.machine.folder))

    def open_column(self, status, height):
        """The column with one session, beside a terminal that has the keys."""
        machine = self.machine
        machine.give_characters(a=0)
        self.pid = machine.start_claude()
        machine.write_session(self.pid, "a", status=status)
        self.open_terminal()
        self.column = Column(machine, self.display)
        eventually(lambda: self.column.geometry()[3] >= height, what="the whole row")
        self.assertEqual(self.display.output("xdotool", "getwindowfocus"), self.terminal)

    def open_terminal(self):
        """A terminal that has the keys, with a file that gets what is typed into it."""
        self.typed = self.machine.folder / "typed"
        self.machine.spawn("xterm", "-geometry", "60x20+20+20", "-e", "sh", "-c",
                           f"stty -icanon; cat > {self.typed}", DISPLAY=self.display.name)
        self.terminal, _ = eventually(lambda: self.display.output(
            "xdotool", "search", "--onlyvisible", "--class", "xterm"), what="a terminal")
        self.display.output("xdotool", "windowfocus", "--sync", self.terminal)
        eventually(self.typed.exists, what="it takes what is typed")

    def await_keys(self, window, what):
        """Until the window has the keys, and the window manager knows."""
        eventually(lambda: self.display.output("xdotool", "getwindowfocus") == window ==
                   self.display.output("xdotool", "getactivewindow"), what=what)

    def click(self, place, button=1):
        x, y, _, _ = self.column.geometry()
        self.display.output("xdotool", "mousemove", str(x + place[0]), str(y + place[1]), "click",
                            str(button))

    def type(self, text):
        self.display.output("xdotool", "type", "--delay", "20", text)

    def key(self, *keys):
        self.display.output("xdotool", "key", *keys)

    def notes(self):
        file = self.machine.home / ".local/share/Zelvane/notes.json"
        return json.loads(file.read_text())["entries"].get("a", {}) if file.exists() else {}

    def await_note(self, field, text):
        eventually(lambda: self.notes().get(field) == text, what=f"{field} on disk is {text!r}")


    def check_terminal_has_keys(self):
        self.await_keys(self.terminal, what="the terminal has the keys again")
        self.type("x")
        eventually(lambda: self.typed.read_text() == "x", what="and gets them")

    def picture(self, name):
        self.display.picture(self.pictures / f"editors-{name}.png")

    def test_a_tap_on_a_title_renames(self):
        self.open_column("waiting", height=BIG)
        self.click(TITLE)
        self.await_keys(self.column.window, what="the editor has the keys")
        self.type("new ")
        self.machine.write_session(self.pid, "a", status="busy")  # the row would be small by now
        eventually(lambda: not self.display.count(WAIT), what="a pass shows it")
        self.type("name")
        self.picture("title")
        self.key("Return")
        self.await_note("title", "new name")
        self.check_terminal_has_keys()
        self.assertEqual(self.machine.list()["sessions"][0]["title"], "new name")

    def test_a_memo_is_saved_while_it_is_typed(self):
        self.display.give_keys("한글")
        self.open_column("waiting", height=BIG)
        self.click(MEMO_BUTTON)
        self.await_keys(self.column.window, what="the editor has the keys")
        self.type("한글")
        self.await_note("memo", "한글")
        self.key("shift+Return")
        self.type("two")
        self.await_note("memo", "한글\ntwo")
        self.picture("memo")
        self.key("Escape")
        self.check_terminal_has_keys()
        self.picture("memo-shown")
        self.assertEqual(self.notes()["memo"], "한글\ntwo")

    def test_the_menu_opens_a_small_row_and_escape_changes_nothing(self):
        self.open_column("idle", height=SMALL)
        self.click(SMALL_ROW, button=3)
        eventually(lambda: len(self.column.windows()) > 1, what="the menu opens")
        self.picture("menu")
        self.key("Down", "Down", "Down", "Return")
        self.await_keys(self.column.window, what="the editor has the keys")
        eventually(lambda: self.column.geometry()[3] > SMALL, what="the row is open")
        self.type("never")
        self.key("Escape")
        self.check_terminal_has_keys()
        self.assertEqual(self.notes(), {})

    def test_a_click_elsewhere_keeps_what_was_typed(self):
        self.open_column("waiting", height=BIG)
        self.click(TITLE)
        self.await_keys(self.column.window, what="the editor has the keys")
        self.type("kept")
        self.display.click(100, 100)  # into the terminal
        self.await_note("title", "kept")
        self.check_terminal_has_keys()

    def test_the_end_of_the_program_keeps_what_was_typed(self):
        self.open_column("waiting", height=BIG)
        self.click(TITLE)
        self.await_keys(self.column.window, what="the editor has the keys")
        self.type("kept")
        self.column.child.terminate()
        self.assertEqual(self.column.child.wait(10), 0)
        self.assertEqual(self.column.child.stderr.read(), "")
        self.await_note("title", "kept")
        self.check_terminal_has_keys()

    def test_a_suggested_effort_is_copied(self):
        transcript = self.machine.home / ".claude/projects/p/a.jsonl"
        transcript.parent.mkdir(parents=True)
        lines = [{"type": "user", "message": {"content": "go"}},
                 {"type": "assistant", "effort": "low",
                  "message": {"model": "claude-opus-4-1-20250805", "content": [
                      {"type": "text", "text": "지금 작업은 **high** 로"}]}}]
        transcript.write_text("".join(json.dumps(line) + "\n" for line in lines))
        self.open_column("waiting", height=WITH_EFFORT)
        self.picture("effort")
        offered = self.display.count(TEXT)
        self.click(EFFORT_BUTTON)
        eventually(lambda: self.display.count(TEXT) != offered, what="a note in its place")
        self.picture("copied")
        eventually(lambda: self.display.count(TEXT) == offered, seconds=6,
                   what="which goes after a while")
        self.click(TITLE)
        self.await_keys(self.column.window, what="the editor has the keys")
        self.key("ctrl+v", "Return")
        self.await_note("title", "/effort high")


if __name__ == "__main__":
    unittest.main()
