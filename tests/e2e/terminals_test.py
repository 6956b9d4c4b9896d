"""Real terminals on a real X server: titles, the tab in front, jumps, new tabs.

Terminals that are not installed are skipped, and so said. ZELVANE_TERMINAL_TIMES=1 prints how long
jumps take.
"""
import json
import os
import pathlib
import random
import shutil
import signal
import statistics
import subprocess
import time
import unittest

from display import Display
from machine import PROGRAMS, Machine, eventually

# What shells, formats and quoting make something of. Blanks are the probe's own separators.
HOSTILE_NAMES = ["한글';$(touch${IFS}pwned1)", "#(touch${IFS}pwned2)", "a#S", "a##b", "#{pane_pid}", "50%Y%d",
                 "back\\slash\\'!x", "`touch${IFS}pwned3`\"", "ends;", "ends\\;", "-x"]


class Probe:
    """The probe program: one command a line, one line of JSON back."""

    def __init__(self, machine, **environment):
        env = {name: value for name, value in os.environ.items()
               if name in ("PATH", "LANG", "HOME")}
        self._child = subprocess.Popen([PROGRAMS / "terminal-probe"], text=True,
                                       stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                       cwd=machine.folder, env={**env, **environment})
        machine._children.append(self._child)

    def ask(self, *words):
        """The answer, and the milliseconds that it took."""
        self._child.stdin.write(" ".join(map(str, words)) + "\n")
        self._child.stdin.flush()
        line = json.loads(self._child.stdout.readline())
        return line["answer"], line["ms"]

    def sessions(self, *sessions):
        self.ask("sessions", *[word for session in sessions for word in session])

    def titles(self):
        return self.ask("titles")[0]

    def front(self):
        return self.ask("front")[0]

    def jump(self, session):
        return self.ask("jump", *session)[0]

    def close(self):
        self._child.stdin.close()
        self._child.stdout.close()


class TerminalsTest(unittest.TestCase):
    def setUp(self):
        self.machine = Machine()
        self.addCleanup(self.machine.close)
        self.folder = self.machine.folder
        self._sessions = 0

    def script(self, title=None, then="exec sleep 600"):
        """A command that tells its pid and tty and stays, and the file that it tells them in."""
        self._sessions += 1
        told = self.folder / f"session{self._sessions}"
        program = self.folder / f"session{self._sessions}.sh"
        osc = f"printf '\\033]0;{title}\\007'; " if title else ""
        program.write_text(f"#!/bin/sh\n{osc}echo $$ $(tty) > {told}.new; mv {told}.new {told}; "
                           f"{then}\n", encoding="utf-8")
        program.chmod(0o755)
        return str(program), told

    def told(self, file):
        """The session that the command told of: pid and tty."""
        eventually(file.exists, seconds=20, what=f"{file.name} runs")
        pid, tty = file.read_text().split()
        return int(pid), tty

    def tmux_server(self, *arguments):
        """Runs tmux on a server of the test's own, named by the first arguments."""
        return subprocess.run(["tmux", "-u", "-f", "/dev/null", *arguments], check=True,
                              capture_output=True, text=True, cwd=self.folder,
                              env={**os.environ, "TMUX_TMPDIR": str(self.folder)}).stdout.strip()

    def times(self, probe, name, one, other, rounds=10):
        """Jumps to and fro; every one must arrive."""
        taken = []
        for _ in range(rounds):
            for session in (one, other):
                answer, ms = probe.ask("jump", *session)
                self.assertEqual(answer, {"ok": True, "reason": ""}, name)
                taken.append(ms)
        if os.environ.get("ZELVANE_TERMINAL_TIMES"):
            print(f"\n{name}: jump median {statistics.median(taken):.0f} ms, "
                  f"worst {max(taken):.0f} ms of {len(taken)}")


