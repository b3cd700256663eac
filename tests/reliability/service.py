"""A sharing service that answers late, half, wrong or not at all. Each command ends with a sentence, by itself or
by a signal where the service says nothing, keeps the sign-in, and leaves no file.

Usage: service.py PROGRAMS [KIND...] [--seed N] [--trials N]
"""
import json
import re
import signal
import socket
import struct
import subprocess
import sys
import threading
import time

import trials
from trials import Box, Program, Trials

TOKEN = "tok-4f1d8a"
# Control characters, and marks of writing direction.
UNSAFE = re.compile("[\x00-\x08\x0b-\x1f\x7f-\x9f\u061c\u200e\u200f\u2028-\u202e\u2066-\u2069]")
HEAD = b"HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nConnection: close\r\n"


def answer(body, status=200, *headers):
    text = body if isinstance(body, bytes) else json.dumps(body).encode()
    return (f"HTTP/1.1 {status} Any\r\nContent-Length: {len(text)}\r\nConnection: close\r\n" +
            "".join(header + "\r\n" for header in headers) + "\r\n").encode() + text


class Service:
    """Answers correctly, and at one address as `fault` does."""

    def __init__(self):
        self.listener = socket.create_server(("127.0.0.1", 0), backlog=64)
        self.root = f"http://127.0.0.1:{self.listener.getsockname()[1]}"
        self.target, self.fault, self.asked = None, None, ""
        threading.Thread(target=self.serve, daemon=True).start()

    def serve(self):
        while True:
            connection, _ = self.listener.accept()
            threading.Thread(target=self.one, args=(connection,), daemon=True).start()

    def one(self, connection):
        try:
            with connection:
                connection.settimeout(30)
                head = b""
                while b"\r\n\r\n" not in head:
                    if not (more := connection.recv(65536)):
                        return
                    head += more
                head, body = head.split(b"\r\n\r\n", 1)
                target = head.split(b" ")[1].decode()
                if self.target and target.startswith(self.target):
                    self.asked = target
                    return self.fault(connection, self)
                length = int((re.search(rb"(?i)content-length: (\d+)", head) or [0, 0])[1])
                while len(body) < length:
                    body += connection.recv(65536)
                connection.sendall(self.usual(target))
        except OSError:
            pass  # the program has closed the connection

    def usual(self, target):
        me = {"email": "ada@a.example", "handle": "ada"}
        return {"/api/app/link": answer({"device": "d", "code": "ABCD", "url": self.root + "/link", "interval": 1}),
                "/api/app/link/poll": answer({"token": TOKEN, **me}), "/api/me": answer(me),
                "/api/account/handle": answer({"handle": "ada"}),
                "/api/shaders": answer({"id": "a1", "url": self.root + "/s/a1"}, 201),
                "/s/a1/source.metal": answer(trials.EPISODE.encode())}.get(target, answer({"error": "No."}, 404))


def sends(*parts, pause=0.0):
    def fault(connection, _):
        for part in parts:
            connection.sendall(part)
            time.sleep(pause)
    return fault


def resets(connection, _):
    connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))


def forever(first, more, pause=0.0):
    def fault(connection, _):
        connection.sendall(first)
        while True:
            connection.sendall(more)
            time.sleep(pause)
    return fault


def redirects(place):
    def fault(connection, service):
        target = place or service.root + service.target
        connection.sendall(answer(b"", 302, f"Location: {target}"))
    return fault


def late(connection, service):
    time.sleep(3)
    connection.sendall(service.usual(service.asked))


def waits(connection, _):
    time.sleep(60)


