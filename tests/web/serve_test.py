"""Pages of `tarnwick serve` in a browser: a saved change is drawn without a reload, errors come and go,
lists follow their folder, and texts of episodes are text.

Usage: serve_test.py TARNWICK. Ends with 77 without a browser.
"""

import os
import signal
import subprocess
import sys
import tempfile
import time

import browser
from pages import PageBrowser

ATTACK = "<img src=x onerror=\"document.title='attacked'\">"
EPISODE = """// @episode 3 {title}
// @param blue 0.25 0.0 1.0
{more}float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {{
    return float4({body});
}}
"""

FUNCTIONS = """
globalThis.mark = "not reloaded";
globalThis.shown = () => document.querySelector("tarnwick-episode");
globalThis.pixel = async () =>
    shown()?.player ? [...(await shown().still(2, 4, 4)).slice(0, 3)] : null;
globalThis.notes = () => {
    const box = document.querySelector(".notes");
    return box?.matches(":popover-open") ? box.innerText : "";
};
globalThis.listed = () => [...document.querySelector(".episodes canvas").getContext("2d")
    .getImageData(0, 0, 1, 1).data.slice(0, 3)];
globalThis.list = () => [...document.querySelectorAll(".episodes h2")].map(each => each.textContent);
"""


class LocalBrowser(PageBrowser):
    """Accepts the certificates that servers make for themselves."""

    capabilities = {"acceptInsecureCerts": True}


class Server:
    """Use as a context, which ends the server with Ctrl-C."""

    def __init__(self, *words):
        self.process = subprocess.Popen([sys.argv[1], "serve", *words], stdout=subprocess.PIPE,
                                        stderr=subprocess.PIPE, text=True)
        self.link = self.process.stdout.readline().strip()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.send_signal(signal.SIGINT)
        self.process.wait(20)


class Checks:
    failures = 0

    def expect(self, what, met, wanted):
        if met != wanted:
            self.failures += 1
            print(f"{what}: {met!r}, not {wanted!r}")

    def wait(self, what, tab, expression, holds):
        """The value of the expression once `holds` is true of it."""
        end = time.monotonic() + 120
        while True:
            value = tab.evaluate(expression)
            if holds(value):
                return value
            if time.monotonic() > end:
                self.failures += 1
                print(f"{what}: still {value!r}")
                return value
            time.sleep(0.2)


def save(path, body, title="A rose", more=""):
    with open(path + ".new", "w", encoding="utf-8") as file:
        file.write(EPISODE.format(title=title, body=body, more=more))
    os.replace(path + ".new", path)


def open_page(tab, link, path=""):
    tab.open(path, link)
    tab.run(FUNCTIONS)


def check_episode(tab, folder, checks):
    path = os.path.join(folder, "rose.metal")
    save(path, "1.0, 0.0, p.blue, 1.0")
    with Server(path, "--port", "0") as server:
        open_page(tab, server.link)
        checks.wait("the first picture", tab, "pixel()", lambda met: met == [255, 0, 64])
        tab.evaluate("shown().player.choose(0, 1)")
        time_before = tab.evaluate("shown().player.time")
        save(path, "0.0, 1.0, p.blue, 1.0", title=ATTACK, more="// @param green 0.5 0 1\n")
        checks.wait("the changed picture, with the slider's value", tab, "pixel()",
                    lambda met: met == [0, 255, 255])
        checks.expect("the time goes on", tab.evaluate("shown().player.time") > time_before, True)
        checks.expect("sliders", tab.evaluate(
            "[...shown().shadowRoot.querySelectorAll('.slider label')].map(each => each.textContent)"),
            ["blue", "green"])
        checks.expect("title", tab.evaluate("document.title"), ATTACK)

        save(path, "0.0, greeen, 0.0, 1.0", more="// <b>\n")
        told = checks.wait("an error", tab, "notes()", lambda met: "greeen" in met)
        for part in ("rose.metal does not compile.", "rose.metal:5:24 error:", "^~~~~~",
                     "    5 |     return float4(0.0, greeen, 0.0, 1.0);"):
            checks.expect(f"{part} is among {told!r}", part in told, True)
        checks.expect("the last picture", tab.evaluate("pixel()"), [0, 255, 255])
        save(path, "0.0, 0.0, p.blue, 1.0")
        checks.wait("the mended picture", tab, "pixel()", lambda met: met == [0, 0, 255])
        checks.wait("no error", tab, "notes()", lambda met: met == "")
        checks.expect("the page", tab.evaluate("mark"), "not reloaded")
        checks.expect("elements of a hostile title", tab.evaluate("document.images.length"), 0)
        address = server.link
    # What the page shows is the only document of a server each time.
    for red, green in ((1, 1), (1, 0)):
        checks.wait("a lost connection", tab, "notes()", lambda met: "is lost" in met)
        save(path, f"{red}, {green}, p.blue, 1.0")
        with Server(path, "--port", address.split(":")[2].strip("/")):
            checks.wait("the picture of the next server", tab, "pixel()",
                        lambda met: met == [255 * red, 255 * green, 255])
            checks.wait("a connection", tab, "notes()", lambda met: met == "")
            checks.expect("the page", tab.evaluate("mark"), "not reloaded")


