"""What the trials of faults share: a box for a user's files, programs that are started and watched in
it, the outputs of the commands, and the row of figures for each kind of trial.

A trial fails if a program leaves a process or a temporary file, takes longer than it may, does not
say why it failed, or leaves a broken file under the final name.
"""
import argparse
import ctypes
import os
import pathlib
import random
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

MOST_SECONDS = 10  # from the fault to the end of the program
GRACE = 2.0  # seconds in which processes that belonged to a program may end after it
SKIPPED = 77
# Lines that the programs print while they work, beside sentences.
PROGRESS = re.compile(r"\r|\x1b\[K")

EPISODE = """// @param level 0.5 0 1 How bright
float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    return float4(fract(sin(dot(floor(uv * 80.0), float2(12.9, 78.2)) + floor(u.time * 30.0)) * 43758.5),
                  uv, 1.0) * p.level;
}
float2 sound(float t, constant Params& p) { return float2(0.2 * sin(t * 2000.0)); }
"""
STAGE = EPISODE.replace("    return float4", "    // caption Noise\n    return float4")
KERNEL = """#include <metal_stdlib>
kernel void k(device float* at [[buffer(0)]], uint i [[thread_position_in_grid]]) { at[i] = metal::sin(at[i]); }
"""

ctypes.CDLL(None).prctl(36, 1, 0, 0, 0)  # PR_SET_CHILD_SUBREAPER: orphans of a program come to us


servers = set()  # processes of the trials themselves, which may live on


def children():
    """The processes that this process started, or inherited from programs that ended."""
    mine = os.getpid()
    found = []
    for entry in os.listdir("/proc"):
        if entry.isdigit():
            try:
                text = pathlib.Path("/proc", entry, "stat").read_text()
            except OSError:
                continue
            name, rest = text[text.index("(") + 1:text.rindex(")")], text[text.rindex(")") + 2:].split()
            if int(rest[1]) == mine and int(entry) not in servers:
                found.append((int(entry), name, rest[0]))
    return found


class Box:
    """A folder with the files of a user: work, tmp, home, and the folders of the XDG variables. `at`:
    an existing folder, for instance of a small file system; default: a new one."""

    def __init__(self, at=None):
        self.folder = pathlib.Path(at or tempfile.mkdtemp(prefix="reliability-"))
        self.work, self.tmp = self.folder / "work", self.folder / "tmp"
        self.given = {}  # more variables of the environment
        self.make()

    def make(self):
        for name in ("work", "tmp", "home", "data", "config", "cache", "state", "run"):
            (self.folder / name).mkdir(mode=0o700, exist_ok=True)

    def remove(self):
        shutil.rmtree(self.folder, ignore_errors=True)

    def environment(self):
        found = dict(os.environ, HOME=str(self.folder / "home"), TMPDIR=str(self.tmp),
                     XDG_DATA_HOME=str(self.folder / "data"), XDG_CONFIG_HOME=str(self.folder / "config"),
                     XDG_CACHE_HOME=str(self.folder / "cache"), XDG_STATE_HOME=str(self.folder / "state"),
                     XDG_RUNTIME_DIR=str(self.folder / "run"),
                     DBUS_SESSION_BUS_ADDRESS="unix:path=/nowhere")
        if "DISPLAY" not in self.given:
            found.pop("DISPLAY", None)
        found.pop("WAYLAND_DISPLAY", None)
        found.update(self.given)
        return found

    def temporary(self):
        """The temporary files and folders of our programs in all folders of the box. Mesa's cache has files of its
        own there."""
        found = []
        for folder, folders, files in os.walk(self.folder):
            folders[:] = [name for name in folders if not name.startswith("mesa_shader_cache")]
            for name in folders + files:
                if name.endswith(".partial") or pathlib.Path(folder) == self.tmp:
                    found.append(os.path.relpath(os.path.join(folder, name), self.folder))
        return sorted(found)


