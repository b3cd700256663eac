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
    "other-sound": documents.sound(),
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


# What the player does, a promise of it each, and what that gives.
BEHAVIOURS = [
    ("the step of a frame after a picture of another size was saved", """(async () => {
        const { player } = shown("particles");
        player.seek(4);
        player.play();
        await player.still(1, {width: 16, height: 16});
        await player.exclusively(() => player.drawFrame(0));
        player.pause();
        return player.frames.particles.step;
    })()""", 240),
    ("the size of a picture that is wider than textures are", """(async () => {
        const canvas = new OffscreenCanvas(9000, 8);
        canvas.getContext("2d").fillRect(0, 0, 1, 1);
        const { channels } = shown("feedback").player;
        await channels.showPicture(1, await canvas.convertToBlob());
        const { width, height } = channels.textures[1];
        channels.clear(1);
        return [width, height];
    })()""", [8192, 7]),
    ("players of the sound after three quick clicks", """(async () => {
        const { player } = shown("other-sound");
        let gains = 0;
        player.audioContext().createGain = function () {
            ++gains;
            return AudioContext.prototype.createGain.call(this);
        };
        await Promise.all([1, 0, 1].map(volume => player.setVolume(volume)));
        return gains / 2;
    })()""", 1),
    ("open microphones and cameras after each of several choices", """(async () => {
        const { player } = shown("feedback");
        const media = navigator.mediaDevices, tracks = [];
        media.getUserMedia = async wanted => {
            const stream = await MediaDevices.prototype.getUserMedia.call(media, wanted);
            tracks.push(...stream.getTracks());
            return stream;
        };
        const open = () => tracks.filter(each => each.readyState === "live").length;
        await Promise.all(["microphone", "microphone"].map(each => player.hear(each)));
        const counts = [open()];
        await player.hear("nothing");
        counts.push(open());
        await player.channels.showCamera(0);
        await player.hear("microphone");
        counts.push(open());
        await player.replace(JSON.parse(document.getElementById("document-fragment").textContent));
        counts.push(open());
        const late = player.hear("microphone");
        player.close();
        await late;
        return [...counts, open()];
    })()""", [1, 0, 2, 0, 0]),
    ("buffers and textures that other versions leave", """(async () => {
        let count = 0;
        for (const [type, name] of [[GPUBuffer, "createBuffer"], [GPUTexture, "createTexture"]]) {
            const make = GPUDevice.prototype[name], destroy = type.prototype.destroy;
            GPUDevice.prototype[name] = function (...given) {
                const made = make.apply(this, given);
                made.isCounted = true;
                ++count;
                return made;
            };
            type.prototype.destroy = function () {
                count -= this.isCounted ? 1 : 0;
                this.isCounted = false;
                destroy.call(this);
            };
        }
        const replace = async name => {
            const { player } = shown(name);
            const episode = JSON.parse(document.getElementById("document-" + name).textContent);
            const still = () => player.still(0, {width: 64, height: 64});
            await player.replace(episode);
            await still();
            const before = count;
            for (let version = 0; version < 3; ++version) {
                await player.replace(episode);
                await still();
            }
            return count - before;
        };
        return [await replace("particles"), await replace("grid"), await replace("other-sound")];
    })()""", [0, 0, 0]),
    ("what a fault that the device reports later gives", """(async () => {
        const { player } = shown("mouse");
        const told = new Promise(resolve => (player.events.failed = ({ message }) => resolve(message)));
        player.device.createBuffer({size: 4, usage: 0});
        return (await told).startsWith("The graphics device refuses the episode: ");
    })()""", True),
]


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


class MediaBrowser(PageBrowser):
    """Has a microphone and a camera, which each page may use."""

    options = (*PageBrowser.options, "--use-fake-device-for-media-stream",
               "--use-fake-ui-for-media-stream")


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

    for what, script, wanted in BEHAVIOURS:
        expect(what, tab.evaluate(script), wanted)

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
    with tempfile.TemporaryDirectory() as folder, MediaBrowser() as tab:
        address = os.path.join(folder, "page.html")
        with open(address, "w", encoding="utf-8") as file:
            file.write(page(runtime, EPISODES))
        tab.open(address)
        run(tab, failures)
    return 1 if failures.count else 0


if __name__ == "__main__":
    sys.exit(main())
