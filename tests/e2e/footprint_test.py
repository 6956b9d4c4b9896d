"""What the programs touch: every file they change and every socket they open, as the kernel saw it."""
import re
import shutil
import signal
import unittest

from display import Display
from machine import PROGRAMS, Machine, eventually

CHANGING = "openat,open,creat,mkdir,mkdirat,rename,renameat,renameat2,unlink,unlinkat,rmdir," \
           "link,linkat,symlink,symlinkat,truncate,chmod,fchmodat,utimensat,mknodat,setxattr"
TRACED = f"--trace={CHANGING},socket"
# Of the system and the toolkit: the terminal, memory shared with the display, a cache of fonts.
HARMLESS = re.compile(r"/dev/(null|tty|pts/|shm/)|/proc/self/|/memfd:|/tmp/dbus|.*/\.cache/")


class Footprint:
    """What a traced program did."""

    def __init__(self, trace):
        # Of two threads' calls one interrupts the other: its end stands on a line of its own.
        begun = {}
        self.lines = []
        for line in trace.read_text(errors="replace").splitlines():
            pid = line.split(" ", 1)[0]
            if line.endswith(" <unfinished ...>"):
                begun[pid] = line.removesuffix(" <unfinished ...>")
            elif pid in begun:
                self.lines.append(begun.pop(pid) + line.partition("resumed>")[2])
            else:
                self.lines.append(line)
        self.lines += begun.values()

    def sockets(self):
        return {match[1] for line in self.lines if (match := re.search(r"socket\((\w+)", line))}

    def opened(self):
        return [match[1] for line in self.lines
                if (match := re.search(r'open(?:at)?\([^"]*"([^"]*)"', line))]

    def changed(self):
        """Paths that were opened for writing or changed otherwise; relative ones as they are."""
        paths = set()
        for line in self.lines:
            call = re.search(r"\b(\w+)\((.*)", line)
            if not call or call[1] == "socket":
                continue
            reads = call[1] in ("open", "openat") and not re.search(
                r"O_WRONLY|O_RDWR|O_CREAT|O_TRUNC", call[2])
            if not reads and not re.search(r"= -1 E(ACCES|EXIST|NOENT|ROFS)", line):
                paths.update(re.findall(r'"([^"]*)"', call[2]))
        return {path for path in paths if not HARMLESS.match(path)}


@unittest.skipUnless(shutil.which("strace"), "needs strace")
class FootprintTest(unittest.TestCase):
    def setUp(self):
        self.machine = Machine()
        self.addCleanup(self.machine.close)
        pid = self.machine.start_claude()
        self.machine.write_session(pid, "a", status="busy")
        self.key = self.machine.sessions / f"{pid}.0123abcd.key"
        self.key.write_text("secret")
        self.traces = 0

    def strace(self):
        self.traces += 1
        trace = self.machine.folder / f"trace{self.traces}"
        return trace, ("-f", "-q", "-o", trace, TRACED)

    def command(self, *words):
        trace, options = self.strace()
        self.machine.run(*options, PROGRAMS / "zelvane", *words, program=shutil.which("strace"))
        return Footprint(trace)

    def column(self):
        """A column that showed the session, followed a change, and was ended."""
        display = Display(self.machine)
        trace, options = self.strace()
        # The tracer stands aside: the signal below is for the column.
        child = self.machine.start(shutil.which("strace"), "-D", *options, PROGRAMS / "zelvane-app",
                                   DISPLAY=display.name)
        eventually(lambda: display.output("xdotool", "search", "--onlyvisible", "--class", "zelvane"),
                   what="the window appears", seconds=30)
        snapshot = self.machine.home / ".claude/zelvane/autosnap.json"
        eventually(snapshot.exists, what="a pass was made", seconds=30)
        child.send_signal(signal.SIGTERM)
        child.wait(timeout=30)
        ended = re.compile(rf"^{child.pid} +\+\+\+ exited with 0", re.MULTILINE)
        eventually(lambda: ended.search(trace.read_text(errors="replace")), what="the trace is whole")
        return Footprint(trace)

    def all(self):
        self.machine.give_characters(a=3)
        for words in (["list"], ["connect"], ["title", "1", "이름"], ["memo", "1", "메모"], ["pin", "1"],
                      ["terminals"], ["status"], ["restore", "--dry-run"], ["disconnect"]):
            yield words[0], self.command(*words)
        yield "column", self.column()

    def test_sockets_keys_and_changed_files(self):
        home = self.machine.home
        own = (home / ".claude/zelvane", home / ".config/zelvane", home / ".local/share/Zelvane")
        connection = (home / ".claude/hooks", home / ".claude/settings.json",
                      home / ".claude/.settings.json.zelvane")
        makes = {str(parent) for folder in own for parent in folder.parents}
        for name, footprint in self.all():
            with self.subTest(name):
                self.assertTrue(footprint.opened(), "the trace shows nothing")
                self.assertLessEqual(footprint.sockets(), {"AF_UNIX", "AF_NETLINK"})
                self.assertNotIn(self.key.name, " ".join(footprint.opened()))
                allowed = own + connection if name in ("connect", "disconnect") else own
                strange = {path for path in footprint.changed() - makes
                           if not path.startswith(tuple(map(str, allowed)))}
                self.assertEqual(strange, set())
        self.assertEqual(self.command("list").changed(), set())


if __name__ == "__main__":
    unittest.main()