class Program:
    """A program that runs in a box, in a session of its own. `limit`: called in the process before it starts."""

    def __init__(self, box, words, limit=None):
        self.words = [str(word) for word in words]
        self.began = time.monotonic()

        def prepare():
            signal.signal(signal.SIGINT, signal.SIG_DFL)  # ignored where the trials run in the background
            if limit:
                limit()

        self.out, self.err = tempfile.TemporaryFile(), tempfile.TemporaryFile()
        self.process = subprocess.Popen(self.words, cwd=box.work, env=box.environment(), stdin=subprocess.DEVNULL,
                                        stdout=self.out, stderr=self.err, start_new_session=True,
                                        preexec_fn=prepare)

    def wait(self, seconds):
        """Whether it ends within that time; otherwise it is killed."""
        try:
            self.process.wait(seconds)
            return True
        except subprocess.TimeoutExpired:
            self.process.kill()
            try:
                self.process.wait(GRACE)
            except subprocess.TimeoutExpired:
                pass  # it waits in the kernel for a file system
            return False
        finally:
            self.seconds = time.monotonic() - self.began

    @property
    def status(self):
        return self.process.returncode

    @property
    def isRunning(self):
        return self.process.poll() is None

    def text(self):
        """What it said on standard error, without lines of progress that it wiped."""
        self.err.seek(0)
        lines = self.err.read().decode(errors="replace").split("\n")
        return "\n".join(PROGRESS.split(line)[-1] for line in lines)

    def printed(self):
        self.out.seek(0)
        return self.out.read()


def leftProcesses():
    """Waits for the processes that a program left behind, ends those that do not end, and names them."""
    end = time.monotonic() + GRACE
    while True:
        running = []
        for number, name, state in children():
            if state == "Z":
                try:
                    os.waitpid(number, os.WNOHANG)
                except ChildProcessError:
                    pass
            else:
                running.append((number, name))
        if not running:
            return []
        if time.monotonic() > end:
            for number, _ in running:
                os.kill(number, signal.SIGKILL)
                os.waitpid(number, 0)
            return [name for _, name in running]
        time.sleep(0.01)


class Trials:
    """One kind of trials: its random numbers, its failures and its row."""

    def __init__(self, what, seed):
        self.what, self.seed = what, seed
        self.dice = random.Random(f"{seed} {what}")
        self.count = self.failures = 0
        self.slowest = 0.0
        self.now = ""

    def begin(self, how):
        self.count += 1
        self.now = how

    def took(self, seconds):
        self.slowest = max(self.slowest, seconds)

    def complain(self, reason):
        self.failures += 1
        print(f"{self.what}, trial {self.count}, {self.now}:\n    {reason}", flush=True)

    def checkEnd(self, program, most=MOST_SECONDS, statuses=(0, 1, 2)):
        """Waits for the end. The program must end in time, by itself, and say why if it failed."""
        began = time.monotonic()
        if not program.wait(most):
            self.complain(f"It is not done after {most} s: {program.text()[-400:]!r}")
            return
        self.took(time.monotonic() - began)
        if program.status not in statuses:
            self.complain(f"Status {program.status}: {program.text()[-400:]!r}")
        elif program.status > 0:
            self.checkSentence(program)

    def checkSentence(self, program):
        """A line is a sentence of the program, or an error of the compiler, which has lines that show the place."""
        lines = [line for line in program.text().split("\n") if line.strip()]
        sentence = re.compile(r"^tarnwick[a-z-]*: .{15,}|.*: error: .*|.*: error while loading shared libraries: .*")
        if not any(sentence.match(line) for line in lines):
            self.complain(f"It does not say why it ends with {program.status}: {lines!r}")

    def checkProcesses(self):
        if left := leftProcesses():
            self.complain(f"It leaves {', '.join(left)}.")

    def checkTemporary(self, box):
        if left := box.temporary():
            self.complain(f"It leaves {left[:5]}.")
            for name in left:
                shutil.rmtree(box.folder / name, ignore_errors=True)
                (box.folder / name).unlink(missing_ok=True)

    def row(self):
        print(f"| {self.what} | {self.count} | {self.failures} | {self.slowest:.1f} s |", flush=True)


def contentsOf(place):
    """The bytes of a file, or of each file of a folder; None if it does not exist."""
    if place.is_dir():
        return {str(file.relative_to(place)): file.read_bytes() for file in sorted(place.rglob("*"))
                if file.is_file()}
    return place.read_bytes() if place.exists() else None


