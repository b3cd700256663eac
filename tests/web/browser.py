"""A headless browser with WebGPU, which runs JavaScript for the tests.

The browser is Chromium with its software adapter, so a test needs no GPU. It is driven by the
DevTools protocol over two pipes: messages of JSON, each ended by a zero byte.
"""

import base64
import json
import os
import select
import shutil
import subprocess
import tempfile
import time

PROGRAMS = ("chromium", "chromium-browser", "google-chrome")


def find():
    """The program of the browser; None if there is none."""
    for name in PROGRAMS:
        if path := shutil.which(name):
            return path
    return None


class BrowserError(Exception):
    """The browser ended, took too long, or its page threw an exception."""


class Browser:
    """One page of one browser. Use as a context, which ends the browser."""

    options = ()  # of the program, besides those that every page needs

    def __init__(self, limit=600):
        self.limit = limit  # seconds for one evaluation
        self.folder = tempfile.mkdtemp(prefix="tarnwick-browser-")
        self.last = 0
        self.session = None
        self.buffer = b""
        to_browser, self.to = os.pipe()
        self.come, from_browser = os.pipe()
        page = os.path.join(self.folder, "page.html")
        with open(page, "w", encoding="utf-8") as file:
            file.write("<!doctype html><title>test</title>")
        arguments = [find(), "--headless=new", "--enable-unsafe-webgpu",
                     "--use-webgpu-adapter=swiftshader", "--remote-debugging-pipe",
                     "--no-first-run", "--disable-extensions", "--mute-audio", *self.options,
                     f"--user-data-dir={self.folder}/profile"]
        if os.getuid() == 0:
            arguments.append("--no-sandbox")

        def place_pipes():  # the browser reads from 3 and writes to 4
            source, target = os.dup(to_browser), os.dup(from_browser)
            os.dup2(source, 3)
            os.dup2(target, 4)
            os.set_inheritable(3, True)
            os.set_inheritable(4, True)

        self.process = subprocess.Popen(
            arguments, preexec_fn=place_pipes, close_fds=False,
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            start_new_session=True)
        os.close(to_browser)
        os.close(from_browser)
        self._open_page("file://" + page)
        self.evaluate(PRELUDE)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        """Ends the browser and removes its folder."""
        try:
            self._send("Browser.close", {})
            self.process.wait(10)
        except (OSError, subprocess.TimeoutExpired):
            self.process.kill()
            self.process.wait()
        os.close(self.to)
        os.close(self.come)
        shutil.rmtree(self.folder, ignore_errors=True)

    def evaluate(self, expression):
        """The value of an expression of JavaScript, after the promise if it is one."""
        answer = self._call("Runtime.evaluate", {
            "expression": expression, "awaitPromise": True, "returnByValue": True}, self.session)
        if "exceptionDetails" in answer:
            details = answer["exceptionDetails"]
            raise BrowserError(details.get("exception", {}).get("description", details["text"]))
        return answer["result"].get("value")

    def call(self, function, *arguments):
        """The value of a call of a function of JavaScript with arguments of JSON."""
        return self.evaluate(f"({function})({', '.join(json.dumps(each) for each in arguments)})")

    def open(self, path, base="file://"):
        """Leaves the page for another, and waits until it is loaded."""
        self.evaluate("globalThis.isLeft = true")  # the next page may have the same address
        self.command("Page.navigate", url=base + path)
        self._wait_for(base + path)

    def command(self, method, **params):
        """A command of the DevTools protocol for the page."""
        return self._call(method, params, self.session)

    def screenshot(self):
        """The page as a picture, bytes of PNG."""
        answer = self._call("Page.captureScreenshot", {"format": "png"}, self.session)
        return base64.b64decode(answer["data"])

    def _open_page(self, page):
        target = self._call("Target.createTarget", {"url": page})["targetId"]
        attach = {"targetId": target, "flatten": True}
        self.session = self._call("Target.attachToTarget", attach)["sessionId"]
        self._wait_for(page)

    def _wait_for(self, page):
        end = time.monotonic() + 60
        while time.monotonic() < end:
            try:
                if self.evaluate(f"location.href == {page!r} && !globalThis.isLeft && document.readyState == 'complete'"):
                    return
            except BrowserError:
                pass  # the page replaced the empty one meanwhile
            time.sleep(0.1)
        raise BrowserError("The browser opened no page in 60 s.")

    def _send(self, method, params, session=None):
        self.last += 1
        message = {"id": self.last, "method": method, "params": params}
        if session:
            message["sessionId"] = session
        data = json.dumps(message).encode() + b"\0"
        while data:
            data = data[os.write(self.to, data):]
        return self.last

    def _call(self, method, params, session=None):
        wanted = self._send(method, params, session)
        end = time.monotonic() + self.limit
        while True:
            message = self._receive(end)
            if message.get("id") == wanted:
                if "error" in message:
                    raise BrowserError(message["error"]["message"])
                return message["result"]

    def _receive(self, end):
        while b"\0" not in self.buffer:
            ready, _, _ = select.select([self.come], [], [], max(0, end - time.monotonic()))
            data = os.read(self.come, 1 << 20) if ready else b""
            if not data:
                raise BrowserError("The browser ended." if ready else
                                   f"The browser gave no answer in {self.limit} s.")
            self.buffer += data
        message, _, self.buffer = self.buffer.partition(b"\0")
        return json.loads(message)


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
