"""Disks that are full, read-only, or do not answer. The command ends in time with a sentence, leaves no
temporary file, and under the final name is the whole result or what was there before.

Requires the rights to mount. Usage: disk.py PROGRAMS [KIND...] [--seed N] [--trials N] [--outputs NAME,NAME]
"""
import ctypes
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time

import trials
from trials import Box, Program, Trials

PAGE = 4096
CLONE_NEWNS = 0x20000
OTHER_USER = 65534


def call(*words):
    subprocess.run([str(word) for word in words], check=True, capture_output=True)


def chosen(options, names=None):
    wanted = options.outputs.split(",") if options.outputs else names
    return [output for output in trials.outputs() if not wanted or output.name in wanted]


def isOutOfSpace(text):
    return "No space left on device" in text or "disk is full" in text


class FullDisk:
    """A file system in memory, with a file that leaves a number of bytes free."""

    def __init__(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="reliability-"))
        call("mount", "-t", "tmpfs", "-o", "size=64m", "tmpfs", self.folder)
        self.ballast = self.folder / "ballast"

    def free(self):
        status = os.statvfs(self.folder)
        return status.f_bavail * status.f_frsize

    def leave(self, bytes):
        with open(self.ballast, "wb") as file:
            os.posix_fallocate(file.fileno(), 0, max(PAGE, self.free() // PAGE * PAGE - bytes // PAGE * PAGE))

    def clear(self):
        self.ballast.unlink(missing_ok=True)

    def remove(self):
        call("umount", "-l", self.folder)
        self.folder.rmdir()


def sizeOf(contents):
    """In whole pages, with one for each file and folder."""
    files = contents.values() if isinstance(contents, dict) else [contents]
    return sum((len(bytes) + PAGE - 1) // PAGE * PAGE + PAGE for bytes in files) + 4 * PAGE


def full(options):
    """A disk with less space than the command needs; some bytes more than that to none"""
    for output in chosen(options):
        disk = FullDisk()
        box = Box(disk.folder)
        trials.fill(box, options.programs)
        output.learn(options.programs, box)
        run = Trials(f"{output.name}: disk full", options.seed)
        hasRoom = 0
        for trial in range(options.trials):
            output.put(box, run.dice.random() < 0.5)
            left = int(1.3 * sizeOf(output.whole) * trial / max(1, options.trials - 1))
            run.begin(f"{left} bytes left")
            disk.leave(left)
            program = Program(box, output.command(options.programs))
            run.checkEnd(program)
            run.checkProcesses()
            hasRoom += program.status == 0
            if program.status != 0 and not isOutOfSpace(program.text()):
                run.complain(f"It does not say that the disk is full: {program.text()[-300:]!r}")
            disk.clear()
            output.check(run, box, program.status == 0)
            run.checkTemporary(box)
        print(f"{output.name}: {hasRoom} of {options.trials} had room", file=sys.stderr)
        yield run
        disk.remove()


def fullTemporary(options):
    """No space for temporary files, and the result on standard output"""
    disk = FullDisk()
    box = Box()
    trials.fill(box, options.programs)
    for name, words in (("mp4", ["export", "e.metal", "-o", "-", "--duration", "1", "--size", "160x90"]),
                        ("share", ["share", "e.metal", "--title", "E", "--preview", "shared", "--size", "32x18"]),
                        ("saver", ["saver", "install", "e.metal"])):
        box.given["TMPDIR"] = str(disk.folder)
        run = Trials(f"{name}: no space for temporary files", options.seed)
        for trial in range(min(10, options.trials)):
            run.begin(f"{trial * 4 * PAGE} bytes left")
            disk.leave(trial * 4 * PAGE)
            program = Program(box, [options.programs / "tarnwick", *words])
            run.checkEnd(program, 60)
            run.checkProcesses()
            disk.clear()
            if program.status == 0 and name == "mp4":
                (box.work / "got.mp4").write_bytes(program.printed())
                if errors := trials.decodingErrors(box.work / "got.mp4"):
                    run.complain(errors)
            if os.listdir(disk.folder):
                run.complain(f"It leaves {os.listdir(disk.folder)}.")
            shutil.rmtree(box.work / "shared", ignore_errors=True)
        yield run
    disk.remove()
    box.remove()


class FailingDisk:
    """A file system that becomes read-only while files are written, as after an error of the disk."""

    def __init__(self):
        self.image = tempfile.NamedTemporaryFile(prefix="reliability-")
        self.image.truncate(96 << 20)
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="reliability-"))
        call("mkfs.ext4", "-q", "-F", self.image.name)
        self.mount()

    def mount(self):
        call("mount", "-o", "loop,errors=remount-ro", self.image.name, self.folder)
        device = os.stat(self.folder).st_dev
        self.name = os.path.basename(os.readlink(f"/sys/dev/block/{os.major(device)}:{os.minor(device)}"))

    def fail(self):
        pathlib.Path(f"/sys/fs/ext4/{self.name}/trigger_fs_error").write_text("1")

    def repair(self):
        call("umount", self.folder)
        subprocess.run(["e2fsck", "-y", self.image.name], capture_output=True)
        self.mount()

    def remove(self):
        call("umount", "-l", self.folder)
        self.folder.rmdir()
        self.image.close()


def readonly(options):
    """The disk becomes read-only at a random point"""
    try:
        disk = FailingDisk()
    except (OSError, subprocess.CalledProcessError) as error:
        print(f"Skipped: no file system can be made read-only: {error}", file=sys.stderr)
        return
    for output in chosen(options):
        box = Box(disk.folder)
        trials.fill(box, options.programs)
        output.learn(options.programs, box)
        run = Trials(f"{output.name}: read-only", options.seed)
        for _ in range(options.trials):
            point = run.dice.uniform(0, 1.05 * output.seconds)
            run.begin(f"after {point:.4f} s")
            output.put(box, run.dice.random() < 0.5)
            call("sync", "-f", disk.folder)  # the failure loses what is only in memory
            program = Program(box, output.command(options.programs))
            time.sleep(max(0.0, program.began + point - time.monotonic()))
            disk.fail()
            run.checkEnd(program)
            run.checkProcesses()
            output.check(run, box, program.status == 0, killed=True)
            disk.repair()
            output.check(run, box, False, killed=True)  # what was only in memory is lost
            output.repeat(run, box, options.programs)
        yield run
    disk.remove()


def forbidden(options):
    """The folder of the result may not be written any more, from a random point on, for a user who is not root"""
    def becomeOther():
        os.setgroups([])
        os.setgid(OTHER_USER)
        os.setuid(OTHER_USER)
    for output in chosen(options):
        box = Box()
        trials.fill(box, options.programs)
        output.learn(options.programs, box)
        call("chown", "-R", f"{OTHER_USER}:{OTHER_USER}", box.folder)
        run = Trials(f"{output.name}: folder made read-only", options.seed)
        parent = output.at(box).parent
        for _ in range(options.trials):
            point = run.dice.uniform(0, 1.05 * output.seconds)
            run.begin(f"after {point:.4f} s")
            output.put(box, run.dice.random() < 0.5)
            parent.mkdir(parents=True, exist_ok=True)
            call("chown", "-R", f"{OTHER_USER}:{OTHER_USER}", box.folder)
            program = Program(box, output.command(options.programs), becomeOther)
            time.sleep(max(0.0, program.began + point - time.monotonic()))
            parent.chmod(0o555)
            run.checkEnd(program)
            run.checkProcesses()
            parent.chmod(0o755)
            output.check(run, box, program.status == 0, killed=True)
            output.repeat(run, box, options.programs)
        yield run
        box.remove()


class SlowDisk:
    """A FUSE file system whose calls take as long as is said."""

    def __init__(self, programs):
        self.own = pathlib.Path(tempfile.mkdtemp(prefix="reliability-"))
        self.folder, backing = self.own / "mounted", self.own / "backing"
        for folder in (self.folder, backing):
            folder.mkdir()
        self.take(0)
        self.process = subprocess.Popen([programs / "slowFolder", backing, self.own / "delay", self.folder, "-f"],
                                        stderr=subprocess.DEVNULL)
        trials.servers.add(self.process.pid)
        while not os.path.ismount(self.folder):
            if self.process.poll() is not None:
                raise OSError("FUSE cannot be mounted")
            time.sleep(0.01)

    def take(self, seconds):
        (self.own / "new").write_text(f"{seconds}\n")
        (self.own / "new").rename(self.own / "delay")

    def remove(self):
        self.take(0)
        call("umount", "-l", self.folder)
        self.process.wait()
        shutil.rmtree(self.own)


def stalled(options):
    """A file system that takes 20 ms for each call, that stalls for 2 s, and that stalls until a signal"""
    try:
        disk = SlowDisk(options.programs)
    except OSError as error:
        print(f"Skipped: {error}", file=sys.stderr)
        return
    for output in chosen(options, ["mp4", "mov", "still", "wav", "pages", "saver", "bundle", "episode"]):
        box = Box(disk.folder)
        trials.fill(box, options.programs)
        output.learn(options.programs, box)
        yield slow(options, output, disk, box)
        yield pause(options, output, disk, box)
        yield stall(options, output, disk, box)
    disk.remove()


def slow(options, output, disk, box):
    run = Trials(f"{output.name}: slow file system", options.seed)
    run.begin("20 ms for each call")
    output.put(box, False)
    disk.take(0.02)
    program = Program(box, output.command(options.programs))
    if not program.wait(120) or program.status != 0:
        run.complain(f"It ends with {program.status}: {program.text()[-400:]!r}")
    disk.take(0)
    after(run, output, box, program, True)
    return run


def pause(options, output, disk, box):
    run = Trials(f"{output.name}: stalls for 2 s", options.seed)
    for _ in range(max(1, options.trials // 5)):
        point = run.dice.uniform(0, 1.05 * output.seconds)
        run.begin(f"after {point:.4f} s")
        output.put(box, run.dice.random() < 0.5)
        program = Program(box, output.command(options.programs))
        time.sleep(max(0.0, program.began + point - time.monotonic()))
        disk.take(2)
        time.sleep(2)
        disk.take(0)
        run.checkEnd(program, statuses=(0,))
        after(run, output, box, program, True)
    return run


def stall(options, output, disk, box):
    run = Trials(f"{output.name}: stalls, then a signal", options.seed)
    for _ in range(options.trials):
        point = run.dice.uniform(0, 1.05 * output.seconds)
        run.begin(f"after {point:.4f} s")
        output.put(box, run.dice.random() < 0.5)
        program = Program(box, output.command(options.programs))
        time.sleep(max(0.0, program.began + point - time.monotonic()))
        disk.take(3600)
        time.sleep(run.dice.uniform(0, 0.5))
        program.process.send_signal(run.dice.choice([signal.SIGINT, signal.SIGTERM]))
        run.checkEnd(program, statuses=(0, -signal.SIGINT, -signal.SIGTERM, 1, 2))
        disk.take(0)
        run.checkProcesses()
        output.check(run, box, program.status == 0, killed=True)
        output.repeat(run, box, options.programs)
    return run


def after(run, output, box, program, isDone):
    run.checkProcesses()
    output.check(run, box, isDone)
    run.checkTemporary(box)


def mayMount():
    """Whether this process may mount file systems. Its mounts then end with it."""
    if os.geteuid() != 0 or ctypes.CDLL(None).unshare(CLONE_NEWNS) != 0:
        return False
    call("mount", "--make-rprivate", "/")
    return True


def main():
    if not mayMount():
        print("Skipped: only root may mount.")
        return trials.SKIPPED
    return trials.main(__doc__, [full, fullTemporary, readonly, forbidden, stalled], trials=50)


if __name__ == "__main__":
    sys.exit(main())
