"""Two programs on one name at the same time: both end, and under the name is the whole result of one of them.

Usage: names.py PROGRAMS [KIND...] [--seed N] [--trials N]
"""
import sys
import time

import trials
from trials import Box, Output, Program, Trials

SIZE = ["--size", "160x90"]
RED = ["--set", "level=0.25"]


def export(name, *words):
    return Output("mp4", ["export", "e.metal", "-o", name, "--duration", "1", *SIZE, *words], f"work/{name}")


def pairs():
    return [
        ("two exports", export("o.mp4"), export("o.mp4", *RED)),
        ("export and join", export("o.mp4"), Output("join", ["join", "a.mp4", "b.mp4", "-o", "o.mp4"], "work/o.mp4")),
        ("two stills", Output("still", ["still", "e.metal", "-o", "o.png", *SIZE], "work/o.png"),
         Output("still", ["still", "e.metal", "-o", "o.png", *SIZE, *RED], "work/o.png")),
        ("still and sheet", Output("still", ["still", "e.metal", "-o", "o.png", *SIZE], "work/o.png"),
         Output("sheet", ["sheet", "e.metal", "-o", "o.png"], "work/o.png")),
        ("two walkthroughs into a folder",
         *(Output("pages", ["walkthrough", "e.metal", "--stages", "stage.metal", "--pages", "pages", "--size", size],
                  "work/pages", False) for size in ("320x180", "640x360"))),
        ("two packages", *(Output("swiftui", ["swiftui", "e.metal", "-o", "package", "--title", title], "work/package",
                                  False) for title in ("One", "Two"))),
        ("two installations of a saver",
         *(Output("saver", ["saver", "install", "e.metal", "--name", "E", *words], "data/tarnwick/savers/e.saver",
                  False, True, ("home/.xscreensaver",)) for words in ([], RED))),
    ]


def outcomes(options):
    """Each of two programs alone, then both at random times from each other"""
    for what, first, second in pairs():
        box = Box()
        trials.fill(box, options.programs)
        run = Trials(what, options.seed)
        for output in (first, second):
            output.learn(options.programs, box)
        reach = max(first.seconds, second.seconds)
        both = 0
        for _ in range(options.trials):
            first.remove(box)
            wait = run.dice.uniform(-reach, reach) / 2
            run.begin(f"the second one {wait:.4f} s after the first one")
            order = (first, second) if wait >= 0 else (second, first)
            one = Program(box, order[0].command(options.programs))
            time.sleep(abs(wait))
            other = Program(box, order[1].command(options.programs))
            for program in (one, other):
                run.checkEnd(program)
            run.checkProcesses()
            run.checkTemporary(box)
            done = [output for output, program in zip(order, (one, other)) if program.status == 0]
            both += len(done) == 2
            check(run, box, first, [output.whole for output in done])
        print(f"{what}: both succeed {both} times of {options.trials}", file=sys.stderr)
        yield run
        box.remove()


def check(run, box, output, wholes):
    found = trials.contentsOf(output.at(box))
    if not wholes:
        run.complain("Neither succeeds.")
    elif found is None:
        run.complain("One succeeds, and nothing is there.")
    elif found in wholes:
        return
    elif isinstance(found, dict):
        run.complain("The folder is of both: " + ", ".join(
            name for name in found if found[name] != wholes[-1].get(name)))
    elif errors := trials.decodingErrors(output.at(box)):
        run.complain(f"{output.place} is broken: {errors[:300]}")


if __name__ == "__main__":
    sys.exit(trials.main(__doc__, [outcomes], trials=30))