class TmuxAloneTest(TerminalsTest):
    """No display at all."""

    def test_titles_of_several_servers_and_a_stopped_one(self):
        probe = Probe(self.machine)
        self.addCleanup(probe.close)
        sessions, servers = [], [("-L", "one"), ("-S", str(self.folder / "two, b.sock"))]
        for server in servers:
            self.addCleanup(subprocess.run, ["tmux", *server, "kill-server"], check=False,
                            env={**os.environ, "TMUX_TMPDIR": str(self.folder)},
                            stderr=subprocess.DEVNULL)
            for title in ("✳ 고치기 a b", None):
                command, file = self.script(title)
                verb = ("new-session", "-d") if title else ("new-window",)
                self.tmux_server(*server, *verb, "env", command)
                sessions.append(self.told(file))
        # Seen twice: a grouped session repeats every pane.
        self.tmux_server(*servers[0], "new-session", "-d", "-t", "0")
        probe.sessions(*sessions)
        expected = {sessions[0][1]: "✳ 고치기 a b", sessions[2][1]: "✳ 고치기 a b"}
        self.assertEqual(probe.titles(), expected)
        self.assertIsNone(probe.front())
        answer = probe.jump(sessions[0])
        self.assertFalse(answer["ok"])
        self.assertIn("tmux -S", answer["reason"])
        server = int(self.tmux_server(*servers[0], "display", "-p", "#{pid}"))
        os.kill(server, signal.SIGSTOP)
        self.addCleanup(os.kill, server, signal.SIGCONT)
        titles, ms = probe.ask("titles")
        self.assertEqual(titles, {sessions[2][1]: "✳ 고치기 a b"})
        self.assertLess(ms, 3000)

    def test_opens_beside_a_session(self):
        probe = Probe(self.machine)
        self.addCleanup(probe.close)
        command, file = self.script()
        self.tmux_server("new-session", "-d", "env", command)
        self.addCleanup(self.tmux_server, "kill-server")
        session = self.told(file)
        for name in HOSTILE_NAMES:
            command, file = self.script()
            folder = self.folder / name
            folder.mkdir()
            self.assertTrue(probe.ask("open", *session, folder, command)[0]["ok"], name)
            pid, tty = self.told(file)
            self.assertNotEqual(tty, session[1])
            self.assertEqual(os.readlink(f"/proc/{pid}/cwd"), str(folder))
        self.assertFalse(list(self.folder.rglob("pwned*")))
        missing = probe.ask("open", *session, f"{folder}-none", command)[0]
        self.assertFalse(missing["ok"])
        self.assertIn("-none", missing["reason"])
        self.assertFalse(probe.ask("open", 0, "-", folder, command)[0]["ok"], "no display")


