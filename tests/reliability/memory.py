"""Too little memory: a limit of addresses, and a group of processes whose memory is limited, in which the system
kills. The program ends with a sentence, or works.

Usage: memory.py PROGRAMS [KIND...] [--seed N] [--trials N] [--outputs NAME,NAME]
"""
import os
import pathlib
import resource
import signal
import sys

import trials
from trials import Box, Program, Trials

MEGABYTE = 1 << 20
LEAST = 200 * MEGABYTE


def chosen(options):
    wanted = options.outputs.split(",") if options.outputs else ["mp4", "hevc", "still", "wav", "pages", "saver"]
    return [output for output in trials.outputs() if output.name in wanted]


def outcome(run, output, box, program):
    run.checkProcesses()
    output.check(run, box, program.status == 0)
    run.checkTemporary(box)


def addresses(options):
    """ulimit -v: allocations fail"""
    for output in chosen(options):
        box = Box()
        trials.fill(box, options.programs)
        output.learn(options.programs, box)
        run = Trials(f"{output.name}: limit of addresses", options.seed)
        enough = enoughAddresses(output, box, options)
        works = 0
        for trial in range(options.trials):
            limit = LEAST + (enough - LEAST) * trial // max(1, options.trials - 1)
            run.begin(f"{limit // MEGABYTE} MiB of addresses")
            output.put(box, run.dice.random() < 0.5)
            program = Program(box, output.command(options.programs),
                              lambda: resource.setrlimit(resource.RLIMIT_AS, (limit, limit)))
            # 127: the loader says why it cannot start the program. Drivers crash without memory, which is told.
            run.checkEnd(program, 30, (0, 1, 2, 127, -signal.SIGSEGV, -signal.SIGABRT))
            if program.status < 0:
                run.checkSentence(program)
            works += program.status == 0
            outcome(run, output, box, program)
        print(f"{output.name}: works {works} times of {options.trials}, enough is {enough // MEGABYTE} MiB",
              file=sys.stderr)
        yield run
        box.remove()


def enoughAddresses(output, box, options):
    """The least limit with which the command works, within a tenth."""
    low, high = 200 * MEGABYTE, 4096 * MEGABYTE
    while high > 1.1 * low:
        middle = (low + high) // 2
        output.remove(box)
        program = Program(box, output.command(options.programs),
                          lambda: resource.setrlimit(resource.RLIMIT_AS, (middle, middle)))
        if program.wait(60) and program.status == 0:
            high = middle
        else:
            low = middle
    trials.leftProcesses()
    return high


class Group:
    """A group of processes with a limit of memory: cgroup v1 or v2."""

    def __init__(self):
        for root, limit, self.kills in (("/sys/fs/cgroup/memory", "memory.limit_in_bytes", "memory.failcnt"),
                                        ("/sys/fs/cgroup", "memory.max", "memory.events")):
            folder = pathlib.Path(root) / f"tarnwick-trials-{os.getpid()}"
            if (pathlib.Path(root) / "cgroup.procs").exists():
                folder.mkdir()
                self.folder, self.limitFile = folder, folder / limit
                if self.limitFile.exists():
                    return
                folder.rmdir()
        raise OSError("there is no memory cgroup")

    def limit(self, bytes):
        self.limitFile.write_text(str(bytes))

    def enter(self):
        (self.folder / "cgroup.procs").write_text(str(os.getpid()))

    def remove(self):
        self.folder.rmdir()


def group(options):
    """A group with little memory: the system kills a process of it"""
    try:
        limited = Group()
    except OSError as error:
        print(f"Skipped: {error}", file=sys.stderr)
        return
    for output in chosen(options):
        box = Box()
        trials.fill(box, options.programs)
        output.learn(options.programs, box)
        run = Trials(f"{output.name}: group of little memory", options.seed)
        works = killed = 0
        for trial in range(options.trials):
            limit = (16 + 10 * trial) * MEGABYTE
            run.begin(f"{limit // MEGABYTE} MiB of memory")
            output.put(box, run.dice.random() < 0.5)
            limited.limit(limit)
            program = Program(box, output.command(options.programs), limited.enter)
            run.checkEnd(program, 60, (0, 1, 2, -9))  # -9: the kernel killed the program itself
            works += program.status == 0
            killed += program.status == -9
            run.checkProcesses()
            output.check(run, box, program.status == 0, killed=True)
            if program.status == -9:
                output.repeat(run, box, options.programs)
            else:
                run.checkTemporary(box)
        print(f"{output.name}: works {works} times, is killed {killed} times of {options.trials}", file=sys.stderr)
        yield run
        box.remove()
    limited.remove()


if __name__ == "__main__":
    sys.exit(trials.main(__doc__, [addresses, group], trials=30))
