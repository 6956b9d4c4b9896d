"""A scratch machine for end-to-end tests: a home of its own, real processes on real terminals, and a
real X server with a window manager. Nothing of the user who runs the tests is touched."""
import json
import os
import pathlib
import resource
import shutil
import subprocess
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAMS = pathlib.Path(os.environ.get("ZELVANE_PROGRAMS", ROOT / "build/release/bin"))


def eventually(condition, seconds=10.0, what="condition"):
    """The condition's first true result, and how long it took; fails after the limit."""
    start = time.monotonic()
    while True:
        result = condition()
        elapsed = time.monotonic() - start
        if result:
            return result, elapsed
        if elapsed > seconds:
            raise AssertionError(f"{what}: not within {seconds} s")
        time.sleep(0.02)


class Machine:
    """A home folder that the user database names, a tmux server, and Claude's session files."""

    def __init__(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="zelvane-e2e-"))
        self.home = self.folder / "home"
        self.sessions = self.home / ".claude/sessions"
        self.records = self.home / ".claude/zelvane/sessions"
        self.sessions.mkdir(parents=True)
        self.settings = self.home / ".config/zelvane/settings.json"
        self.claude = self.folder / "bin/claude"
        self.claude.parent.mkdir()
        shutil.copy(shutil.which("sleep"), self.claude)
        passwd = self.folder / "passwd"
        passwd.write_text(f"tester:x:{os.getuid()}:{os.getgid()}::{self.home}:/bin/sh\n")
        group = self.folder / "group"
        group.write_text(f"tester:x:{os.getgid()}:\n")
        runtime = self.folder / "run"
        runtime.mkdir(mode=0o700)
        kept = {name: os.environ[name] for name in ("PATH", "LANG") if name in os.environ}
        self.env = {
            **kept,
            "HOME": str(self.home),
            "XDG_RUNTIME_DIR": str(runtime),
            "LD_PRELOAD": "libnss_wrapper.so",
            "NSS_WRAPPER_PASSWD": str(passwd),
            "NSS_WRAPPER_GROUP": str(group),
        }
        self._tmux = ["tmux", "-S", str(self.folder / "tmux.sock"), "-f", "/dev/null"]
        self._panes = {}
        self._children = []

    def close(self):
        for child in self._children:
            child.kill()
            child.wait()
            for stream in (child.stdout, child.stderr):
                if stream:
                    stream.close()
        subprocess.run([*self._tmux, "kill-server"], stderr=subprocess.DEVNULL, check=False)
        shutil.rmtree(self.folder, ignore_errors=True)

    def tmux(self, *arguments):
        return subprocess.run([*self._tmux, *arguments], check=True, capture_output=True,
                              text=True).stdout.strip()

    def start_claude(self):
        """Starts a process named claude on a terminal of its own; its pid."""
        pid = int(self.tmux("new-session", "-d", "-P", "-F", "#{pane_pid}", "-x", "100", "-y", "20",
                            f"exec {self.claude} 600"))
        eventually(lambda: pathlib.Path(f"/proc/{pid}/comm").read_text() == "claude\n",
                   what="the process is named claude")
        return pid

    def write_session(self, pid, session_id, **fields):
        """Writes a session file as the client does: in place, the same inode."""
        content = {"pid": pid, "sessionId": session_id, "cwd": str(self.home / "proj"),
                   "kind": "interactive", "entrypoint": "cli", "status": "idle",
                   "updatedAt": int(time.time() * 1000), **fields}
        with open(self.sessions / f"{pid}.json", "w", encoding="utf-8") as file:
            file.write(json.dumps(content, ensure_ascii=False))

    def write_record(self, session_id, **fields):
        """Writes a hook record as the helper does: beside it, then renamed over."""
        self.records.mkdir(parents=True, exist_ok=True)
        temporary = self.records / f".{session_id}.tmp"
        temporary.write_text(json.dumps(fields, ensure_ascii=False), encoding="utf-8")
        temporary.rename(self.records / f"{session_id}.json")

    def give_characters(self, **characters):
        """Which character each session has; colours of its tile may be those that a test counts."""
        self.settings.parent.mkdir(parents=True, exist_ok=True)
        self.settings.write_text(json.dumps(
            {"friendOf": characters, "friendSeen": dict.fromkeys(characters, time.time())}))

    def run(self, *arguments, program="zelvane", check=True, limit=None, **environment):
        """Runs a program of ours to its end, with at most `limit` bytes of address space."""
        def set_limit():
            resource.setrlimit(resource.RLIMIT_AS, (limit, limit))

        return subprocess.run([PROGRAMS / program, *arguments], env={**self.env, **environment},
                              check=check, capture_output=True, text=True, timeout=60,
                              preexec_fn=set_limit if limit else None)

    def list(self):
        return json.loads(self.run("list", "--json").stdout)

    def states(self):
        return {row["id"]: row["state"] for row in self.list()["sessions"]}

    def start(self, program, *arguments, **environment):
        """Starts a program of ours in the background; ended with the machine."""
        child = subprocess.Popen([PROGRAMS / program, *arguments],
                                 env={**self.env, **environment}, stdout=subprocess.PIPE,
                                 stderr=subprocess.PIPE, text=True)
        self._children.append(child)
        return child

    def spawn(self, *command, **environment):
        """Starts a foreign program in the background; ended with the machine."""
        child = subprocess.Popen(command, env={**os.environ, **environment},
                                 stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self._children.append(child)
        return child
