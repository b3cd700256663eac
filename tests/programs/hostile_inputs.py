"""Files and links of strangers: each is given to a command as a user would, whole, cut at 40 places,
with flipped bits of a fixed seed, and with absurd sizes. Each command ends by itself within 11 seconds,
in 6 GiB of addresses, says why if it fails, prints no control characters, and leaves no file.

Usage: hostile_inputs.py TARNWICK [KIND...]. Status 77: skipped, with the reason.
"""
import json
import os
import pathlib
import random
import re
import resource
import shutil
import struct
import subprocess
import sys
import tempfile
import zlib

MOST_SECONDS = 11
MOST_ADDRESSES = 6 << 30
PLACES = 40
# Control characters, and marks of writing direction.
UNSAFE = re.compile("[\x00-\x08\x0b-\x1f\x7f-\x9f\u061c\u200e\u200f\u2028-\u202e\u2066-\u2069]")

PLAIN = """// @param level 0.5 0 1 How bright
float4 shade(float2 uv, constant Uniforms& u, constant Params& p) { return p.level; }
"""
WITH_INPUTS = """// @param level 0.5 0 1 How bright
float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {
    return in.channel(0, uv) + p.level * in.audio;
}
"""
SETTINGS = {"name": "A", "values": {"level": 0.25}, "keys": {"tracks": {"level": [
    {"time": 0, "value": 0.2, "ease": "smooth"}, {"time": 8, "value": 0.9, "ease": "hold"}]}}}
PERFORMANCE = "\n".join([
    '{"kind":"performance","version":1,"episode":{"title":"e","sha256":""},"settings":'
    '{"name":"","values":{},"keys":{"tracks":{}}},"clock":[0,0,1,true],"mouse":null}',
    '[0.05,"value","level",0.25]', '[0.05,"mouse",[0.75,0.5]]', '[0.08,"clock",[0.5,1,1,false]]',
    '{"length":0.1,"remarks":["A camera was shown."]}', ""])
CHAPTERS = {"duration": 1, "chapters": [{"at": 0, "title": "one", "settings": "level 0.2"},
                                        {"at": 0.05, "title": "two", "settings": ""}]}
LINK = "tarnwick://open?src=https://a.example/s/abc1/source.metal"


def png(width, height, rows):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
    head = struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + chunk(b"IDAT", zlib.compress(rows)) +
            chunk(b"IEND", b""))


def wav(rate=48000, channels=2, bits=16, length=None):
    samples = b"".join(struct.pack("<hh", i * 37 % 30000, -(i * 37 % 30000)) for i in range(9600))
    length = len(samples) if length is None else length
    frame = channels * bits // 8
    return struct.pack("<4sI4s4sIHHIIHH4sI", b"RIFF", 36 + length & 0xffffffff, b"WAVE", b"fmt ", 16, 1,
                       channels, rate, rate * frame & 0xffffffff, frame & 0xffff, bits, b"data",
                       length) + samples


def encoded(name, *options):
    """The bytes of a test picture or movie that ffmpeg makes."""
    subprocess.run(["ffmpeg", "-v", "error", "-f", "lavfi", "-i", "testsrc=size=32x32:rate=10:duration=1",
                    *options, "-y", name], check=True)
    data = pathlib.Path(name).read_bytes()
    os.remove(name)
    return data


