"""Pages in a browser: foreign texts, controls, other pages, small screens, and browsers that cannot draw.

Usage: pages_test.py TARNWICK. Ends with 77 without a browser.
"""

import contextlib
import functools
import http.server
import os
import struct
import subprocess
import sys
import tempfile
import threading
import time

sys.dont_write_bytecode = True
import browser  # noqa: E402
from pages import END, PageBrowser  # noqa: E402

ATTACK = """<img src=x onerror="document.title='attacked'"></script><script>document.title='attacked'</script>"""
EPISODE = f"""// @episode 3 {ATTACK}
// @teaches {ATTACK}
// @still 2
// @param blue 0.25 0.0 1.0 {ATTACK}
float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {{
    return float4(uv, p.blue, 1.0);
}}
"""

FUNCTIONS = """
globalThis.shown = () => document.querySelector("tarnwick-episode");
globalThis.inside = selector => shown().shadowRoot.querySelector(selector);
globalThis.state = async () => {
    await shown().ready.catch(() => {});
    return {
        message: inside("[role=status]").textContent,
        title: document.title,
        pictures: document.images.length + shown().shadowRoot.querySelectorAll("img").length,
        heading: inside("h1")?.textContent,
        detail: inside(".teaches")?.textContent,
        buttons: [...shown().shadowRoot.querySelectorAll("button")].map(each => each.getAttribute("aria-label")),
        isPlaying: shown().player?.isPlaying ?? false,
        time: shown().player?.time ?? null,
        isWide: document.documentElement.scrollWidth > innerWidth
    };
};
globalThis.pixel = async () => [...(await shown().still(2, 4, 4)).slice(0, 3)];
"""


class QuietHandler(http.server.SimpleHTTPRequestHandler):
    def log_message(self, *_):
        pass


@contextlib.contextmanager
def serving(folder):
    """The address of a server of the folder."""
    handler = functools.partial(QuietHandler, directory=folder)
    with http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler) as server:
        threading.Thread(target=server.serve_forever, daemon=True).start()
        yield f"http://127.0.0.1:{server.server_address[1]}"
        server.shutdown()


class Checks:
    failures = 0

    def expect(self, what, met, wanted):
        if met != wanted:
            self.failures += 1
            print(f"{what}: {met}, not {wanted}")


class Page:
    """An open page, with the functions above."""

    def __init__(self, tab, path, base="file://"):
        self.tab = tab
        tab.open(path, base)
        tab.run(FUNCTIONS)

    def state(self):
        return self.tab.evaluate("state()")

    def __getattr__(self, name):
        return getattr(self.tab, name)


def check_controls(tab, path, checks):
    page = Page(tab, path)
    state = page.state()
    checks.expect("message", state["message"], "")
    checks.expect("title", state["title"], ATTACK)
    checks.expect("pictures", state["pictures"], 0)
    checks.expect("texts over the picture", [state["heading"], state["detail"]], [ATTACK, ATTACK])
    checks.expect("buttons", state["buttons"], ["Reset blue", "Pause", "Sound on", "Sliders",
                                                "Save picture", "Full screen"])
    checks.expect("texts of a slider", page.evaluate(
        "['label', 'small'].map(each => inside('.slider ' + each).textContent)"), ["blue", ATTACK])
    page.click("inside('[aria-controls=panel]')")
    checks.expect("state of the open panel", page.evaluate(
        "[inside('[aria-controls=panel]').ariaExpanded, inside('.panel').checkVisibility()]"),
        ["true", True])
    checks.expect("label of the canvas", page.evaluate("inside('canvas').getAttribute('aria-label')"),
                  ATTACK)
    page.press("p", "p", "k")
    checks.expect("playing after the key k", page.state()["isPlaying"], False)
    checks.expect("blue", page.evaluate("pixel()")[2], 64)
    page.run("inside('.slider input').focus()")
    page.press(END)
    checks.expect("blue of a moved slider", page.evaluate("pixel()")[2], 255)
    checks.expect("what screen readers read of it", page.evaluate("inside('.slider input').ariaValueText"), "1")
    checks.expect("what they would read in each frame", page.evaluate(
        "shown().shadowRoot.querySelectorAll('output, [aria-live]').length"), 0)
    page.click("inside('.slider button')")
    checks.expect("blue after a reset", page.evaluate("pixel()")[2], 64)
    checks.expect("requests of the page", tab.requests(), ["file://" + path])
    checks.expect("what the browser complains of", tab.complaints(), [])
    page.run("""const made = document.createElement("script");
        made.textContent = "document.title = 1";
        document.body.append(made);""")
    checks.expect("title after another script", page.state()["title"], ATTACK)
    checks.expect("a request", page.evaluate("fetch('data:,x').then(() => 'made', () => 'refused')"),
                  "refused")
    # A script of WebDriver itself may call eval.
    checks.expect("eval", page.evaluate("""new Promise(resolve => setTimeout(() => {
        try {
            resolve(eval("'made'"));
        } catch (error) {
            resolve(error.name);
        }
    }))"""), "EvalError")
    checks.expect("refusals of the policy", len(tab.complaints()) >= 3, True)