def check_settings(tab, folder, checks):
    """Faults of the settings are told over the picture, which stays."""
    path = os.path.join(folder, "rose.metal")
    save(path, "1.0, 0.0, p.blue, 1.0")
    with Server(path, "--port", "0") as server:
        open_page(tab, server.link)
        checks.wait("the first picture", tab, "pixel()", lambda met: met == [255, 0, 64])
        with open(os.path.join(folder, "rose.json"), "w", encoding="utf-8") as file:
            file.write('{"values": ')
        checks.wait("a fault of the settings", tab, "notes()", lambda met: "rose.json warning: " in met)
        checks.expect("the picture", tab.evaluate("pixel()"), [255, 0, 64])
        os.remove(os.path.join(folder, "rose.json"))
        checks.wait("no fault", tab, "notes()", lambda met: met == "")


def check_tabs(tab, folder, checks):
    """A browser has six connections to a server, but a visitor may open more pages of it."""
    path = os.path.join(folder, "rose.metal")
    save(path, "1.0, 0.0, p.blue, 1.0")
    with Server(path, "--port", "0") as server:
        first = tab.window()
        for _ in range(7):
            tab.open_window()
            open_page(tab, server.link)
            checks.wait("a picture in one of many windows", tab, "pixel()", lambda met: met == [255, 0, 64])
        tab.close_windows(first)
        save(path, "0.0, 1.0, p.blue, 1.0")
        open_page(tab, server.link)
        checks.wait("the changed picture", tab, "pixel()", lambda met: met == [0, 255, 64])


def check_kinds(tab, folder, checks):
    """Another kind of episode in the same file, and back."""
    path = os.path.join(folder, "rose.metal")
    save(path, "1.0, 0.0, p.blue, 1.0")
    with open(os.path.join(os.path.dirname(__file__), "../../episodes/moon-lotus.metal"), encoding="utf-8") as file:
        other = file.read()
    with Server(path, "--port", "0") as server:
        open_page(tab, server.link)
        checks.wait("the first picture", tab, "pixel()", lambda met: met == [255, 0, 64])
        with open(path, "w", encoding="utf-8") as file:
            file.write(other)
        checks.wait("another episode", tab, "document.title", lambda met: met not in ("A rose", ""))
        checks.wait("another picture", tab, "pixel()", lambda met: met not in (None, [255, 0, 64]))
        checks.expect("errors of another episode", tab.evaluate("notes()"), "")
        save(path, "0.0, 1.0, p.blue, 1.0")
        checks.wait("the first kind again", tab, "pixel()", lambda met: met == [0, 255, 64])
        checks.expect("the page", tab.evaluate("mark"), "not reloaded")


def check_list(tab, folder, checks):
    with Server(folder, "--port", "0", "--listen", "127.0.0.1") as server:
        open_page(tab, server.link)
        checks.wait("the list", tab, "list()", lambda met: met == ["A rose"])
        checks.wait("its still", tab, "listed()", lambda met: met == [0, 255, 64])
        save(os.path.join(folder, "rose.metal"), "1.0, 0.0, p.blue, 1.0")
        checks.wait("the changed still", tab, "listed()", lambda met: met == [255, 0, 64])
        name = "\"><script>x.metal"
        save(os.path.join(folder, name), "1.0, 1.0, p.blue, 1.0", title=ATTACK)
        checks.wait("a new episode", tab, "list()", lambda met: met == [ATTACK, "A rose"])
        checks.expect("the page", tab.evaluate("mark"), "not reloaded")
        address = tab.evaluate("document.querySelector('.episodes a').href")
        open_page(tab, address)
        checks.wait("its picture", tab, "pixel()", lambda met: met == [255, 255, 64])
        open_page(tab, server.link)
        os.remove(os.path.join(folder, name))
        checks.wait("a removed episode", tab, "list()", lambda met: met == ["A rose"])
        checks.expect("an address without the secret part", tab.evaluate(
            "fetch('/site.json').then(answer => answer.status)"), 403)


def main():
    if not browser.find():
        print("There is no browser, so the pages of the server were not tested.")
        return 77
    checks = Checks()
    with tempfile.TemporaryDirectory() as folder, LocalBrowser() as tab:
        for check in (check_episode, check_settings, check_kinds, check_tabs, check_list):
            check(tab, folder, checks)
    return 1 if checks.failures else 0


if __name__ == "__main__":
    sys.exit(main())
