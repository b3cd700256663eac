"""A headless browser with WebGPU, which runs JavaScript for the tests.

The browser is Chromium with its software adapter, so a test needs no GPU. It is driven by WebDriver
(webdriver.py). What the standard does not have, such as the size of a telephone, are commands of
DevTools, which chromium-driver passes on.
"""

import base64
import contextlib
import json
import os
import shutil
import tempfile

import webdriver

PROGRAMS = ("chromium", "chromium-browser", "google-chrome")


def find():
    """The program of the browser; None without one, or without its driver."""
    return next(filter(None, map(shutil.which, PROGRAMS)), None) if webdriver.find() else None


class BrowserError(Exception):
    """The browser ended, took too long, or its page threw an exception."""


@contextlib.contextmanager
def errors():
    """Errors of the driver become those of the browser."""
    try:
        yield
    except webdriver.DriverError as error:
        raise BrowserError(str(error)) from error


class Browser:
    """One page of one browser. Use as a context, which ends the browser."""

    options = ()  # of the program, besides those that every page needs
    capabilities = {}  # of WebDriver, besides those

    def __init__(self, limit=600):
        self.folder = tempfile.mkdtemp(prefix="tarnwick-browser-")
        arguments = ["--headless=new", "--enable-unsafe-webgpu", "--use-webgpu-adapter=swiftshader",
                     "--disable-extensions", "--mute-audio", *self.options,
                     f"--user-data-dir={self.folder}/profile"]
        if os.getuid() == 0:
            arguments.append("--no-sandbox")
        page = os.path.join(self.folder, "page.html")
        with open(page, "w", encoding="utf-8") as file:
            file.write("<!doctype html><title>test</title>")
        with errors():
            self.driver = webdriver.Driver({
                "goog:chromeOptions": {"binary": find(), "args": arguments},
                "goog:loggingPrefs": {"browser": "ALL", "performance": "ALL"},
                "timeouts": {"script": 1000 * limit, "pageLoad": 1000 * limit},
                **self.capabilities}, limit + 5)
        self.open(page)
        self.evaluate(PRELUDE)
        self.requests()  # forgets those of the browser's own first page

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        """Ends the browser and removes its folder."""
        self.driver.close()
        shutil.rmtree(self.folder, ignore_errors=True)

    def run(self, script, *arguments):
        """What a script of JavaScript returns, after the promise if it is one. The script is the
        body of a function of the arguments, which are JSON."""
        return self.driver_command("/execute/sync", script=script, args=list(arguments))

    def evaluate(self, expression):
        """The value of an expression of JavaScript, after the promise if it is one."""
        return self.run(f"return ({expression});")

    def call(self, function, *arguments):
        """The value of a call of a function of JavaScript with arguments of JSON."""
        return self.run(f"return ({function})(...arguments);", *arguments)

    def element(self, expression):
        """The driver's name of an element."""
        [name] = self.evaluate(expression).values()
        return name

    def open(self, path, base="file://"):
        """Leaves the page for another, and waits until it is loaded."""
        self.driver_command("/url", url=base + path)

    def window(self):
        """The name of the window, a tab, that is driven."""
        with errors():
            return self.driver.value("/window")

    def open_window(self):
        """Opens another tab, which is driven from now on. It hides the others."""
        made = self.driver_command("/window/new", type="tab")
        self.driver_command("/window", handle=made["handle"])

    def close_windows(self, kept):
        """Closes all but one, which is driven from now on."""
        with errors():
            for handle in self.driver.value("/window/handles"):
                if handle != kept:
                    self.driver.command("/window", handle=handle)
                    self.driver.remove("/window")
        self.driver_command("/window", handle=kept)

    def command(self, method, **parameters):
        """A command of the DevTools protocol for the page."""
        return self.driver_command("/goog/cdp/execute", cmd=method, params=parameters)

    def screenshot(self):
        """The page as a picture, bytes of PNG. WebDriver's own command waits 10 s for it, in which the
        software adapter may not end its work."""
        return base64.b64decode(self.command("Page.captureScreenshot", format="png")["data"])

    def requests(self):
        """The addresses that were requested since the last call, those of pages included."""
        events = [json.loads(each["message"])["message"]
                  for each in self.driver_command("/se/log", type="performance")]
        return [each["params"]["request"]["url"] for each in events
                if each["method"] == "Network.requestWillBeSent"]

    def complaints(self):
        """What the browser wrote into its console since the last call, scripts included."""
        return [each["message"] for each in self.driver_command("/se/log", type="browser")]

    def driver_command(self, path, **parameters):
        """A command of WebDriver for the session."""
        with errors():
            return self.driver.command(path, **parameters)



# The device has all features and limits of the adapter, because a module may use optional ones.
# A browser that has just started on a busy machine may have no adapter yet.
PRELUDE = """
(async () => {
    let adapter = null;
    for (let attempt = 0; !adapter && attempt < 40; ++attempt) {
        adapter = await navigator.gpu?.requestAdapter();
        if (!adapter)
            await new Promise(resolve => setTimeout(resolve, 500));
    }
    if (!adapter)
        throw new Error("The browser has no adapter of WebGPU.");
    const requiredLimits = {};
    for (const name in adapter.limits)
        if (typeof adapter.limits[name] === "number")
            requiredLimits[name] = adapter.limits[name];
    globalThis.device = await adapter.requestDevice(
        {requiredFeatures: [...adapter.features], requiredLimits});
})()
"""