class Trials:
    """Runs commands in the current folder, whose subfolder `tmp` is that of temporary files."""

    def __init__(self, program):
        self.program = program
        self.count = self.failures = 0

    def run(self, what, words, output=None):
        self.count += 1
        before = set(os.listdir("."))
        try:
            done = subprocess.run(
                [self.program, *words], capture_output=True, timeout=MOST_SECONDS,
                stdin=subprocess.DEVNULL, env=dict(os.environ, TMPDIR=os.path.abspath("tmp")),
                preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (MOST_ADDRESSES,) * 2))
        except subprocess.TimeoutExpired:
            self.complain(what, words, f"It is not done after {MOST_SECONDS} s.")
            return
        text = (done.stdout + done.stderr).decode(errors="surrogateescape")
        if done.returncode not in (0, 1, 2):
            self.complain(what, words, f"Status {done.returncode}: {text[:400]!r}")
        if UNSAFE.search(text):
            self.complain(what, words, f"Control characters: {text[:400]!r}")
        if done.returncode != 0 and "tarnwick: " not in text and "error: " not in text:
            self.complain(what, words, f"It does not say why: {text[:400]!r}")
        if text.count("\n") > 40:
            self.complain(what, words, f"It says too much: {text[:800]!r}")
        left = set(os.listdir(".")) - before - {output}
        if left or os.listdir("tmp"):
            self.complain(what, words, f"It leaves {left} and {os.listdir('tmp')}.")
        if output and os.path.exists(output):
            if done.returncode != 0:
                self.complain(what, words, "It writes in spite of the failure.")
            os.remove(output)

    def complain(self, what, words, reason):
        self.failures += 1
        print(f"{what}: tarnwick {' '.join(words)[:200]}\n    {reason}", flush=True)

    def given(self, what, name, data, words, output):
        """Runs the command with the file of that content."""
        pathlib.Path(name).write_bytes(data)
        self.run(f"{name} {what}", words, output)
        os.remove(name)

    def damaged(self, name, data, words, output=None):
        self.given("whole", name, data, words, output)
        for at in sorted({len(data) * place // PLACES for place in range(PLACES)}):
            self.given(f"cut at {at}", name, data[:at], words, output)
        dice = random.Random(2024)
        for place in range(PLACES):
            bits = bytearray(data)
            reach = min(len(data), 200) if place % 2 else len(data)  # heads have the sizes
            flips = [dice.randrange(reach * 8) for _ in range(dice.choice([1, 1, 4]))]
            for flip in flips:
                bits[flip // 8] ^= 1 << flip % 8
            self.given(f"with flipped bits {flips}", name, bytes(bits), words, output)


def still(episode, *words):
    return ["still", episode, "-o", "o.png", "--size", "32x18", *words]


def movie(*words):
    return ["export", "plain.metal", "-o", "o.mp4", "--size", "32x18", *words]


def settings(trials):
    words = still("plain.metal", "--settings", "s.json")
    trials.damaged("s.json", json.dumps(SETTINGS).encode(), words, "o.png")
    keys = [{"time": time, "value": time, "ease": "smooth"} for time in (1e308, -1e308)]
    many = [{"time": time, "value": 1, "ease": "hold"} for time in range(100000)]
    for text in ('{"values": {"level": 1e999}}', '{"values": {"\x1b[2J": 1}}', "[" * 100000,
                 '{"a":' * 100000, '{"name": "\\u001b]0;x\\u0007\\u202e", "values": {}}', "null", '""',
                 json.dumps({"name": "", "values": {"level": "x" * 5000000}}), "\0" * 1000000,
                 json.dumps({"name": "", "values": {"\x9b2J\u202e": 1}, "keys": {"tracks": {}}}),
                 *(json.dumps({"name": "", "values": {}, "keys": {"tracks": {"level": track}}})
                   for track in (keys, many))):
        trials.given(f"of {text[:40]!r}", "s.json", text.encode(), words, "o.png")


def keys(trials):
    data = json.dumps(SETTINGS["keys"]).encode()
    trials.damaged("k.json", data, still("plain.metal", "--keys", "k.json"), "o.png")


def performances(trials):
    words = movie("--performance", "e.performance")
    trials.damaged("e.performance", PERFORMANCE.encode(), words, "o.mp4")
    for old, new in (('"length":0.1', '"length":1e300'), ('"length":0.1', '"length":-1'),
                     ("[0.05,", "[1e300,"), ("A camera", "\\u001b[2J\\u202e"),
                     ('"level",0.25', '"\\u009b2J",1'), ("[0.75,0.5]", "[1e999,0]")):
        trials.given(f"with {new}", "e.performance", PERFORMANCE.replace(old, new).encode(), words, "o.mp4")


def chapters(trials):
    data = json.dumps(CHAPTERS).encode()
    trials.damaged("c.json", data, movie("--duration", "0.1", "--chapters", "c.json"), "o.mp4")


def walkthroughs(trials):
    stage = PLAIN.replace("return", "// caption \u00e9\n    return").encode()
    trials.damaged("w.metal", stage, ["walkthrough", "plain.metal", "--stages", "w.metal"])


def sources(trials):
    for data in (b"", b"\0", b"\xff\xfe" + PLAIN.encode("utf-16le"), bytes(range(256)) * 100,
                 b"// @param " * 100000, b"// @title \x1b]0;x\x07\xe2\x80\xae\n" + PLAIN.encode(),
                 b"// @particles 99999999999999999999\n" + PLAIN.encode()):
        for words in (["meta", "x.metal"], ["check", "x.metal"], ["meta", "x.metal", "--json"]):
            trials.given(f"of {data[:20]!r}", "x.metal", data, words, None)


def sounds(trials):
    words = still("inputs.metal", "--audio", "a.wav")
    trials.damaged("a.wav", wav(), words, "o.png")
    for form in ({"rate": 0}, {"rate": 1}, {"rate": 0x4000bb80}, {"rate": 0xffffffff}, {"channels": 0},
                 {"channels": 65535}, {"bits": 0}, {"bits": 65535}, {"length": 0}, {"length": 0x7fffffff},
                 {"length": 0xffffffff}):
        trials.given(f"of {form}", "a.wav", wav(**form), words, "o.png")


def pngs(trials):
    words = still("inputs.metal", "--channel", "0=c.png")
    rows = b"".join(b"\0" + bytes(x * y % 256 for x in range(96)) for y in range(16))
    trials.damaged("c.png", png(24, 16, rows), words, "o.png")
    for width, height in ((0x7fffffff, 0x7fffffff), (100000, 100000), (0, 5), (1, 0x7fffffff), (16384, 16384)):
        trials.given(f"of {width} x {height}", "c.png", png(width, height, rows), words, "o.png")


def jpegs(trials):
    words = still("inputs.metal", "--channel", "0=c.jpg")
    data = encoded("c.jpg", "-frames:v", "1")
    trials.damaged("c.jpg", data, words, "o.png")
    at = data.index(b"\xff\xc0") + 5
    for width, height in ((65535, 65535), (0, 32), (65535, 1)):
        made = data[:at] + struct.pack(">HH", height, width) + data[at + 4:]
        trials.given(f"of {width} x {height}", "c.jpg", made, words, "o.png")


def movies(trials):
    for name, options in (("c.mp4", ["-pix_fmt", "yuv420p"]), ("c.webm", ["-c:v", "libvpx"]), ("c.gif", [])):
        data = encoded(name, *options)
        trials.damaged(name, data, still("inputs.metal", "--channel", f"0={name}", "--time", "0.5"), "o.png")
    data = encoded("c.mp4", "-pix_fmt", "yuv420p")
    for box in (b"stsz", b"stts", b"stco", b"stsc", b"mdhd", b"tkhd", b"mvhd", b"elst"):
        at = data.index(box)
        for value in (b"\xff" * 4, b"\x7f\xff\xff\xff", bytes(4)):
            for place in (at - 4, at + 8, at + 12, at + 16):
                trials.given(f"with {value!r} in {box!r}", "c.mp4", data[:place] + value + data[place + 4:],
                             still("inputs.metal", "--channel", "0=c.mp4", "--time", "0.5"), "o.png")


def parts(trials):
    subprocess.run([trials.program, *movie("--duration", "1")], check=True, capture_output=True)
    os.rename("o.mp4", "good.mp4")
    data = pathlib.Path("good.mp4").read_bytes()
    trials.damaged("part.mp4", data, ["join", "good.mp4", "part.mp4", "-o", "o.mp4"], "o.mp4")


def links(trials):
    for at in range(len(LINK)):
        trials.run("a cut link", ["open", LINK[:at]])
    for link in (LINK + "\x1b[2J", "tarnwick://open?src=\u202egro.elpmaxe", LINK + "%00", "x" * 100000,
                 "tarnwick://open?src=" + "%" * 100000, "tarnwick://open?src=file:///etc/passwd",
                 "tarnwick://open?src=https://127.0.0.1/x.metal", "tarnwick://open?src=https://[::1]/x.metal",
                 "tarnwick://open?src=https://u:p@a.example/x.metal", "tarnwick://open?src=https://a.example:99999/x"):
        trials.run("a link", ["open", link])


KINDS = [settings, keys, performances, chapters, walkthroughs, sources, sounds, pngs, jpegs, movies, parts, links]


def main():
    program, *names = sys.argv[1:]
    trials = Trials(os.path.abspath(program))
    if not shutil.which("ffmpeg"):
        print("Skipped: ffmpeg is missing.")
        return 77
    if subprocess.run([trials.program, "devices"], capture_output=True).returncode != 0:
        print("Skipped: there is no device.")
        return 77
    with tempfile.TemporaryDirectory() as folder:
        os.chdir(folder)
        os.mkdir("tmp")
        pathlib.Path("plain.metal").write_text(PLAIN)
        pathlib.Path("inputs.metal").write_text(WITH_INPUTS)
        for kind in KINDS:
            if not names or kind.__name__ in names:
                kind(trials)
        os.chdir("/")
    print(f"{trials.count} trials, {trials.failures} failures")
    return 1 if trials.failures else 0


if __name__ == "__main__":
    sys.exit(main())