class WindowsTest(TerminalsTest):
    """A display with a window manager."""

    def setUp(self):
        super().setUp()
        self.display = Display(self.machine)
        self.probe = Probe(self.machine, DISPLAY=self.display.name)
        self.addCleanup(self.probe.close)

    def xterm(self, *arguments, title=None):
        command, file = self.script(title)
        self.machine.spawn("xterm", *arguments, "-e", command, DISPLAY=self.display.name)
        return self.told(file)

    def active_title(self):
        window = self.display.output("xdotool", "getactivewindow")
        return self.display.output("xdotool", "getwindowname", window) if window else ""

    def windows_are_managed(self, count):
        """The window manager knows of a new window later than the program in it runs."""
        eventually(lambda: self.display.output("xprop", "-root", "_NET_CLIENT_LIST").count("0x") == count,
                   what=f"{count} windows")

    def test_windows_of_xterm(self):
        one, other = self.xterm(title="하나 ✳"), self.xterm(title="other")
        probe, display = self.probe, self.display
        probe.sessions(one, other)
        eventually(lambda: probe.titles() == {one[1]: "하나 ✳", other[1]: "other"}, what="titles")
        for session, title in ((one, "하나 ✳"), (other, "other")):
            self.assertEqual(probe.jump(session), {"ok": True, "reason": ""})
            self.assertEqual(self.active_title(), title)
            self.assertEqual(probe.front(), session[1])
        window = display.output("xdotool", "getactivewindow")
        display.output("xdotool", "windowminimize", "--sync", window)
        eventually(lambda: self.active_title() != "other", what="it is gone")
        self.assertTrue(probe.jump(other)["ok"])
        display.output("xdotool", "set_num_desktops", "2")
        display.output("xdotool", "set_desktop_for_window", window, "1")
        eventually(lambda: self.active_title() != "other", what="it is on another desktop")
        self.assertNotEqual(probe.front(), other[1])
        self.assertTrue(probe.jump(other)["ok"])
        self.assertEqual(self.active_title(), "other")
        self.times(probe, "xterm", one, other)
        # A window of nobody's in front: none of ours is.
        self.machine.spawn("xterm", "-T", "foreign", "-e", "sleep", "600",
                           DISPLAY=display.name)
        eventually(lambda: self.active_title() == "foreign", what="the foreign window")
        self.assertIsNone(probe.front())
        # The session's process has ended, or the pid is another's now.
        self.assertFalse(probe.jump((one[0], other[1]))["ok"])

    def test_tmux_in_windows(self):
        commands = [self.script(title) for title in ("first", "second", "third")]
        self.tmux_server("new-session", "-d", "-s", "a", "env", commands[0][0])
        self.addCleanup(self.tmux_server, "kill-server")
        self.tmux_server("new-window", "-t", "a", "env", commands[1][0])
        self.tmux_server("new-session", "-d", "-s", "b", "env", commands[2][0])
        first, second, third = [self.told(file) for _, file in commands]
        for name in "ab":
            self.machine.spawn("xterm", "-T", name, "-e", "tmux", "-u", "attach", "-t", name,
                               DISPLAY=self.display.name, TMUX_TMPDIR=str(self.folder))
        eventually(lambda: len(self.tmux_server("list-clients").split("\n")) == 2, what="attached")
        self.windows_are_managed(2)
        probe = self.probe
        probe.sessions(first, second, third)
        for session in (first, third, second, first):
            self.assertEqual(probe.jump(session), {"ok": True, "reason": ""})
            self.assertEqual(probe.front(), session[1])
        self.assertEqual(self.active_title(), "a")
        self.times(probe, "tmux in xterm", second, third)
        self.assertEqual(probe.titles(),
                         {first[1]: "first", second[1]: "second", third[1]: "third"})

    def test_tmux_is_shown_where_there_is_a_window(self):
        command, file = self.script()
        self.tmux_server("new-session", "-d", "env", command)
        self.addCleanup(self.tmux_server, "kill-server")
        session = self.told(file)
        attach = {"TMUX_TMPDIR": str(self.folder), "TERM": "xterm"}
        self.machine.spawn("xterm", "-T", "local", "-e", "tmux", "-u", "attach",
                           DISPLAY=self.display.name, **attach)
        eventually(lambda: self.tmux_server("list-clients"), what="attached")
        # As over the network: a terminal without a window, and used last, which tmux counts in seconds.
        used = int(self.tmux_server("list-clients", "-F", "#{client_activity}"))
        eventually(lambda: time.time() > used + 1, what="another second")
        self.machine.spawn("setsid", "script", "-qc", "tmux -u attach", "/dev/null", **attach)
        eventually(lambda: len(self.tmux_server("list-clients").split("\n")) == 2, what="both")
        self.machine.spawn("xterm", "-T", "foreign", DISPLAY=self.display.name)
        eventually(lambda: self.active_title() == "foreign", what="the foreign window")
        self.assertEqual(self.probe.jump(session), {"ok": True, "reason": ""})
        self.assertEqual(self.active_title(), "local")

    def test_tmux_in_tmux(self):
        command, file = self.script("inner")
        self.tmux_server("-L", "in", "new-session", "-d", "env", command)
        self.addCleanup(self.tmux_server, "-L", "in", "kill-server")
        self.tmux_server("-L", "out", "new-session", "-d",
                         "env -u TMUX tmux -u -L in attach")
        self.addCleanup(self.tmux_server, "-L", "out", "kill-server")
        self.tmux_server("-L", "out", "new-window", "sleep 600")
        inner = self.told(file)
        self.machine.spawn("xterm", "-e", "tmux", "-u", "-L", "out", "attach",
                           DISPLAY=self.display.name, TMUX_TMPDIR=str(self.folder))
        eventually(lambda: self.tmux_server("-L", "out", "list-clients"), what="attached")
        self.windows_are_managed(1)
        self.machine.spawn("xterm", "-T", "foreign", DISPLAY=self.display.name)
        eventually(lambda: self.active_title() == "foreign", what="the foreign window")
        self.probe.sessions(inner)
        self.assertIsNone(self.probe.front())
        self.assertEqual(self.probe.jump(inner), {"ok": True, "reason": ""})
        self.assertEqual(self.probe.front(), inner[1])

    def program(self, name, *arguments, **environment):
        """Starts a terminal program, or skips the test where it is not installed."""
        if not shutil.which(name):
            self.skipTest(f"{name} is not installed")
        return self.machine.spawn(name, *arguments, **self.terminal_environment(), **environment)

    def terminal_environment(self):
        """A home of its own for what terminal programs keep."""
        home = self.folder / "terminal-home"
        run = self.folder / "terminal-run"
        home.mkdir(exist_ok=True)
        run.mkdir(exist_ok=True, mode=0o700)
        return {"HOME": str(home), "XDG_RUNTIME_DIR": str(run), "SHELL": "/bin/sh",
                "XDG_CONFIG_HOME": str(home / ".config"), "LIBGL_ALWAYS_SOFTWARE": "1",
                "DISPLAY": self.display.name, "LANG": "C.UTF-8", "LC_ALL": "C.UTF-8",
                "GSETTINGS_BACKEND": "keyfile", "NO_AT_BRIDGE": "1",
                "DBUS_SESSION_BUS_ADDRESS": getattr(self, "address", "unix:path=/nonexistent")}

    def bus(self, **environment):
        """A session bus of the test's own, which starts programs on the test's display."""
        if not shutil.which("dbus-daemon"):
            self.skipTest("dbus-daemon is not installed")
        read, write = os.pipe()
        daemon = subprocess.Popen(
            ["dbus-daemon", "--session", "--nofork", f"--print-address={write}"], pass_fds=[write],
            env={**os.environ, **self.terminal_environment(), **environment},
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.machine._children.append(daemon)
        os.close(write)
        with os.fdopen(read) as address:
            self.address = address.readline().strip()
        self.probe = Probe(self.machine, DISPLAY=self.display.name,
                           DBUS_SESSION_BUS_ADDRESS=self.address)
        self.addCleanup(self.probe.close)
        return daemon

    def await_titles(self, titles):
        eventually(lambda: self.probe.titles() == titles, seconds=20,
                   what=f"titles, not {self.probe.titles()}")

    def jump_about(self, name, *sessions):
        """Jumps arrive and are seen to have arrived."""
        for session in (*sessions, *reversed(sessions)):
            self.assertEqual(self.probe.jump(session), {"ok": True, "reason": ""}, session)
            eventually(lambda s=session: self.probe.front() == s[1], what=f"{session} is in front")
        self.times(self.probe, name, *sessions[:2])

    def listener(self):
        """A command that keeps what is typed at it, the file that it tells its place in, and the file of keys."""
        keys = self.folder / f"keys{self._sessions}"
        keys.touch()
        return *self.script(then=f"stty -icanon -echo; exec cat >>{keys}"), keys

    def listeners(self):
        """Sessions in every terminal that is installed, with their files of keys."""
        self.bus()
        found = []

        def seen(file, keys):
            found.append((self.told(file), keys))
            return found[-1][0]

        for _ in range(2):
            command, file, keys = self.listener()
            self.machine.spawn("xterm", "-e", command, DISPLAY=self.display.name)
            seen(file, keys)
        for name in ("kitty", "konsole"):
            if not shutil.which(name):
                print(f"{name} is not installed: left out")
                continue
            options = {"kitty": self.kitty_options(), "konsole": ["-e"]}
            command, file, keys = self.listener()
            self.program(name, *options[name], command)
            near = seen(file, keys)
            for _ in range(2):
                command, file, keys = self.listener()
                self.assertTrue(self.probe.ask("open", *near, self.folder, command)[0]["ok"])
                seen(file, keys)
        for verb in (("new-session", "-d"), ("new-window",), ("split-window",)):
            command, file, keys = self.listener()
            self.tmux_server(*verb, command)
            seen(file, keys)
        self.addCleanup(self.tmux_server, "kill-server")
        self.machine.spawn("xterm", "-e", "tmux", "-u", "attach", DISPLAY=self.display.name,
                           TMUX_TMPDIR=str(self.folder))
        eventually(lambda: self.tmux_server("list-clients"), what="attached")
        return found

    def test_a_hundred_jumps_at_random_arrive_where_the_keys_go(self):
        listeners = self.listeners()
        self.probe.sessions(*[session for session, _ in listeners])
        typed = [0] * len(listeners)
        chance = random.Random(5)
        for _ in range(100):
            chosen = chance.randrange(len(listeners))
            session, keys = listeners[chosen]
            self.assertEqual(self.probe.jump(session), {"ok": True, "reason": ""})
            self.display.output("xdotool", "key", "a")
            typed[chosen] += 1
            eventually(lambda f=keys, n=typed[chosen]: f.stat().st_size == n, what=f"a key at {session}")
            front = self.probe.front()
            self.assertIn(front, (session[1], None))
        self.assertEqual([keys.stat().st_size for _, keys in listeners], typed)

    def kitty_options(self):
        """Those of a kitty that answers."""
        return ["-o", "allow_remote_control=socket-only", "-o", "confirm_os_window_close=0", "-o",
                f"listen_on=unix:{self.folder}/kitty"]

    def test_kitty(self):
        command, file = self.script("one")
        self.program("kitty", *self.kitty_options(), command)
        one = self.told(file)
        two = self.second_tab(one, "두 번째")
        self.probe.sessions(one, two)
        self.await_titles({one[1]: "one", two[1]: "두 번째"})
        self.assertEqual(self.probe.ask("support")[0], [
            {"terminal": "kitty", "titles": True, "front": True, "jump": True, "open": True, "advice": ""}])
        three = self.xterm(title="xterm")
        self.probe.sessions(one, two, three)
        self.jump_about("kitty", one, two, three)
        self.times(self.probe, "kitty from and to xterm", one, three)

    def test_kitty_without_its_socket(self):
        command, file = self.script("one")
        self.program("kitty", "-o", "confirm_os_window_close=0", command)
        one, two = self.told(file), self.xterm(title="xterm")
        self.probe.sessions(one, two)
        self.await_titles({one[1]: "one", two[1]: "xterm"})
        self.jump_about("kitty, one tab, no socket", one, two)
        [kitty] = [each for each in self.probe.ask("support")[0] if each["terminal"] == "kitty"]
        self.assertFalse(kitty["jump"])
        self.assertIn("allow_remote_control", kitty["advice"])

    def second_tab(self, near, title):
        """Opens a tab beside the session in a folder with a hostile name."""
        command, file = self.script(title)
        folder = self.folder / "한글';$(x)"
        folder.mkdir(exist_ok=True)
        self.assertEqual(self.probe.ask("open", *near, folder, command)[0],
                         {"ok": True, "reason": ""})
        session = self.told(file)
        self.assertEqual(os.readlink(f"/proc/{session[0]}/cwd"), str(folder))
        return session

    def windows_of(self, name):
        return len(self.display.output("xdotool", "search", "--onlyvisible", "--class",
                                       name).split())

    def test_konsole(self):
        daemon = self.bus()
        command, file = self.script("one")
        konsole = self.program("konsole", "-p", "LocalTabTitleFormat=%w",
                               "-e", command)
        one = self.told(file)
        two = self.second_tab(one, "두 번째")
        three = self.xterm(title="xterm")
        self.probe.sessions(one, two, three)
        # The second tab has the usual profile, which names tabs after folders and programs.
        self.await_titles({one[1]: "one", three[1]: "xterm"})
        advices = [each["advice"] for each in self.probe.ask("support")[0]
                   if each["terminal"] == "Konsole"]
        self.assertEqual([bool(advice) for advice in advices], [False, True])
        self.jump_about("Konsole", one, two, three)
        self.times(self.probe, "Konsole from and to xterm", one, three)
        # One that hangs costs its time limit, and nothing of the others' answers.
        os.kill(konsole.pid, signal.SIGSTOP)
        titles, ms = self.probe.ask("titles")
        self.assertEqual(titles, {three[1]: "xterm"})
        self.assertLess(ms, 1500)
        answer, ms = self.probe.ask("jump", *one)
        self.assertLess(ms, 1500)
        answer, ms = self.probe.ask("jump-during-titles", *three)
        self.assertTrue(answer["ok"])
        self.assertLess(answer["ms"], 400, "a click waited for a question")
        self.assertGreater(ms, 700, "the question did wait")
        os.kill(konsole.pid, signal.SIGCONT)
        eventually(lambda: self.probe.jump(one)["ok"], what="it answers again")
        daemon.kill()
        daemon.wait()
        self.assertEqual(self.probe.titles()[three[1]], "xterm")

    def gnome_terminal(self, integration):
        if not shutil.which("gnome-terminal"):
            self.skipTest("gnome-terminal is not installed")
        self.bus()
        if integration:
            subprocess.run(["gsettings", "set", "org.gnome.Terminal.Legacy.Settings",
                            "shell-integration-enabled", "true"], check=True,
                           env={**os.environ, **self.terminal_environment()})
        command, file = self.script("one")
        self.program("gnome-terminal", "--", command)
        return self.told(file)

    def test_gnome_terminal(self):
        one = self.gnome_terminal(integration=True)
        two = self.second_tab(one, "두 번째")
        three = self.xterm(title="xterm")
        self.probe.sessions(one, two, three)
        self.await_titles({one[1]: "one", two[1]: "두 번째", three[1]: "xterm"})
        self.assertEqual(self.windows_of("gnome-terminal"), 1)
        self.jump_about("GNOME Terminal", one, two, three)
        self.times(self.probe, "GNOME Terminal from and to xterm", one, three)

    def test_gnome_terminal_as_it_comes(self):
        one, two = self.gnome_terminal(integration=False), self.xterm(title="xterm")
        self.probe.sessions(one, two)
        self.await_titles({one[1]: "one", two[1]: "xterm"})
        self.jump_about("GNOME Terminal, one tab, as it comes", one, two)
        three = self.second_tab(one, "three")
        self.probe.sessions(one, two, three)
        self.await_titles({two[1]: "xterm"})
        self.assertTrue(self.probe.jump(two)["ok"])
        answer = self.probe.jump(one)
        self.assertFalse(answer["ok"])
        self.assertIn("shell-integration-enabled", answer["reason"])
        self.assertIsNone(self.probe.front())
        self.assertNotEqual(self.active_title(), "xterm")

    def test_tilix(self):
        self.bus()
        command, file, one_keys = self.listener()
        self.program("tilix", "-e", command)
        one = self.told(file)
        eventually(lambda: self.windows_of("tilix"), what="its window")
        three = self.xterm(title="xterm")
        self.probe.sessions(one, three)
        self.await_titles({three[1]: "xterm"})  # its own window is not called like the tab
        command, file, two_keys = self.listener()
        self.assertTrue(self.probe.ask("open", *one, self.folder, command)[0]["ok"])
        two = self.told(file)
        self.probe.sessions(one, two, three)
        for session, keys in ((one, one_keys), (three, None), (two, two_keys), (one, one_keys)):
            self.assertEqual(self.probe.jump(session), {"ok": True, "reason": ""})
            if keys:
                before = keys.stat().st_size
                self.display.output("xdotool", "key", "a")
                eventually(lambda f=keys, n=before: f.stat().st_size == n + 1,
                           what=f"a key at {session}")
        self.times(self.probe, "Tilix from and to xterm", one, three)

    def test_names_of_folders_are_only_names(self):
        self.bus()
        for name, options in (("kitty", self.kitty_options()), ("konsole", ["-e"]),
                              ("gnome-terminal", ["--"]), ("tilix", ["-e"])):
            if not shutil.which(name):
                print(f"{name} is not installed: left out")
                continue
            command, file = self.script()
            self.program(name, *options, command)
            near = self.told(file)
            for hostile in HOSTILE_NAMES:
                with self.subTest(terminal=name, folder=hostile):
                    folder = self.folder / hostile
                    folder.mkdir(exist_ok=True)
                    command, file = self.script()
                    self.assertTrue(self.probe.ask("open", *near, folder, command)[0]["ok"])
                    self.assertEqual(os.readlink(f"/proc/{self.told(file)[0]}/cwd"), str(folder))
        self.assertFalse(list(self.folder.rglob("pwned*")))

    def test_nothing_is_started_by_asking(self):
        self.bus()
        one = self.xterm(title="one")
        self.probe.sessions(one)
        self.await_titles({one[1]: "one"})
        self.probe.ask("support")
        self.probe.jump(one)
        self.assertEqual(self.windows_of("."), self.windows_of("xterm"))

    def test_opens_windows_where_there_are_no_tabs(self):
        for name in ("xterm", "alacritty"):
            with self.subTest(name):
                if not shutil.which(name):
                    self.skipTest(f"{name} is not installed")
                command, file = self.script("one")
                self.program(name, "-e", command)
                one = self.told(file)
                two = self.second_tab(one, "두 번째")
                self.probe.sessions(one, two)
                self.await_titles({one[1]: "one", two[1]: "두 번째"})
                self.jump_about(name, one, two)
                self.assertEqual(self.probe.ask("support")[0], [
                    {"terminal": name, "titles": True, "front": True, "jump": True, "open": True,
                     "advice": ""}])

    def test_opens_somewhere_without_any_session(self):
        command, file = self.script("one")
        answer, _ = self.probe.ask("open", 0, "-", self.folder, command)
        self.assertTrue(answer["ok"], answer)
        self.told(file)

    def test_the_display_hangs(self):
        one = self.xterm(title="one")
        known, unknown = self.probe, Probe(self.machine, DISPLAY=self.display.name)
        self.addCleanup(unknown.close)
        for probe in (known, unknown):
            probe.sessions(one)
        eventually(lambda: known.titles() == {one[1]: "one"}, what="the title")
        server = next(child for child in self.machine._children if "Xvfb" in child.args)
        server.send_signal(signal.SIGSTOP)
        self.addCleanup(server.send_signal, signal.SIGCONT)
        for probe in (known, unknown):
            for limit in (1500, 300):
                titles, ms = probe.ask("titles")
                self.assertEqual(titles, {})
                self.assertLess(ms, limit, "it is waited for once")
            answer, ms = probe.ask("jump", *one)
            self.assertFalse(answer["ok"])
            self.assertLess(ms, 1500)
        server.send_signal(signal.SIGCONT)
        for probe in (known, unknown):
            eventually(lambda p=probe: p.jump(one)["ok"], what="it answers again")

    def test_the_display_goes_away(self):
        one = self.xterm(title="one")
        self.probe.sessions(one)
        eventually(lambda: self.probe.titles() == {one[1]: "one"}, what="the title")
        server = next(child for child in self.machine._children if "Xvfb" in child.args)
        server.kill()
        server.wait()
        self.assertEqual(self.probe.titles(), {})
        self.assertIsNone(self.probe.front())
        self.assertFalse(self.probe.jump(one)["ok"])


class SwayTest(TerminalsTest):
    """A Wayland desktop that lets others see and raise windows."""

    def setUp(self):
        super().setUp()
        for program in ("sway", "foot", "setpriv"):
            if not shutil.which(program):
                self.skipTest(f"{program} is not installed")
        self.folder.chmod(0o777)
        self.home = self.folder / "sway-home"
        # sway refuses to be root's.
        self.nobody = ([] if os.getuid() else
                       ["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"])
        self.home.mkdir()
        self.home.chmod(0o700)
        if not os.getuid():
            os.chown(self.home, 65534, 65534)
        self.env = {"HOME": str(self.home), "XDG_RUNTIME_DIR": str(self.home), "LANG": "C.UTF-8",
                    "WLR_BACKENDS": "headless", "WLR_RENDERER": "pixman",
                    "WLR_LIBINPUT_NO_DEVICES": "1", "SWAYSOCK": str(self.home / "sway.sock"),
                    "LIBGL_ALWAYS_SOFTWARE": "1", "SHELL": "/bin/sh"}
        config = self.folder / "sway.conf"
        config.write_text("xwayland disable\n")
        self.spawn("sway", "-c", str(config))
        eventually(lambda: list(self.home.glob("wayland-*")), what="sway runs")
        self.env["WAYLAND_DISPLAY"] = next(file.name for file in self.home.glob("wayland-*")
                                           if not file.name.endswith(".lock"))
        eventually(lambda: (self.home / "sway.sock").exists(), what="its socket")
        self.probe = Probe(self.machine, SWAYSOCK=self.env["SWAYSOCK"])
        self.addCleanup(self.probe.close)

    def spawn(self, *command):
        return self.machine.spawn(*self.nobody, *command, **self.env)

    def session(self, title, *terminal):
        command, file = self.script(title)
        self.spawn(*terminal, command)
        return self.told(file)

    def test_windows_of_foot(self):
        one, two = self.session("one", "foot"), self.session("두 번째", "foot")
        self.probe.sessions(one, two)
        eventually(lambda: self.probe.titles() == {one[1]: "one", two[1]: "두 번째"}, what="titles")
        for session in (one, two, one):
            self.assertEqual(self.probe.jump(session), {"ok": True, "reason": ""})
            self.assertEqual(self.probe.front(), session[1])
        self.times(self.probe, "foot under sway", one, two)

    def test_kitty_with_two_windows(self):
        if not shutil.which("kitty"):
            self.skipTest("kitty is not installed")
        one = self.session("one", "kitty", "-o", "allow_remote_control=socket-only", "-o",
                           f"listen_on=unix:{self.home}/kitty", "-o", "linux_display_server=wayland")
        two = self.session("two", "foot")
        command, file = self.script("three")
        self.assertTrue(self.probe.ask("open", *one, self.folder, command)[0]["ok"])
        three = self.told(file)
        self.probe.sessions(one, two, three)
        for session in (one, two, three, one):
            self.assertEqual(self.probe.jump(session), {"ok": True, "reason": ""})
            eventually(lambda s=session: self.probe.front() == s[1], what=f"{session} is in front")
        self.times(self.probe, "kitty and foot under sway", two, three)


if __name__ == "__main__":
    unittest.main()
