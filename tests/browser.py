"""A Chromium without a window that is told what to do through two pipes (the protocol of its developer tools)."""
import base64
import itertools
import json
import os
import subprocess
import tempfile


class Browser:
    """`with Browser() as browser: browser.open(url)`; one page at a time."""

    def __enter__(self):
        self.folder = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        (read_commands, self.commands), (self.answers, write_answers) = os.pipe(), os.pipe()

        def take_pipes():  # the browser reads from 3 and writes to 4
            for source, place in ((os.dup(read_commands), 3), (os.dup(write_answers), 4)):
                os.dup2(source, place)

        self.process = subprocess.Popen(
            ["chromium", "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
             "--disable-background-networking", "--disable-component-update", "--disable-sync", "--hide-scrollbars",
             "--remote-debugging-pipe", "--user-data-dir=" + self.folder.name, "about:blank"],
            stderr=subprocess.DEVNULL, stdout=subprocess.DEVNULL, close_fds=False, preexec_fn=take_pipes)
        os.close(read_commands)
        os.close(write_answers)
        self.rest = b""
        self.numbers = itertools.count(1)
        self.session = None
        target = self.call("Target.createTarget", url="about:blank")["targetId"]
        self.session = self.call("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        self.call("Page.enable")
        return self

    def __exit__(self, *_):
        self.session = None
        self.call("Browser.close")
        self.process.wait()
        self.folder.cleanup()

    def message(self):
        while b"\0" not in self.rest:
            part = os.read(self.answers, 1 << 20)
            if not part:
                raise RuntimeError("the browser has ended")
            self.rest += part
        text, self.rest = self.rest.split(b"\0", 1)
        return json.loads(text)

    def call(self, method, **parameters):
        number = next(self.numbers)
        command = {"id": number, "method": method, "params": parameters}
        if self.session:
            command["sessionId"] = self.session
        os.write(self.commands, json.dumps(command).encode() + b"\0")
        while (answer := self.message()).get("id") != number:
            pass
        if "error" in answer:
            raise RuntimeError(f"{method}: {answer['error']['message']}")
        return answer["result"]

    def open(self, url):
        self.call("Page.navigate", url=url)
        while self.message().get("method") != "Page.loadEventFired":
            pass

    def look(self, width, height=900, dark=False):
        """The next measures are for a screen of this size."""
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1, mobile=False)
        scheme = {"name": "prefers-color-scheme", "value": "dark" if dark else "light"}
        self.call("Emulation.setEmulatedMedia", features=[scheme])

    def run(self, script):
        """What the JavaScript expression is worth in the page."""
        result = self.call("Runtime.evaluate", expression=script, returnByValue=True, awaitPromise=True)
        if "exceptionDetails" in result:
            raise RuntimeError(json.dumps(result["exceptionDetails"]))
        return result["result"].get("value")

    def pdf(self):
        return base64.b64decode(self.call("Page.printToPDF", preferCSSPageSize=True)["data"])

    def picture(self, whole=True):
        return base64.b64decode(self.call("Page.captureScreenshot", captureBeyondViewport=whole)["data"])
