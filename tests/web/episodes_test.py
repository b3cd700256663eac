"""Pages of episodes in a browser: their stills, or early pictures of chaotic ones, are compared with those of `tarnwick still`.

Usage: episodes_test.py TARNWICK EPISODE... Ends with 77 without a browser.
"""

import base64
import math
import os
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
import browser  # noqa: E402
from pages import PageBrowser  # noqa: E402

WIDTH, HEIGHT = 320, 180
LEAST = 40  # decibels
# Episodes whose tiles and edges depend on the last bits of a number: a few of their pixels are on
# another side of an edge, and the others must agree.
AMPLIFYING = {"rose-window"}
MOST_FLIPPED = 0.005  # of the pixels
# Episodes whose differences grow with each step, and a time at which they are still small.
CHAOTIC = {"million-petals": 0.1}

COMPARE = """async (png, time, width, height, flipped) => {
    const episode = document.querySelector("tarnwick-episode");
    await episode.ready;
    episode.player.pause();
    const drawn = await episode.still(time, width, height);
    const bytes = Uint8Array.from(atob(png), character => character.charCodeAt(0));
    const picture = await createImageBitmap(new Blob([bytes]), {colorSpaceConversion: "none"});
    const canvas = new OffscreenCanvas(width, height);
    const context = canvas.getContext("2d");
    context.drawImage(picture, 0, 0);
    const wanted = context.getImageData(0, 0, width, height).data;
    const squares = Array(width * height).fill(0);
    drawn.forEach((value, at) => (squares[at >> 2] += (value - wanted[at]) ** 2));
    squares.sort((a, b) => b - a);
    const mean = pixels => pixels.reduce((sum, each) => sum + each / 3, 0) / pixels.length;
    return [mean(squares), mean(squares.slice(flipped * squares.length))];
}"""


def decibels(mean):
    return 10 * math.log10(255 ** 2 / mean) if mean else math.inf


def still_time(name, episode):
    if name in CHAOTIC:
        return CHAOTIC[name]
    with open(episode, encoding="utf-8") as file:
        for line in file:
            if line.startswith("// @still "):
                return float(line.split()[2])
    return 10.0


def compare(tab, tarnwick, episode, folder):
    """Decibels between the still of the page and that of the command: of all pixels, and of those
    without the most different ones."""
    name = os.path.splitext(os.path.basename(episode))[0]
    pages, still = os.path.join(folder, name), os.path.join(folder, name + ".png")
    subprocess.run([tarnwick, "web", episode, "-o", pages, "--single-file"], check=True,
                   stdout=subprocess.DEVNULL)
    time = still_time(name, episode)
    subprocess.run([tarnwick, "still", episode, "-o", still, "--size", f"{WIDTH}x{HEIGHT}",
                    "--time", str(time)], check=True, stdout=subprocess.DEVNULL)
    tab.open(os.path.join(pages, "index.html"))
    with open(still, "rb") as file:
        png = base64.b64encode(file.read()).decode()
    means = tab.call(COMPARE, png, time, WIDTH, HEIGHT, MOST_FLIPPED)
    return [decibels(mean) for mean in means]


def main():
    if not browser.find():
        print("There is no browser, so the pages were not tested.")
        return 77
    tarnwick, *episodes = sys.argv[1:]
    failures = 0
    with tempfile.TemporaryDirectory() as folder, PageBrowser() as tab:
        for episode in episodes:
            try:
                whole, rest = compare(tab, tarnwick, episode, folder)
                name = os.path.splitext(os.path.basename(episode))[0]
                print(f"{name}: {whole:.1f} dB; without the most different pixels {rest:.1f} dB")
                failures += (rest if name in AMPLIFYING else whole) < LEAST
            except browser.BrowserError as error:
                print(f"{os.path.basename(episode)}: {error}")
                failures += 1
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