def decodingErrors(file):
    """What ffmpeg says of a whole film, sound or picture; empty: it decodes without an error."""
    done = subprocess.run(["ffmpeg", "-v", "error", "-xerror", "-i", str(file), "-f", "null", "-"],
                          capture_output=True, stdin=subprocess.DEVNULL)
    return done.stderr.decode(errors="replace") or ("" if done.returncode == 0 else f"status {done.returncode}")


class Output:
    """A command and what it writes. A run without a fault gives the whole result; after any other run there is
    either the whole result or what was there before."""

    def __init__(self, name, words, place, isReplaced=True, isCompleted=False, beside=()):
        self.name, self.words, self.place = name, words, place
        self.isReplaced = isReplaced  # whether the command replaces a result of before
        self.isCompleted = isCompleted  # an interrupted result is completed by the same command
        self.beside = beside  # other files that belong to the result
        self.whole = self.before = None
        self.seconds = 0.0

    def at(self, box):
        return box.folder / self.place

    def command(self, programs):
        return [programs / "tarnwick", *self.words]

    def remove(self, box):
        for place in (self.at(box), *(box.folder / name for name in self.beside)):
            shutil.rmtree(place, ignore_errors=True) if place.is_dir() else place.unlink(missing_ok=True)

    def learn(self, programs, box):
        """Runs the command three times and keeps the result and the time. Ends the script if one fails."""
        for _ in range(3):
            self.remove(box)
            program = Program(box, self.command(programs))
            if not program.wait(120) or program.status != 0:
                sys.exit(f"{self.name} fails without a fault: {program.text()}")
            self.seconds = program.seconds
        self.whole = contentsOf(self.at(box))
        for file in [self.at(box)] if self.at(box).is_file() else self.at(box).rglob("*"):
            if file.suffix in (".mp4", ".mov", ".png", ".wav", ".jpg") and (errors := decodingErrors(file)):
                sys.exit(f"{self.name} is broken without a fault: {errors}")
        self.remove(box)

    def put(self, box, isThere):
        """Before a trial: something under the final name that the command may replace, or nothing."""
        self.remove(box)
        self.before = None
        if isThere and self.isReplaced and isinstance(self.whole, bytes):
            self.before = self.whole + b"\0before"
            self.at(box).parent.mkdir(parents=True, exist_ok=True)
            self.at(box).write_bytes(self.before)

    def check(self, trials, box, isDone, killed=False):
        """After a trial, whether the command succeeded or not. The bytes of an encoder may differ from run to
        run, so that a result of other bytes is decoded. `killed`: the command had no time to clean up."""
        found = contentsOf(self.at(box))
        if found == self.whole:
            return
        if found == self.before and not isDone:
            return
        if isDone and found is None:
            trials.complain("It succeeds and writes nothing.")
        elif found is None:
            trials.complain("What was there before is gone.")
        elif isinstance(found, dict) and self.isCompleted and not isDone and killed:
            return
        elif isinstance(found, dict):
            differing = sorted(name for name in set(found) | set(self.whole)
                               if found.get(name) != self.whole.get(name))
            trials.complain(f"The folder {self.place} is not whole: {differing[:5]}.")
        elif errors := decodingErrors(self.at(box)):
            trials.complain(f"{self.place} is broken: {errors[:300]}")
        elif len(found) < 0.9 * len(self.whole):
            trials.complain(f"{self.place} has {len(found)} bytes, not {len(self.whole)}.")


    def repeat(self, trials, box, programs):
        """After a fault the same command succeeds, and removes what was left."""
        if not self.isReplaced and not self.isCompleted:
            self.remove(box)
        program = Program(box, self.command(programs))
        if not program.wait(60) or program.status != 0:
            trials.complain(f"Afterwards the command ends with {program.status}: {program.text()[-400:]!r}")
        trials.checkProcesses()
        self.check(trials, box, True)
        trials.checkTemporary(box)


