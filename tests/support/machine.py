"""What long runs and recipes are tried on: a user, a display, gateways. As root the runs belong to a
user of their own, so that what they leave can be told from the rest."""

import glob
import json
import os
import shutil
import signal
import subprocess
import tempfile
import time

UID = 30333 if os.geteuid() == 0 else os.geteuid()
LIMIT = 60


def read(path):
    try:
        with open(path, "rb") as file:
            return file.read()
    except OSError:
        return b""


def wait_until(condition, limit=LIMIT):
    end = time.monotonic() + limit
    while not condition() and time.monotonic() < end:
        time.sleep(0.02)


class Machine:
    """A user, a display, a gateway whose authority's certificate is in the file `authority`."""

    def __init__(self, build, environment=()):
        self.build = os.path.realpath(build)
        self.work = tempfile.mkdtemp(prefix="machine")
        os.chmod(self.work, 0o755)
        self.home, self.tmp = self.work + "/home", self.work + "/tmp"
        for folder in (self.home, self.tmp):
            os.mkdir(folder, 0o700)
            os.chown(folder, UID, UID)
        self.data = self.home + "/Library/Application Support/Corvane Secure"
        self.environment = {"HOME": self.home, "TMPDIR": self.tmp, "PATH": os.environ["PATH"]}
        self.servers = []
        ready, number = os.pipe()
        self.x = self.serve("Xvfb", "-displayfd", str(number), "-nolisten", "tcp", pass_fds=[number])
        self.environment["DISPLAY"] = ":" + os.read(ready, 20).decode().strip()
        self.serve("openbox", env=self.environment, stdout=subprocess.DEVNULL)
        self.authority = self.work + "/authority.pem"
        box = self.gateway("--authority-file", self.authority)
        self.http, self.https = box["http"], box["https"]
        self.environment.update(environment)

    def serve(self, *command, **options):
        self.servers.append(subprocess.Popen(command, stderr=subprocess.DEVNULL, **options))
        return self.servers[-1]

    def gateway(self, *options):
        box = self.serve(self.build + "/tools/gateway/embedded-browser-gateway", *options,
                         stdout=subprocess.PIPE)
        return json.loads(box.stdout.readline())

    def close(self):
        for process in self.processes():
            os.kill(process, signal.SIGKILL)
        wait_until(lambda: not self.processes(), 5)
        for server in reversed(self.servers):
            server.kill()
            server.wait()
        shutil.rmtree(self.work, ignore_errors=True)

    def as_user(self, *command, **options):
        return subprocess.Popen(command, stdout=subprocess.PIPE, user=UID, group=UID, extra_groups=[],
                                **{"env": self.environment, "stderr": subprocess.DEVNULL, **options})

    def hand(self, *command):
        return subprocess.run(command, env=self.environment, capture_output=True, text=True, check=False)

    def window(self, title):
        found = []
        look = lambda: self.hand("xdotool", "search", "--onlyvisible", "--name", title).stdout.split()
        wait_until(lambda: found.extend(look()) or found)
        return found[0] if found else ""

    def processes(self, mark=b""):
        """The runs' processes whose command line holds the mark, the oldest first."""
        home, servers = b"HOME=" + self.home.encode() + b"\0", [server.pid for server in self.servers]
        numbers = sorted(int(os.path.basename(path)) for path in glob.glob("/proc/[0-9]*"))
        return [number for number in numbers
                if number not in servers and home in read(f"/proc/{number}/environ")
                and mark in read(f"/proc/{number}/cmdline")]
