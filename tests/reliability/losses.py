"""The device is lost at each submission of a command in turn, as after a fault of a driver. The command opens it again:
its pictures and sounds are the same as without the loss. If further devices are lost too, a film goes on, or the
command says so.

Usage: losses.py PROGRAMS [KIND...] [--seed N] [--trials N] [--outputs NAME,NAME]
"""
import subprocess
import sys

import trials
from trials import Box, Output, Program, Trials

FRAMES = 90  # of each film, each with a submission of its own at least
SEVERAL = 5  # devices that are lost in turn

PARTICLES = """// @particles 500
struct Particle { float2 at; };
Particle spawn(uint id, constant Params& p) { return {float2(0.1, 0.002 * float(id))}; }
void update(thread Particle& q, uint id, constant Uniforms& u, constant Params& p) {
    q.at.x = fract(q.at.x + 0.0001 * float(id));
}
float3 place(Particle q, constant Uniforms& u, constant Params& p) { return float3(q.at, 0.02); }
float4 ink(Particle q, float2 at, constant Uniforms& u, constant Params& p) { return float4(0.5); }
float4 fade(float2 uv, Trails t, constant Uniforms& u, constant Params& p) { return t.at(uv) * 0.9; }
float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Trails t) { return t.at(uv); }
float2 sound(float t, constant Params& p) { return float2(0.2 * fract(t * 200.0)); }
"""
GRID = """// @grid 8
struct Vertex { float4 position [[position]]; };
Vertex corner(float2 g, constant Uniforms& u, constant Params& p) {
    return {float4(g * sin(u.time), 0.5, 1.0)};
}
float4 shade(Vertex v, constant Uniforms& u, constant Params& p) { return float4(1.0); }
"""
FEEDBACK = """float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {
    float2 at = 0.5 + 0.3 * float2(cos(u.time * 2.0), sin(u.time * 3.0));
    return float4(max(in.previous(uv).rgb * 0.9, float3(smoothstep(0.1, 0.0, length(uv - at)))), 1.0);
}
float2 sound(float t, constant Params& p) { return float2(0.2 * sin(t * 900.0)); }
"""


def film(name, *words):
    return Output(name, [*words, "-o", "o.mp4", "--size", "160x90"], "work/o.mp4")


def commands():
    length = ["--duration", str(FRAMES / 30), "--fps", "30"]
    ofAll = {output.name: output for output in trials.outputs()}
    return [
        film("fragment", "export", "e.metal", *length),
        film("particles", "export", "particles.metal", *length),
        film("grid", "export", "grid.metal", *length),
        film("feedback", "export", "feedback.metal", *length),
        film("variations", "variations", "e.metal", "--seed", "1", "--count", "3", "--duration", "1"),
        Output("walkthrough", ["walkthrough", "e.metal", "--stages", "stage.metal", "-o", "o.mp4", "--draft",
                               "--page-seconds", str(FRAMES / 30), "--size", "640x360"], "work/o.mp4"),
        Output("still", ["still", "particles.metal", "-o", "o.png", "--size", "160x90"], "work/o.png"),
        Output("stills", ["sheet", "e.metal", "particles.metal", "grid.metal", "-o", "o.png"], "work/o.png"),
        Output("varied", ["variations", "e.metal", "--seed", "1", "--count", "3", "--sheet", "o.png"], "work/o.png"),
        Output("seam", ["loop", "e.metal", "--around", "0.5", "--range", "0.1", "--seam", "o.png"], "work/o.png"),
        *(ofAll[name] for name in ("pages", "thumbnail", "spectrum", "wav")),
    ]


def decoded(output, box):
    """The frames and samples of a film, the bytes of other results; None if there is no result."""
    place = output.at(box)
    if place.suffix != ".mp4" or not place.exists():
        return trials.contentsOf(place)
    return subprocess.run(["ffmpeg", "-v", "error", "-i", str(place), "-f", "framemd5", "-"], check=True,
                          capture_output=True, stdin=subprocess.DEVNULL).stdout


def fill(box, programs):
    trials.fill(box, programs)
    for name, text in (("particles", PARTICLES), ("grid", GRID), ("feedback", FEEDBACK)):
        (box.work / f"{name}.metal").write_text(text)


def run(output, box, programs, loss):
    output.remove(box)
    box.given["TARNWICK_LOSE_DEVICE"] = loss
    return Program(box, output.command(programs))


def devices(options):
    """Each submission of films, stills, sheets, pages and sounds"""
    box = Box()
    fill(box, options.programs)
    for output in commands():
        if options.outputs and output.name not in options.outputs.split(","):
            continue
        box.given["TARNWICK_LOSE_DEVICE"] = "0"
        program = run(output, box, options.programs, "0")
        if not program.wait(120) or program.status != 0:
            sys.exit(f"{output.name} fails without a fault: {program.text()}")
        whole = decoded(output, box)
        made = Trials(f"{output.name}: lost device", options.seed)
        isFilm = output.place.endswith(".mp4")
        goesOn = 0
        for trial in range(options.trials):
            isRandom = isFilm and trial >= options.trials // 2
            number = made.dice.randrange(trial + 1, FRAMES) if isRandom else trial + 1
            made.begin(f"lost at submission {number}")
            program = run(output, box, options.programs, f"{number}:1")
            made.checkEnd(program, 60, (0,))
            if decoded(output, box) != whole:
                made.complain("The result is another one than without the loss.")
            program = run(output, box, options.programs, f"{number}:{SEVERAL}")
            made.checkEnd(program, 60, (0, 1))
            if program.status != 0 and "lost twice" not in program.text():
                made.complain(f"It does not say that the device was lost twice: {program.text()!r}")
            if program.status == 0 and decoded(output, box) != whole:
                made.complain("The result is another one after several losses.")
            goesOn += program.status == 0
            made.checkProcesses()
            output.remove(box)
            made.checkTemporary(box)
            if program.status == 0 and not isFilm:
                break  # there is no such submission
        print(f"{output.name}: goes on {goesOn} times of {made.count} if {SEVERAL} devices are lost", file=sys.stderr)
        yield made
    box.remove()


if __name__ == "__main__":
    sys.exit(trials.main(__doc__, [devices], trials=30))