def outputs():
    """Each kind of result that a command writes. Those with many files and small ones are beside films."""
    size = ["--size", "160x90"]
    return [
        Output("mp4", ["export", "e.metal", "-o", "o.mp4", "--duration", "1", *size], "work/o.mp4"),
        Output("mov", ["export", "e.metal", "-o", "o.mov", "--preset", "prores422", "--fps", "24", "--duration",
                       "1", *size], "work/o.mov"),
        Output("hevc", ["export", "e.metal", "-o", "o.mp4", "--preset", "main4k", "--fps", "24", "--duration",
                        "1", *size], "work/o.mp4"),
        Output("still", ["still", "e.metal", "-o", "o.png", *size], "work/o.png"),
        Output("sheet", ["sheet", "e.metal", "-o", "o.png"], "work/o.png"),
        Output("spectrum", ["spectrum", "e.metal", "--time", "1", "-o", "o.png"], "work/o.png"),
        Output("thumbnail", ["thumbnail", "e.metal", "-o", "o.png"], "work/o.png"),
        Output("wav", ["sound", "e.metal", "-o", "o.wav", "--duration", "2"], "work/o.wav"),
        Output("variations", ["variations", "e.metal", "--seed", "1", "--count", "2", "-o", "o.mp4", "--duration",
                              "0.5", *size], "work/o.mp4"),
        Output("join", ["join", "a.mp4", "b.mp4", "-o", "o.mp4"], "work/o.mp4"),
        Output("walkthrough", ["walkthrough", "e.metal", "--stages", "stage.metal", "-o", "o.mp4", "--draft",
                               "--page-seconds", "0.5", "--size", "640x360"],
               "work/o.mp4"),
        Output("pages", ["walkthrough", "e.metal", "--stages", "stage.metal", "--pages", "pages", "--size",
                         "320x180"], "work/pages",
               False),
        Output("swiftui", ["swiftui", "e.metal", "-o", "package"], "work/package", False),
        Output("bundle", ["share", "e.metal", "--title", "E", "--preview", "shared", "--size",
                          "32x18"], "work/shared", False),
        Output("saver", ["saver", "install", "e.metal"], "data/tarnwick/savers/e.saver", False,
               isCompleted=True, beside=("home/.xscreensaver",)),
        Output("module", ["msl", "kernel.metal", "-o", "o.spv"], "work/o.spv"),
        Output("episode", ["new", "E", "-o", "o.metal"], "work/o.metal", False),
    ]


def fill(box, programs):
    """Writes the inputs of all outputs."""
    (box.work / "e.metal").write_text(EPISODE)
    (box.work / "kernel.metal").write_text(KERNEL)
    (box.work / "stage.metal").write_text(STAGE)
    for number, name in enumerate(("a.mp4", "b.mp4")):
        words = ["export", "e.metal", "-o", name, "--size", "32x18", "--duration", "20", "--frames",
                 f"{300 * number}..{300 * number + 300}"]
        program = Program(box, [programs / "tarnwick", *words])
        if not program.wait(60) or program.status != 0:
            sys.exit(f"A part of a film cannot be made: {program.text()}")


def main(description, kinds, trials=None):
    """Runs the kinds of trials that are named on the command line. A kind is a function of the options, which
    returns its Trials, and whose first line of documentation is its description."""
    parser = argparse.ArgumentParser(description=description, formatter_class=argparse.RawDescriptionHelpFormatter,
                                     epilog="\n".join(f"  {kind.__name__:12} {(kind.__doc__ or '').splitlines()[0]}"
                                                      for kind in kinds))
    parser.add_argument("programs", type=pathlib.Path, help="the folder of the programs")
    parser.add_argument("kinds", nargs="*", help="the kinds of trials; default: all")
    parser.add_argument("--seed", type=int, default=0, help="of the random numbers; default: a new one")
    parser.add_argument("--trials", type=int, default=trials, help=f"of each kind; default: {trials}")
    parser.add_argument("--outputs", help="only these, with commas between them")
    options = parser.parse_args()
    options.programs = options.programs.resolve()
    options.seed = options.seed or random.SystemRandom().randrange(1, 1 << 31)
    if not shutil.which("ffmpeg"):
        print("Skipped: ffmpeg is missing.")
        return SKIPPED
    if subprocess.run([options.programs / "tarnwick", "devices"], capture_output=True).returncode != 0:
        print("Skipped: there is no device.")
        return SKIPPED
    print(f"seed {options.seed}\n| what | trials | failures | slowest |\n|---|---:|---:|---:|", flush=True)
    failures = count = 0
    for kind in kinds:
        if options.kinds and kind.__name__ not in options.kinds:
            continue
        for done in kind(options):
            failures += done.failures
            count += done.count
            done.row()
    return 1 if failures else (0 if count else SKIPPED)