HTML = b"<!doctype html><html><body><h1>It works!</h1>" + b"<p>page</p>" * 40 + b"</body></html>"
FAULTS = {  # that end by themselves
    "resets": resets,
    "closes": sends(),
    "closes in the status": sends(b"HTTP/1.1 20"),
    "closes in the headers": sends(HEAD),
    "closes in the body": sends(HEAD + b"Content-Length: 100\r\n\r\n{\"email\""),
    "a length that is too small": sends(HEAD + b"Content-Length: 3\r\n\r\n{\"email\":\"a\"}"),
    "a negative length": sends(HEAD + b"Content-Length: -5\r\n\r\n{}"),
    "a length beyond all numbers": sends(HEAD + b"Content-Length: 99999999999999999999999\r\n\r\n{}"),
    "two lengths": sends(HEAD + b"Content-Length: 2\r\nContent-Length: 7\r\n\r\n{}     "),
    "a large length": sends(HEAD + b"Content-Length: 4000000000\r\n\r\n" + b" " * 100000),
    "an endless body": forever(HEAD + b"\r\n", b" " * 65536),
    "endless headers": forever(HEAD, b"X-Header: " + b"x" * 1000 + b"\r\n"),
    "an endless header": forever(HEAD + b"X-Header: ", b"x" * 65536),
    "wrong chunks": sends(HEAD + b"Transfer-Encoding: chunked\r\n\r\nzz\r\n{}\r\n"),
    "half a chunk": sends(HEAD + b"Transfer-Encoding: chunked\r\n\r\nff\r\n{}"),
    "a compressed body": sends(answer(b"\x1f\x8b\x08\0\0\0\0\0\0\3\xab\xae\5\0", 200, "Content-Encoding: gzip")),
    "redirects in a circle": redirects(None),
    "redirects to a file": redirects("file:///etc/passwd"),
    "redirects to nothing": redirects("http://127.0.0.1:1/"),
    "the page of another server": sends(answer(HTML, 200, "Content-Type: text/html")),
    "500 and a page": sends(answer(HTML * 500, 500, "Content-Type: text/html")),
    "204 without a body": sends(b"HTTP/1.1 204 No Content\r\n\r\n"),
    "an empty body": sends(answer(b"")),
    "another document": sends(answer([1, 2, 3])),
    "members of other kinds": sends(answer({name: {"a": []} for name in
                                            ("device", "code", "url", "token", "email", "handle", "id", "error")})),
    "a deep document": sends(answer(b"[" * 900000)),
    "bytes that are not UTF-8": sends(answer(b"{\"error\": \"\xff\xfe\"}", 400)),
    "control characters": sends(answer({"error": "\x1b]0;x\x07\u202eNo.\r\n" * 200}, 400)),
    "another protocol": sends(b"SSH-2.0-OpenSSH_9.2p1\r\n" + bytes(range(256))),
    "records of TLS": sends(b"\x15\x03\x01\0\x02\x02\x46" * 50),
    "too many requests": sends(answer({"error": "There are too many requests."}, 429, "Retry-After: 100000")),
}
SILENT = {  # a signal ends the command
    "never answers": waits,
    "stops in the body": lambda connection, service: (connection.sendall(
        HEAD + b"Content-Length: 100\r\n\r\n{"), waits(connection, service)),
    "drips": forever(b"", b"H", 0.3),
    "drips in the body": forever(HEAD + b"Content-Length: 100000\r\n\r\n", b" ", 0.3),
}
REQUESTS = {  # the command, and the address that it asks for
    "sign-in": (["sign-in", "--no-browser"], "/api/app/link"),
    "whoami": (["whoami"], "/api/me"),
    "handle": (["handle", "ada"], "/api/account/handle"),
    "share": (["share", "e.metal", "--title", "E", "--loop", "a.mp4", "--thumb", "thumb.jpg"], "/api/shaders"),
    "open": (["open", "tarnwick://open?src={root}/s/a1/source.metal", "--no-play"], "/s/a1/source.metal"),
}


def signedIn(options, service):
    box = Box()
    trials.fill(box, options.programs)
    subprocess.run(["ffmpeg", "-v", "error", "-i", "a.mp4", "-frames:v", "1", "thumb.jpg"], cwd=box.work, check=True)
    box.given = {"TARNWICK_SERVER": service.root}
    program = Program(box, [options.programs / "tarnwick", "sign-in", "--no-browser"])
    if not program.wait(30) or program.status != 0:
        sys.exit(f"The sign-in fails without a fault: {program.text()}")
    return box


def check(run, box, program, before, mayPass):
    text = program.text() + program.printed().decode(errors="replace")
    if program.status == 0 and not mayPass:
        run.complain(f"It succeeds: {text[-300:]!r}")
    if UNSAFE.search(text) or TOKEN in text:
        run.complain(f"Control characters or the token: {text[-300:]!r}")
    if len(program.text()) > 1000:
        run.complain(f"It says too much: {text[-300:]!r}")
    run.checkProcesses()
    run.checkTemporary(box)
    left = {file.name for file in box.work.iterdir()} - before
    if left and program.status != 0:
        run.complain(f"It leaves {left}.")
    for name in left:
        (box.work / name).unlink()


def requests(options):
    """Each request of each command, with each fault"""
    service = Service()
    for name, (words, target) in REQUESTS.items():
        box = signedIn(options, service)
        before = {file.name for file in box.work.iterdir()}
        command = [options.programs / "tarnwick", *(word.replace("{root}", service.root) for word in words)]
        run = Trials(f"service, {name}: half or wrong", options.seed)
        for how, fault in FAULTS.items():
            run.begin(how)
            service.target, service.fault = target, fault
            program = Program(box, command)
            run.checkEnd(program, statuses=(0, 1))
            service.target = None
            # Bytes beyond a length, and requests whose answer is not read, may pass. A shader is what it says.
            check(run, box, program, before, name in ("handle", "open"))
        yield run
        run = Trials(f"service, {name}: late", options.seed)
        run.begin("after 3 s")
        service.target, service.fault = target, late
        run.checkEnd(program := Program(box, command), statuses=(0,))
        check(run, box, program, before, True)
        for how, fault in SILENT.items():
            run.begin(how + ", then SIGINT")
            service.target, service.fault = target, fault
            program = Program(box, command)
            time.sleep(run.dice.uniform(0.5, 2))
            program.process.send_signal(signal.SIGINT)
            run.checkEnd(program, statuses=(-signal.SIGINT, 1))
            service.target = None
            check(run, box, program, before, False)
        if Program(box, [options.programs / "tarnwick", "whoami"]).wait(20) is False:
            run.complain("The sign-in is lost.")
        yield run
        box.remove()


if __name__ == "__main__":
    sys.exit(trials.main(__doc__, [requests]))
