"""Players with faults: two on one document, and one whose drafts find no space. The document is always the whole text
of one of them; each draft is whole; both players go on and end.

Requires Xvfb and xdotool, and for drafts the rights to mount.
Usage: players.py PROGRAMS [KIND...] [--seed N] [--trials N]
"""
import json
import shutil
import signal
import sys
import time

import disk
import displays
import trials
from trials import Box, Program, Trials

PATIENCE = 20  # seconds for what the player does in the background


def typed(server, window, text, *keys):
    server.ask("windowraise", window, "windowfocus", "--sync", window, "mousemove", "--window", window, "200", "300", "click", "1", "key",
               "ctrl+End")
    time.sleep(0.3)
    server.ask("type", text)
    for key in keys:
        server.ask("key", key)


def comes(condition, patience=PATIENCE):
    end = time.monotonic() + patience
    while not (met := condition()) and time.monotonic() < end:
        time.sleep(0.1)
    return met


def started(box, options, server, *words):
    """A player and its window; raises LookupError without one."""
    before = set(server.ask("search", "--onlyvisible", "--name", "."))
    program = Program(box, [options.programs / "tarnwick-player", *words])
    found = comes(lambda: set(server.ask("search", "--onlyvisible", "--name", "^e")) - before, 60)
    if not found:
        program.wait(0)
        raise LookupError(f"There is no window: {program.status} {program.text()}")
    return program, found.pop()


def ended(run, programs):
    for program in programs:
        program.process.terminate()
    for program in programs:
        run.checkEnd(program, statuses=(-signal.SIGTERM,))
    run.checkProcesses()


def together(options):
    """Two players on one document, which both save"""
    run = Trials("two players on one document", options.seed)
    for trial in range(options.trials):
        box, server = Box(), displays.Server()
        trials.servers.add(server.process.pid)
        box.given = {"DISPLAY": server.name, "QT_QPA_PLATFORM": "xcb"}
        document = box.work / "e.metal"
        document.write_text(trials.EPISODE)
        both = [started(box, options, server, "e.metal") for _ in range(2)]
        order = run.dice.choice(["A B AS BS", "A AS B BS", "A B BS AS"])
        run.begin(order)
        for step in order.split():
            window = both["AB".index(step[0])][1]
            typed(server, window, *(["", "ctrl+s"] if step.endswith("S") else [f"// {step}"]))
            time.sleep(run.dice.uniform(0, 0.5))
        if not comes(lambda: document.read_text() != trials.EPISODE):
            run.complain("None is saved.")
        time.sleep(1)
        # A player whose text has no changes shows what the other one saved.
        texts = [trials.EPISODE + text for text in ("// A", "// B", "// A// B")]
        if document.read_text().rstrip("\n") not in texts:
            run.complain(f"The document ends with {document.read_text()[-100:]!r}.")
        ended(run, [program for program, _ in both])
        run.checkTemporary(box)
        server.kill()
        box.remove()
    yield run


def drafts(options):
    """No space for drafts; then there is space again"""
    run = Trials("player: disk full", options.seed)
    for trial in range(options.trials):
        full, server = disk.FullDisk(), displays.Server()
        trials.servers.add(server.process.pid)
        box = Box(full.folder)
        box.given = {"DISPLAY": server.name, "QT_QPA_PLATFORM": "xcb"}
        (box.work / "e.metal").write_text(trials.EPISODE)
        left = trial * 2 * disk.PAGE
        run.begin(f"{left} bytes left")
        program, window = started(box, options, server, "e.metal")
        typed(server, window, "// first")
        if not comes(lambda: any("// first" in text for text in draftsOf(box))):
            run.complain("There is no draft.")
        full.leave(left)
        typed(server, window, " second")
        time.sleep(run.dice.uniform(1, 3))
        if not program.isRunning:
            run.complain(f"The player ends with {program.process.returncode}: {program.text()[-300:]}")
        if not any("// first" in text for text in draftsOf(box)):
            run.complain("The draft of before is gone.")
        full.clear()
        typed(server, window, " third")
        if not comes(lambda: any("// first second third" in text for text in draftsOf(box))):
            run.complain(f"There is no draft of all: {draftsOf(box)}")
        ended(run, [program])
        run.checkTemporary(box)
        server.kill()
        full.remove()
    yield run


def draftsOf(box):
    """The texts of all drafts. A draft that is not JSON is an error."""
    return [json.dumps(json.loads(file.read_text())) for file in box.folder.rglob("draft.json")]


if __name__ == "__main__":
    if not shutil.which("Xvfb") or not shutil.which("xdotool") or not disk.mayMount():
        print("Skipped: Xvfb, xdotool or the rights to mount are missing.")
        sys.exit(trials.SKIPPED)
    sys.exit(trials.main(__doc__, [together, drafts], trials=5))