def check_visitors(tab, path, checks):
    size = {"width": 390, "height": 844, "deviceScaleFactor": 2, "mobile": True}
    tab.command("Emulation.setDeviceMetricsOverride", **size)
    tab.command("Emulation.setEmulatedMedia",
                features=[{"name": "prefers-reduced-motion", "value": "reduce"}])
    state = Page(tab, path).state()
    checks.expect("less motion", [state["isPlaying"], state["time"]], [False, 2])
    checks.expect("wider than a telephone", state["isWide"], False)
    tab.command("Emulation.clearDeviceMetricsOverride")
    tab.command("Emulation.setEmulatedMedia", features=[])


def check_element(tab, folder, checks):
    """The element in another page, which a server gives."""
    with open(os.path.join(folder, "other.html"), "w", encoding="utf-8") as file:
        file.write('<!doctype html><script type="module" src="tarnwick-episode.js"></script>'
                   '<tarnwick-episode src="e.json" bare></tarnwick-episode>'
                   '<tarnwick-episode src="none.json" id="none"></tarnwick-episode>')
    with serving(folder) as base:
        page = Page(tab, "/other.html", base)
        state = page.state()
        checks.expect("message of an element", state["message"], "")
        checks.expect("buttons of a bare element", state["buttons"], [])
        checks.expect("blue of an element", page.evaluate("pixel()")[2], 64)
        checks.expect("message of a missing episode", page.evaluate("""(async () => {
            const other = document.getElementById("none");
            await other.ready.catch(() => {});
            return other.shadowRoot.querySelector("[role=status]").textContent;
        })()"""), "The episode could not be loaded.")
        check_life(page, checks)


def check_life(page, checks):
    """An element that its page moves, scrolls away and gives another episode."""
    page.run("document.getElementById('none').remove()")
    checks.expect("what a finger on the picture scrolls", page.evaluate(
        "getComputedStyle(inside('canvas')).touchAction"), "pan-y pinch-zoom")
    checks.expect("a moved element", page.evaluate("""(async () => {
        document.body.append(document.createElement("hr"), shown());
        await shown().ready;
        return [shown().shadowRoot.querySelectorAll("canvas").length, shown().player.isPlaying];
    })()"""), [1, True])
    checks.expect("the time of an element that is scrolled away and back", page.evaluate("""(async () => {
        const frames = () => new Promise(resolve => setTimeout(resolve, 500));
        const goesOn = async () => {
            await frames();
            const { time } = shown().player;
            await frames();
            return shown().player.time > time;
        };
        const space = document.createElement("div");
        space.style.height = "500vh";
        document.body.insertBefore(space, shown());
        scrollTo(0, 0);
        const away = await goesOn();
        shown().scrollIntoView();
        return [away, await goesOn()];
    })()"""), [False, True])
    checks.expect("another src", page.evaluate("""(async () => {
        shown().setAttribute("src", "none.json");
        const refusal = await shown().ready.catch(({ message }) => message);
        shown().setAttribute("src", "e.json");
        await shown().ready;
        return [refusal, shown().hasAttribute("failed"), inside("[role=status]").textContent];
    })()"""), ["The episode could not be loaded.", False, ""])


