"""A Chromium without a window, controlled through a pipe, with the standard library alone."""

import base64
import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import time

PROGRAMS = ("chromium", "chromium-browser", "google-chrome")


def find_program():
    return next(filter(None, map(shutil.which, PROGRAMS)), None)


class Browser:
    """Shows one page at a time. Collects the page's network requests and the errors on its console."""

    def __init__(self, width=1600, height=1000):
        self.folder = tempfile.TemporaryDirectory()
        # The browser reads commands from descriptor 3 and writes answers to 4, each with NUL at its end.
        read_commands, self.commands = os.pipe()
        self.answers, write_answers = os.pipe()

        def connect():
            # Move the pipes to high descriptors first: one of them may already be 3 or 4.
            read, write = os.dup(read_commands), os.dup(write_answers)
            os.dup2(read, 3)
            os.dup2(write, 4)

        self.process = subprocess.Popen(
            [find_program(), "--headless", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
             "--hide-scrollbars", "--no-first-run", "--disable-background-networking", "--disable-sync",
             "--disable-component-update", "--remote-debugging-pipe", f"--user-data-dir={self.folder.name}",
             f"--window-size={width},{height}", "about:blank"],
            preexec_fn=connect, close_fds=False, stderr=subprocess.DEVNULL, stdout=subprocess.DEVNULL)
        os.close(read_commands)
        os.close(write_answers)
        self.buffer = b""
        self.number = 0
        self.session = None
        self.events = []
        target = next(t for t in self.call("Target.getTargets")["targetInfos"] if t["type"] == "page")
        self.session = self.call("Target.attachToTarget", targetId=target["targetId"], flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Network", "Log"):
            self.call(domain + ".enable")
        self.resize(width, height)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        # When Chromium is killed, its child processes go on writing into the folder for a moment.
        self.session = None
        self.call("Browser.close")
        self.process.wait()
        os.close(self.commands)
        self.folder.cleanup()

    def receive(self):
        while b"\0" not in self.buffer:
            piece = os.read(self.answers, 1 << 16)
            if not piece:
                raise EOFError("the browser has ended")
            self.buffer += piece
        message, self.buffer = self.buffer.split(b"\0", 1)
        return json.loads(message)

    def call(self, method, **parameters):
        self.number += 1
        message = {"id": self.number, "method": method, "params": parameters}
        if self.session:
            message["sessionId"] = self.session
        data = json.dumps(message).encode() + b"\0"
        while data:
            data = data[os.write(self.commands, data):]
        while True:
            answer = self.receive()
            if answer.get("id") == self.number:
                if "error" in answer:
                    raise RuntimeError(f"{method}: {answer['error']}")
                return answer["result"]
            self.events.append(answer)

    def open(self, path):
        """Opens a file and waits until it has loaded."""
        self.events.clear()
        self.call("Page.navigate", url=pathlib.Path(path).resolve().as_uri())
        while self.value("document.readyState + location.protocol") != "completefile:":
            time.sleep(0.02)

    def complaints(self):
        """Console messages, script errors and blocked requests."""
        self.value("0")
        wanted = ("Log.entryAdded", "Runtime.exceptionThrown", "Runtime.consoleAPICalled", "Network.loadingFailed")
        return [event for event in self.events if event.get("method") in wanted]

    def requests(self):
        """The addresses that the page requested, except its own."""
        sent = [event["params"]["request"]["url"] for event in self.events
                if event.get("method") == "Network.requestWillBeSent"]
        return sent[1:]

    def value(self, expression):
        """The value of a JavaScript expression in the page."""
        result = self.call("Runtime.evaluate", expression=expression, returnByValue=True, awaitPromise=True)
        if "exceptionDetails" in result:
            raise RuntimeError(result["exceptionDetails"]["exception"].get("description"))
        return result["result"].get("value")

    def resize(self, width, height):
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1, mobile=False)

    def set_dark(self, is_dark):
        self.call("Emulation.setEmulatedMedia",
                  features=[{"name": "prefers-color-scheme", "value": "dark" if is_dark else "light"}])

    def picture(self, path):
        data = self.call("Page.captureScreenshot", format="png")["data"]
        pathlib.Path(path).write_bytes(base64.b64decode(data))
