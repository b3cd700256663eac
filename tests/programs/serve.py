"""tarnwick serve, from outside: its pages and states, who gets them, and that no request leaves the folder.

Usage: serve.py TARNWICK
"""

import contextlib
import http.client
import json
import os
import re
import signal
import ssl
import subprocess
import sys
import tempfile
import time

EPISODE = """// @episode 3 <b>Two</b> colours
// @param red 0.25 0 1
float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    return float4(p.red, uv, 1.0);
}
"""
BROKEN = EPISODE.replace("p.red", "p.rde")

failures = 0


def expect(what, met, wanted):
    global failures
    if met != wanted:
        failures += 1
        print(f"{what}: {met!r}, not {wanted!r}")


def write(path, text):
    """As editors do: another file is renamed over it."""
    with open(path + "~", "w", encoding="utf-8") as file:
        file.write(text)
    os.replace(path + "~", path)


class Serving:
    """The host, port and path of the printed link, and what the server prints."""

    def __init__(self, process, errors):
        link = process.stdout.readline()
        self.scheme, self.host, self.port, self.path = re.fullmatch(
            r"(https?)://(127\.0\.0\.1):(\d+)(/.*)\n", link).groups()
        self.process, self.errors = process, errors

    @staticmethod
    def encrypted(host, port, timeout):
        """The server makes its own certificate."""
        context = ssl.create_default_context()
        context.check_hostname = False
        context.verify_mode = ssl.CERT_NONE
        return http.client.HTTPSConnection(host, port, timeout=timeout, context=context)

    def get(self, path, host=None):
        """The status and the text of an answer; the path is sent as it is."""
        kind = http.client.HTTPConnection if self.scheme == "http" else self.encrypted
        connection = kind(self.host, int(self.port), timeout=60)
        with contextlib.closing(connection):
            connection.putrequest("GET", self.path + path, skip_host=True)
            connection.putheader("Host", host or f"{self.host}:{self.port}")
            connection.endheaders()
            answer = connection.getresponse()
            return answer.status, answer.read().decode()

    def state(self, name, holds):
        """The state of an episode once `holds` is true of it."""
        end = time.monotonic() + 60
        while True:
            status, text = self.get("s/" + name)
            state = json.loads(text) if status == 200 else {}
            if state and holds(state) or time.monotonic() > end:
                return state
            time.sleep(0.02)


@contextlib.contextmanager
def serving(*words):
    with tempfile.TemporaryFile("w+") as errors, subprocess.Popen(
            [sys.argv[1], "serve", *words, "--port", "0"], stdout=subprocess.PIPE, stderr=errors,
            text=True) as process:
        try:
            yield Serving(process, errors)
        finally:
            process.send_signal(signal.SIGINT)
            expect("the status after Ctrl-C", process.wait(60), -signal.SIGINT)


def check_file(folder):
    path = os.path.join(folder, "e.metal")
    write(path, EPISODE)
    with serving(path) as served:
        state = served.state("e.metal", lambda state: state["state"] != "waiting")
        expect("the title", state["title"], "<b>Two</b> colours")
        expect("the document", json.loads(served.get("d/e.metal")[1])["params"][0]["value"], 0.25)
        write(path, BROKEN)
        state = served.state("e.metal", lambda state: state["state"] == "faulty")
        expect("the sentence", state["failure"], "e.metal does not compile.")
        finding = state["findings"][0]
        expect("the place", finding["place"], "e.metal:4:21")
        expect("excerpt and caret", finding["excerpt"],
               "    4 |     return float4(p.rde, uv, 1.0);\n      |                     ^~~\n")
        first = state["document"]
        write(os.path.join(folder, "e.json"), '{"name": "e", "values": {"red": 0.75}, "keys": {"tracks": {}}}')
        write(path, EPISODE)
        served.state("e.metal", lambda state: state["state"] == "drawn" and state["document"] != first)
        expect("a value of the settings", json.loads(served.get("d/e.metal")[1])["params"][0]["value"], 0.75)
        served.errors.seek(0)
        printed = served.errors.read()
        expect("the place in the terminal", f"{path}:4:21: error:" in printed, True)


def check_folder(folder):
    inside, outside = os.path.join(folder, "in"), os.path.join(folder, "out")
    os.makedirs(inside)
    os.makedirs(outside)
    write(f"{inside}/a b.metal", EPISODE)
    write(f"{outside}/secret.metal", EPISODE)
    write(f"{inside}/notes.txt", "secret")
    os.symlink(f"{outside}/secret.metal", f"{inside}/link.metal")
    with serving(inside) as served:
        served.state("a%20b.metal", lambda state: state["state"] == "drawn")
        served.state("link.metal", lambda state: state["state"] == "faulty")
        expect("names", [each["address"] for each in json.loads(served.get("site.json")[1])["episodes"]],
               ["a%20b.metal", "link.metal"])
        expect("a page", served.get("e/a%20b.metal")[0], 200)
        for path in ("d/link.metal", "notes.txt", "e/notes.txt", "../out/secret.metal", "d/..%2Fout%2Fsecret.metal",
                     "%2e%2e/out/secret.metal", "d/a%20b.metal%00", "/etc/passwd", "%ff%fe", "." * 6000):
            expect(f"status of {path[:40]}", served.get(path)[0], 404)
        expect("status for another host", served.get("", "rebound.example")[0], 421)


def check_shared(folder):
    with serving(folder, "--listen", "127.0.0.1") as served:
        token = served.path.strip("/")
        expect("the scheme", served.scheme, "https")
        expect("a token", re.fullmatch("[0-9a-z]{26}", token) is not None, True)
        expect("with the token", served.get("")[0], 200)
        served.path = "/"
        for path in ("", "site.json", "events", token, token[:-1] + "/", "/" + token + "/"):
            expect(f"without the token: {path}", served.get(path)[0], 403)


def check_misuse(folder):
    def said(*words):
        done = subprocess.run([sys.argv[1], "serve", *words], stderr=subprocess.PIPE, text=True,
                              check=False, timeout=60)
        return done.returncode, done.stderr

    none = os.path.join(folder, "none")
    expect("a missing file", said(none), (1, f"tarnwick: {none} cannot be read: No such file or directory.\n"))
    expect("a name for an address", said(folder, "--listen", "localhost", "--port", "0"),
           (1, "tarnwick: \"localhost\" is not an address of IPv4 or IPv6, such as 0.0.0.0 or ::.\n"))
    with serving(folder) as served:
        expect("a taken port", said(folder, "--port", served.port),
               (1, f"tarnwick: Port {served.port} of 127.0.0.1 is used by another program; --port names another "
                   "one, or 0 for any that is free.\n"))


def main():
    with tempfile.TemporaryDirectory() as folder:
        for check in (check_file, check_folder, check_shared, check_misuse):
            own = os.path.join(folder, check.__name__)
            os.mkdir(own)
            check(own)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
