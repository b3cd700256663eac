"""A session of the WebDriver protocol (W3C WebDriver 2) with chromium-driver."""

import http.client
import json
import os
import re
import shutil
import signal
import subprocess
import threading

PROGRAM = "chromedriver"


def find():
    """The program of the driver; None if there is none."""
    return shutil.which(PROGRAM)


class DriverError(Exception):
    """The driver or the page reports an error, or gives no answer."""


class Driver:
    """A driver with one session, which is one browser."""

    def __init__(self, capabilities, limit):
        self.limit = limit  # seconds until an answer
        self.session = None
        self.process = subprocess.Popen(
            [find(), "--port=0"], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL, text=True, start_new_session=True)
        # Its standard input ends with this process, also with a killed one.
        self.guard = subprocess.Popen(
            ["sh", "-c", "read -r line; kill -s KILL -- -$1", "guard", str(self.process.pid)],
            stdin=subprocess.PIPE, stderr=subprocess.DEVNULL, start_new_session=True)
        self.connection = http.client.HTTPConnection("127.0.0.1", self._port(), timeout=limit)
        threading.Thread(target=self.process.stdout.read, daemon=True).start()
        try:
            answer = self._request("POST", "/session",
                                   {"capabilities": {"alwaysMatch": capabilities}})
        except DriverError:
            self._end()
            raise
        self.session = f"/session/{answer['sessionId']}"

    def command(self, path, **parameters):
        """The value of a command with parameters: its answer."""
        return self._request("POST", self.session + path, parameters)

    def value(self, path):
        """The value of a command without parameters that changes nothing."""
        return self._request("GET", self.session + path)

    def remove(self, path):
        """A command that removes something."""
        return self._request("DELETE", self.session + path)

    def close(self):
        """Ends the browser and the driver."""
        try:
            self.connection.close()  # which an answer that did not come may have left in use
            self.connection.timeout = 10
            self._request("DELETE", self.session)
        except DriverError:
            pass
        self._end()

    def _end(self):
        self.connection.close()
        self.process.terminate()
        try:
            self.process.wait(10)
        except subprocess.TimeoutExpired:
            os.killpg(self.process.pid, signal.SIGKILL)
            self.process.wait()
        self.guard.kill()
        self.guard.wait()
        self.guard.stdin.close()

    def _port(self):
        for line in self.process.stdout:
            if found := re.search(r"started successfully on port (\d+)", line):
                return int(found[1])
        raise DriverError("The driver of the browser did not start.")

    def _request(self, method, path, parameters=None):
        body = None if parameters is None else json.dumps(parameters)
        try:
            self.connection.request(method, path, body, {"Content-Type": "application/json"})
            value = json.loads(self.connection.getresponse().read())["value"]
        except (OSError, http.client.HTTPException) as error:
            self.connection.close()
            raise DriverError(f"The driver of the browser gave no answer: {error}") from error
        if isinstance(value, dict) and "error" in value:
            raise DriverError(value["message"] or value["error"])
        return value
