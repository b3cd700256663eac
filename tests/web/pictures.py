"""Draws the pictures of docs/publishing.md in a browser.

Usage: pictures.py TARNWICK EPISODES FOLDER, with the folder of the episodes. Ends with 77 without a
browser.
"""

import base64
import os
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
import browser  # noqa: E402
from pages import PageBrowser  # noqa: E402

GALLERY = ("chambered-light", "copper-tide", "evening-swell", "listening-lake", "moon-lotus", "rose-window")

SHOW_STILL = """async (time, opensPanel) => {
    const shown = document.querySelector("tarnwick-episode");
    await shown.ready;
    shown.player.pause();
    shown.player.seek(time);
    await shown.still(time, 16, 9);
    if (opensPanel)
        shown.controls.togglePanel();
    shown.controls.show();
    shown.dispatchEvent(new Event("pointermove"));
    await new Promise(resolve => setTimeout(resolve, 2000));
}"""


def save(tab, path):
    picture = tab.command("Page.captureScreenshot", format="jpeg", quality=85)["data"]
    with open(path, "wb") as file:
        file.write(base64.b64decode(picture))


def resize(tab, width, height, scale, is_mobile=False):
    tab.command("Emulation.setDeviceMetricsOverride", width=width, height=height,
                deviceScaleFactor=scale, mobile=is_mobile)


def main():
    if not browser.find():
        print("There is no browser, so the pictures of pages were not drawn.")
        return 77
    tarnwick, episodes, folder = sys.argv[1:]
    os.makedirs(folder, exist_ok=True)
    with tempfile.TemporaryDirectory() as made, PageBrowser() as tab:
        pages = os.path.join(made, "pages")
        subprocess.run([tarnwick, "web", *(f"{episodes}/{name}.metal" for name in GALLERY), "-o", pages,
                        "--still", "--single-file"], check=True, stdout=subprocess.DEVNULL)
        resize(tab, 1120, 630, 1)
        tab.open(f"{pages}/rose-window.html")
        tab.call(SHOW_STILL, 14, False)
        save(tab, f"{folder}/desktop.jpg")
        resize(tab, 390, 780, 1.5, True)
        tab.open(f"{pages}/copper-tide.html")
        tab.call(SHOW_STILL, 8, True)
        save(tab, f"{folder}/telephone.jpg")
        resize(tab, 1120, 700, 1)
        tab.open(f"{pages}/index.html")
        tab.evaluate("Promise.all([...document.images].map(each => each.decode()))")
        save(tab, f"{folder}/gallery.jpg")
    return 0


if __name__ == "__main__":
    sys.exit(main())