def check_gallery(tab, folder, checks):
    """Stills of the episodes, of which the one in the middle is played, with its own policy."""
    with serving(folder) as base:
        tab.open("/index.html", base)
        checks.expect("sizes of stills", tab.evaluate("""(async () => {
            const widths = () => [...document.images].map(each => each.naturalWidth);
            for (let wait = 0; wait < 300 && widths().includes(0); ++wait)
                await new Promise(resolve => setTimeout(resolve, 100));
            return widths();
        })()"""), [960, 960])
        checks.expect("texts", tab.evaluate(
            "[...document.querySelectorAll('h2')].map(each => each.textContent)"), [ATTACK, "f"])
        checks.expect("what is played", tab.evaluate("""(async () => {
            const drawn = () => frames[0]?.document.querySelector("tarnwick-episode[drawn]");
            for (let wait = 0; wait < 300 && !drawn(); ++wait)
                await new Promise(resolve => setTimeout(resolve, 100));
            return [document.querySelectorAll("iframe").length, drawn()?.hasAttribute("bare")];
        })()"""), [1, True])


def check_snapshot(tab, path, checks):
    folder = os.path.join(os.path.dirname(path), "saved")
    tab.command("Browser.setDownloadBehavior", behavior="allow", downloadPath=folder)
    page = Page(tab, path)
    page.state()
    page.press("s")
    for _ in range(300):
        saved = [os.path.join(folder, name) for name in os.listdir(folder)
                 if name.endswith(".png")] if os.path.isdir(folder) else []
        if saved:
            break
        time.sleep(0.1)
    head = open(saved[0], "rb").read(24) if saved else bytes(24)
    checks.expect("size of a saved picture", struct.unpack(">II", head[16:]), (1920, 1080))


RECORDING = """(async () => {
    const movie = document.querySelector("video");
    for (let wait = 0; wait < 300 && (movie.videoWidth === 0 || !shown().hasAttribute("failed")); ++wait)
        await new Promise(resolve => setTimeout(resolve, 100));
    return [movie.videoWidth, movie.loop, movie.checkVisibility(),
            inside("[role=status]").textContent.endsWith(" The page shows a recording instead.")];
})()"""
SHOWN = [960, True, True, True]


def check_failures(tab, path, checks):
    """The device is lost, or too slow, while the page is played."""
    page = Page(tab, path)
    page.state()
    page.run("shown().player.pace.isTooSlow = true;")
    checks.expect("the recording of a slow device", page.evaluate(RECORDING), SHOWN)
    page = Page(tab, path)
    page.state()
    tab.crash_gpu()
    checks.expect("the recording after a loss", page.evaluate(RECORDING), SHOWN)


def check_without_gpu(tab, path, checks):
    tab.hide_gpu()
    page = Page(tab, path)
    state = page.state()
    checks.expect("message without WebGPU", state["message"],
                  "This browser has no WebGPU, with which episodes are drawn. "
                  "The page shows a recording instead.")
    checks.expect("buttons without WebGPU", state["buttons"], [])
    checks.expect("the recording", page.evaluate(RECORDING), SHOWN)


def main():
    if not browser.find():
        print("There is no browser, so the pages were not tested.")
        return 77
    checks = Checks()
    with tempfile.TemporaryDirectory() as folder, PageBrowser() as tab:
        episode = os.path.join(folder, "e.metal")
        with open(episode, "w", encoding="utf-8") as file:
            file.write(EPISODE)

        second = os.path.join(folder, "f.metal")
        with open(second, "w", encoding="utf-8") as file:
            file.write(EPISODE.split("\n", 2)[2])

        def pages(option, *episodes):
            made = os.path.join(folder, option[2:])
            subprocess.run([sys.argv[1], "web", *(episodes or [episode]), "-o", made, option],
                           check=True, stdout=subprocess.DEVNULL)
            return made

        single = os.path.join(pages("--single-file"), "index.html")
        check_controls(tab, single, checks)
        check_snapshot(tab, single, checks)
        check_gallery(tab, pages("--still", episode, second), checks)
        whole = pages("--fallback")
        check_element(tab, whole, checks)
        for check in (check_visitors, check_failures, check_without_gpu):
            check(tab, os.path.join(whole, "index.html"), checks)
    return 1 if checks.failures else 0


if __name__ == "__main__":
    sys.exit(main())
