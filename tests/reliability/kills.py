"""SIGKILL at random points of a command. Afterwards the final name has the whole result or what was there
before, the compiler's worker is gone, and the same command succeeds and removes what the killed one left.

Usage: kills.py PROGRAMS [KIND...] [--seed N] [--trials N] [--outputs NAME,NAME]
"""
import os
import pathlib
import signal
import sys
import time

import trials
from trials import Box, Program, Trials


def commands(options):
    """Every command that writes a file or a folder"""
    box = Box()
    trials.fill(box, options.programs)
    for output in trials.outputs():
        if options.outputs and output.name not in options.outputs.split(","):
            continue
        output.learn(options.programs, box)
        run = Trials(f"{output.name}: SIGKILL", options.seed)
        # The later runs find the driver's cache of shaders warm, so the end of the command is included.
        for _ in range(options.trials):
            point = run.dice.uniform(0, 1.05 * output.seconds)
            run.begin(f"killed after {point:.4f} s")
            output.put(box, run.dice.random() < 0.5)
            program = Program(box, output.command(options.programs))
            time.sleep(max(0.0, program.began + point - time.monotonic()))
            isDone = not program.isRunning and program.status == 0
            program.process.send_signal(signal.SIGKILL)
            killed = time.monotonic()
            program.wait(trials.MOST_SECONDS)
            run.checkProcesses()
            run.took(time.monotonic() - killed)
            output.check(run, box, isDone, killed=True)
            output.repeat(run, box, options.programs)
        yield run
    box.remove()


def workersOf(process):
    found = []
    for task in pathlib.Path("/proc", str(process), "task").glob("*/children"):
        try:
            found += [int(word) for word in task.read_text().split()]
        except OSError:
            pass
    return found


def killWorkers(program):
    for worker in workersOf(program.process.pid):
        try:
            os.kill(worker, signal.SIGKILL)
        except ProcessLookupError:
            pass


def worker(options):
    """The compiler's worker, under a command, the saver and the player"""
    for what, words in (("still", ["tarnwick", "still", "e.metal", "-o", "o.png", "--size", "160x90"]),
                        ("check", ["tarnwick", "check", "e.metal"]),
                        ("saver", ["tarnwick-saver", "--offscreen", "0.1", "e.metal", "-o", "s.png"])):
        box = Box()
        trials.fill(box, options.programs)
        command = [options.programs / words[0], *words[1:]]
        run = Trials(f"{what}: worker killed", options.seed)
        Program(box, command).wait(60)
        usual = Program(box, command)
        usual.wait(60)
        works = 0
        for _ in range(options.trials):
            point = run.dice.uniform(0, usual.seconds)
            run.begin(f"after {point:.4f} s")
            program = Program(box, command)
            time.sleep(max(0.0, program.began + point - time.monotonic()))
            killWorkers(program)
            run.checkEnd(program, statuses=(0, 1))
            works += program.status == 0
            run.checkProcesses()
            run.checkTemporary(box)
        print(f"{what}: works {works} times of {options.trials}", file=sys.stderr)
        yield run
        box.remove()
    yield player(options)


def player(options):
    """While random edits are made; each is compiled, or explained."""
    box = Box()
    run = Trials("player: worker killed", options.seed)
    program = Program(box, [options.programs / "playerSoak", 5 * options.trials, options.seed % 10000])
    while program.isRunning:
        time.sleep(run.dice.uniform(0, 0.5))
        run.begin("while it compiles, or waits")
        killWorkers(program)
    program.wait(1)
    if b"every edit was seen or explained" not in program.printed():
        run.complain(program.text()[-1000:])
    run.checkProcesses()
    run.checkTemporary(box)
    box.remove()
    return run


if __name__ == "__main__":
    sys.exit(trials.main(__doc__, [commands, worker], trials=50))
