"""The X server ends at random points: under the saver in all its windows, and under the player. Each ends in time
with a sentence, without processes and temporary files; the player offers the text at its next start.

Requires Xvfb and xdotool. Usage: displays.py PROGRAMS [KIND...] [--seed N] [--trials N]
"""
import os
import shutil
import subprocess
import sys
import time

import trials
from trials import Box, Program, Trials

SHORT = 3.0  # seconds after which a program has its window and draws, or works on it


class Server:
    """An X server without a screen."""

    def __init__(self):
        reader, writer = os.pipe()
        self.process = subprocess.Popen(["Xvfb", "-displayfd", str(writer), "-screen", "0", "1376x868x24", "-nolisten",
                                         "tcp"], pass_fds=[writer], stderr=subprocess.DEVNULL, start_new_session=True)
        os.close(writer)
        with os.fdopen(reader) as numbers:
            self.name = ":" + numbers.readline().strip()

    def ask(self, *words):
        done = subprocess.run(["xdotool", *words], env=dict(os.environ, DISPLAY=self.name), capture_output=True)
        return done.stdout.decode().split()

    def windows(self, name, seconds=30):
        """The visible windows of that name, once there is one."""
        end = time.monotonic() + seconds
        while not (found := self.ask("search", "--onlyvisible", "--name", name)) and time.monotonic() < end:
            time.sleep(0.1)
        return found

    def kill(self):
        self.process.kill()
        self.process.wait()


def saver(options):
    """In a window of its own, in the root window, in a window of another program, and until input"""
    box = Box()
    (box.work / "e.metal").write_text(trials.EPISODE)
    for what, words in (("own window", []), ("root window", ["--root"]), ("until input", ["--until-input"]),
                        ("window of another program", None)):
        run = Trials(f"saver, {what}: X server killed", options.seed)
        for _ in range(options.trials):
            server = Server()
            box.given = {"DISPLAY": server.name}
            command = [options.programs / "tarnwick-saver", "e.metal"]
            running = []
            if words is None:
                running.append(Program(box, [*command, "--size", "320x200"]))
                window = server.windows(".*")[0]
                box.given["XSCREENSAVER_WINDOW"] = window
            running.append(Program(box, [*command, *(words or [])]))
            wait = run.dice.uniform(0.02, SHORT)
            run.begin(f"after {wait:.4f} s")
            time.sleep(wait)
            server.kill()
            for program in running:
                run.checkEnd(program, statuses=(0, 1))
                if not program.text().strip():
                    run.complain("It says nothing.")
            run.checkProcesses()
            run.checkTemporary(box)
        yield run
    box.remove()


def player(options):
    """With text that is not saved"""
    box = Box()
    run = Trials("player: X server killed", options.seed)
    for trial in range(max(1, options.trials // 2)):
        (box.work / "e.metal").write_text(trials.EPISODE)
        wait = run.dice.uniform(0.5, SHORT)
        run.begin(f"{wait:.4f} s after the last letter")
        server = Server()
        box.given = {"DISPLAY": server.name, "QT_QPA_PLATFORM": "xcb"}
        program = Program(box, [options.programs / "tarnwick-player", "e.metal"])
        words = f"// text {trial}"
        if windows := server.windows("^e"):
            server.ask("windowfocus", "--sync", windows[0], "mousemove", "200", "300", "click", "1", "key", "ctrl+End")
            server.ask("type", words)
        else:
            run.complain("There is no window.")
        time.sleep(wait)
        server.kill()
        run.checkEnd(program, statuses=(1,))
        run.checkProcesses()
        run.checkTemporary(box)
        drafts = [file.read_text() for file in box.folder.rglob("draft.json")]
        if not any(words in draft for draft in drafts):
            run.complain(f"There is no draft with {words!r}, but {len(drafts)} others.")
        offered(run, box, options)
    yield run
    box.remove()


def offered(run, box, options):
    """The next start asks for the text; then all drafts are removed."""
    server = Server()
    box.given["DISPLAY"] = server.name
    program = Program(box, [options.programs / "tarnwick-player"])
    if not server.windows("Unsaved work"):
        run.complain("The next start offers no text.")
    program.process.terminate()
    run.checkEnd(program, statuses=(-15,))
    server.kill()
    run.checkProcesses()
    shutil.rmtree(box.folder / "state")
    box.make()


if __name__ == "__main__":
    if not shutil.which("Xvfb") or not shutil.which("xdotool"):
        print("Skipped: Xvfb or xdotool is missing.")
        sys.exit(trials.SKIPPED)
    sys.exit(trials.main(__doc__, [saver, player], trials=20))
