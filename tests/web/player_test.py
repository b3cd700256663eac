"""The player of pages in a browser, with episodes whose pictures and sounds are known exactly.

Usage: player_test.py RUNTIME, the joined modules of web/. Ends with 77 without a browser.
"""

import json
import os
import sys
import tempfile

sys.dont_write_bytecode = True
import browser  # noqa: E402
import documents  # noqa: E402
from pages import PageBrowser  # noqa: E402

SIDE = 64
EPISODES = {
    "fragment": documents.fragment(),
    "mouse": documents.fragment(body="vec4f(mouse / u[0].xy, u[0].w * 30.0, 1.0)"),
    "keys": documents.fragment(params=[documents.param("blue", 0, keys=[
        {"time": 0, "value": 0, "ease": "linear"}, {"time": 4, "value": 1, "ease": "linear"}])]),
    "particles": documents.particles(),
    "grid": documents.grid(),
    "feedback": documents.feedback(),
    "sound": documents.sound(),
    "broken": documents.fragment(body="vec5f(0)"),
    "newer": {**documents.fragment(), "version": 2},
}

# Plays nothing by itself, so that only the test draws.
FUNCTIONS = """
const shown = name => document.getElementById(name);
const still = async (name, time, width, height) =>
    [...await shown(name).still(time, width, height)];
const message = async name => {
    await shown(name).ready.catch(() => {});
    return shown(name).shadowRoot.querySelector("[role=status]").textContent;
};
"""


def page(runtime, episodes):
    """A page with an element for each episode."""
    text = "<!doctype html><meta charset=utf-8><title>test</title>"
    for name, episode in episodes.items():
        document = json.dumps(episode).replace("<", "\\u003c")
        text += (f'<script type="application/json" id="document-{name}">{document}</script>'
                 f'<tarnwick-episode id="{name}" of="document-{name}" paused></tarnwick-episode>')
    return text + f'<script type="module">{runtime}</script><script>{FUNCTIONS}</script>'


class Failures:
    count = 0

    def expect(self, what, met, wanted):
        if met != wanted:
            self.count += 1
            print(f"{what}: {met}, not {wanted}")

    def expect_colour(self, what, met, wanted):
        """Devices round halves as they like."""
        if any(abs(one - other) > 1 for one, other in zip(met, wanted, strict=True)):
            self.expect(what, met, wanted)


class Picture:
    """Pixels by column and row from the lower left, as red, green and blue."""

    def __init__(self, values, width=SIDE):
        self.values, self.width = values, width
        self.height = len(values) // 4 // width

    def at(self, x, y):
        start = 4 * ((self.height - 1 - y) * self.width + x)
        return self.values[start:start + 3]


def run(tab, failures):
    def still(name, time, width=SIDE, height=SIDE):
        return Picture(tab.call("still", name, time, width, height), width)

    def message(name):
        return tab.call("message", name)

    expect, expect_colour = failures.expect, failures.expect_colour
    for name in EPISODES:
        if name not in ("broken", "newer"):
            expect(f"message of {name}", message(name), "")

    # A width whose rows are not aligned to 256 bytes.
    wide = still("fragment", 0, 5, 3)
    expect_colour("lower left", wide.at(0, 0), [26, 43, 64])
    expect_colour("upper right", wide.at(4, 2), [230, 213, 64])
    tab.run("shown('fragment').player.choose(0, 1)")
    expect_colour("a moved slider", still("fragment", 0, 5, 3).at(0, 0), [26, 43, 255])
    tab.run("shown('fragment').player.choose(0, undefined)")
    expect_colour("a slider that was reset", still("fragment", 0, 5, 3).at(0, 0), [26, 43, 64])
    expect_colour("mouse and timeDelta of a still", still("mouse", 3).at(1, 1), [128, 128, 0])
    expect_colour("keys", [still("keys", time).at(1, 1)[2] for time in (0, 1, 2, 9)], [0, 64, 128, 255])

    # After step n the light of the first particle is 0.5 - 0.25 * 0.5^n; 241 steps are more than
    # those of one submission.
    for step in (0, 1, 2, 241, 3):
        light = round(255 * (0.5 - 0.25 * 0.5 ** step))
        picture = still("particles", step / 60)
        expect_colour(f"inside in step {step}", picture.at(14, 14), [light] * 3)
        expect_colour(f"outside in step {step}", picture.at(13, 14), [0] * 3)
        if step < 30:
            front = 17 + step
            expect_colour(f"the front of step {step}", picture.at(front, 48), [64] * 3)
            expect_colour(f"before the front of step {step}", picture.at(front + 1, 48), [0] * 3)

    surface = still("grid", 0)
    expect_colour("background", surface.at(30, 10), [0, 0, 255])
    expect_colour("nearer surface", surface.at(40, 10), [0, 255, 0])
    expect_colour("edge of samples", surface.at(31, 50), [0, 64, 191])
    expect_colour("another size", still("grid", 0, 32, 16).at(20, 5), [0, 255, 0])

    expect("no previous frame in a still", [still("feedback", 1).at(3, 3) for _ in range(2)],
           [[16] * 3] * 2)

    samples = tab.evaluate("""(async () => {
        const { player } = shown("sound");
        await player.setVolume(1);
        const { kernel } = player.soundPlayer;
        const context = new OfflineAudioContext(2, 4800, 48000);
        const sound = new player.soundPlayer.constructor(kernel, context);
        for (const piece of [0, 1])
            sound.schedule(await kernel.samples(2 + piece / 20, 2400, player.values), piece / 20);
        const heard = await context.startRendering();
        const near = heard.getChannelData(0).map(
            (sample, at) => Math.abs(sample - (2 + at / 48000)));
        return [Math.max(...near) < 1e-6, ...heard.getChannelData(1).slice(2399, 2401)];
    })()""")
    expect("samples that are heard", samples, [True, 0.25, 0.25])

    broken = message("broken")
    expect("the error of a refused program",
           broken.startswith("The graphics device refuses the episode: "), True)
    expect("the error of another version", message("newer"),
           "The episode has version 2 of the document; this player reads version 1.")


def main():
    if not browser.find():
        print("There is no browser, so the player was not tested.")
        return 77
    with open(sys.argv[1], encoding="utf-8") as file:
        runtime = file.read()
    failures = Failures()
    with tempfile.TemporaryDirectory() as folder, PageBrowser() as tab:
        address = os.path.join(folder, "page.html")
        with open(address, "w", encoding="utf-8") as file:
            file.write(page(runtime, EPISODES))
        tab.open(address)
        run(tab, failures)
    return 1 if failures.count else 0


if __name__ == "__main__":
    sys.exit(main())
