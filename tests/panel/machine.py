"""What drives the panel for its tests and its picture: a phone, the server and a browser."""

import base64
import contextlib
import os
import shlex
import subprocess
import tempfile
from pathlib import Path

from selenium import webdriver
from selenium.webdriver.chrome.service import Service

ROOT = Path(__file__).resolve().parents[2]
RUN = ROOT / "run"
# The browser looks for nothing outside of this machine.
FLAGS = ("--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
         "--disable-background-networking", "--disable-component-update", "--disable-sync",
         "--hide-scrollbars")


class Phone:
    """An emulated phone that stays up while it is in use, and can be unplugged."""

    def __init__(self, name: str, *options: str):
        self._run = [RUN, "--name", name]
        self._options = options
        self._unplugged = Path(tempfile.mkdtemp()) / "unplugged"

    def __enter__(self):
        # One may be up that a run left when it was broken off.
        subprocess.run([*self._run, "--stop"], stderr=subprocess.DEVNULL)
        subprocess.run([*self._run, "--keep", *self._options, "--", "true"], check=True)
        return self

    def __exit__(self, *_):
        subprocess.run([*self._run, "--stop"], check=True)
        self.plug()
        self._unplugged.parent.rmdir()

    def start(self, *words, **options) -> subprocess.Popen:
        return subprocess.Popen([*self._run, "--input", "--", *words], stdin=subprocess.PIPE,
                                stdout=subprocess.PIPE, **options)

    def run(self, line: str, data: bytes = b"") -> bytes:
        """What a line of shell prints; its status must be 0."""
        process = self.start("sh", "-c", line)
        out, _ = process.communicate(data)
        if process.returncode != 0:
            raise AssertionError(f"{line} ended with {process.returncode}")
        return out

    def via(self) -> str:
        """A command that takes a line for the phone, unless that is unplugged."""
        run = shlex.join(map(str, [*self._run, "--timeout", "9999999", "--input", "--"]))
        line = f"[ ! -e {self._unplugged} ] || {{ echo no phone >&2; exit 1; }}; exec {run} sh -c \"$0\""
        return shlex.join(["sh", "-c", line])

    def unplug(self, panel: "Panel"):
        self._unplugged.touch()
        panel.cut()

    def plug(self):
        self._unplugged.unlink(missing_ok=True)


class Panel:
    """The server, on a phone."""

    def __init__(self, via: str):
        self._process = subprocess.Popen([ROOT / "panel", "--no-open", "--via", via],
                                         stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, text=True)

    def __enter__(self):
        self.address = self._process.stdout.readline().strip()
        return self

    def __exit__(self, *_):
        self._process.terminate()
        self.status = self._process.wait(60)

    def cut(self):
        """Ends what the server has running on the phone, as a pulled cable does."""
        children = {}
        for stat in Path("/proc").glob("[0-9]*/stat"):
            try:
                parent = stat.read_text().rpartition(")")[2].split()[1]
            except OSError:
                continue
            children.setdefault(int(parent), []).append(int(stat.parent.name))
        for server in children.get(self._process.pid, []):
            for child in children.get(server, []):
                with contextlib.suppress(ProcessLookupError):
                    os.kill(child, 15)


def browser() -> webdriver.Chrome:
    options = webdriver.ChromeOptions()
    options.binary_location = "/usr/bin/chromium"
    for flag in FLAGS:
        options.add_argument(flag)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    return webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)


def dress(driver, width: int, height: int, scheme: str):
    driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
        "width": width, "height": height, "deviceScaleFactor": 1, "mobile": False})
    driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {
        "features": [{"name": "prefers-color-scheme", "value": scheme}]})


def photograph(driver, path: Path, beyond: bool = True):
    taken = driver.execute_cdp_cmd("Page.captureScreenshot", {
        "captureBeyondViewport": beyond, "format": path.suffix[1:]})
    path.write_bytes(base64.b64decode(taken["data"]))
