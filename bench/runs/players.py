"""Who takes part in a measured run: the page server, a display, the program, and what it is
measured against. Times are nanoseconds of CLOCK_MONOTONIC, which the server uses too."""

import ctypes
import json
import os
import resource
import select
import shutil
import signal
import subprocess
import tempfile
import time

PATIENCE = 60
PR_SET_CHILD_SUBREAPER = 36
IPC_CREAT, IPC_EXCL, IPC_RMID, SHM_RDONLY = 0o1000, 0o2000, 0, 0o10000
SEGMENT_SIZE = 4096
CHROMIUMS = ["/usr/lib/chromium/chromium", "chromium", "google-chrome"]
DATA_FOLDER = "Library/Application Support/Corvane Secure/"

libc = ctypes.CDLL(None, use_errno=True)
libc.shmat.restype = ctypes.c_void_p


class RunFailed(Exception):
    """A run that did not come to its end; the text says which and why."""


class Lines:
    """The lines of a child's output, read with a time limit."""

    def __init__(self, stream):
        self.stream = stream
        self.rest = b""

    def next(self, limit):
        end = time.monotonic() + limit
        while b"\n" not in self.rest:
            left = end - time.monotonic()
            if left <= 0 or not select.select([self.stream], [], [], left)[0]:
                raise RunFailed("nothing came within %d s" % limit)
            piece = os.read(self.stream.fileno(), 65536)
            if not piece:
                raise RunFailed("the output has ended")
            self.rest += piece
        line, self.rest = self.rest.split(b"\n", 1)
        return line.decode()


class Server:
    """The page server; `wait` says when a step of a run took place."""

    def __init__(self, path):
        self.process = subprocess.Popen([path], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.lines = Lines(self.process.stdout)
        self.port = json.loads(self.lines.next(PATIENCE))["port"]
        self.seen = {}
        self.runs = 0

    def new_run(self):
        self.runs += 1
        return "r%d" % self.runs

    def url(self, kind, run, what):
        return "http://gateway.localhost:%d/%s/%s/%s" % (self.port, kind, run, what)

    def wait(self, run, at, limit=PATIENCE):
        end = time.monotonic() + limit
        while (run, at) not in self.seen:
            event = json.loads(self.lines.next(max(0.001, end - time.monotonic())))
            self.seen[event["run"], event["at"]] = event["ns"]
        return self.seen[run, at]

    def stop(self):
        self.process.stdin.close()
        self.process.wait(PATIENCE)


class Display:
    """An X server of the measurement's own."""

    def __init__(self):
        reader, writer = os.pipe()
        self.process = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", "1280x900x24", "-nolisten", "tcp"],
            pass_fds=[writer], stderr=subprocess.DEVNULL)
        os.close(writer)
        with os.fdopen(reader, "rb", buffering=0) as stream:
            self.name = ":" + Lines(stream).next(PATIENCE)

    def stop(self):
        self.process.terminate()
        self.process.wait(PATIENCE)


class Home:
    """A user's home folder; `renew` makes it as good as new."""

    def __init__(self, display):
        self.path = tempfile.mkdtemp(prefix="eb-bench-")
        self.display = display
        self.renew()

    def renew(self):
        self.remove()
        os.makedirs(os.path.join(self.path, "tmp"))
        os.makedirs(self.data_folder())

    def remove(self):
        shutil.rmtree(self.path, ignore_errors=True)

    def data_folder(self):
        return os.path.join(self.path, DATA_FOLDER)

    def environment(self):
        keep = {name: os.environ[name] for name in ("PATH", "LANG", "USER") if name in os.environ}
        return {**keep, "HOME": self.path, "TMPDIR": os.path.join(self.path, "tmp"),
                "DISPLAY": self.display.name}


class Segment:
    """The shared memory for a result, as a caller makes it."""

    def __init__(self, folder):
        self.key = libc.ftok(folder.encode(), ord("R"))
        self.remove()
        self.id = libc.shmget(self.key, SEGMENT_SIZE, IPC_CREAT | IPC_EXCL | 0o600)
        if self.id == -1:
            raise RunFailed("no segment: " + os.strerror(ctypes.get_errno()))
        self.address = libc.shmat(self.id, None, SHM_RDONLY)

    def text(self):
        return ctypes.string_at(self.address).decode()

    def remove(self):
        former = libc.shmget(self.key, 0, 0)
        if former != -1:
            libc.shmctl(former, IPC_RMID, None)
        if hasattr(self, "address"):
            libc.shmdt(ctypes.c_void_p(self.address))


def adopt_orphans():
    """What a run leaves behind becomes a child of this process, to be waited for and counted."""
    libc.prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)


def own_children():
    text = open("/proc/self/task/%d/children" % os.getpid()).read()
    return {int(number) for number in text.split()}


def leave_nothing(lasting, limit=10):
    """Waits until only the processes `lasting` are left of this one's; kills what stays."""
    end = time.monotonic() + limit
    while own_children() - lasting:
        for child in own_children() - lasting:
            if time.monotonic() > end:
                os.kill(child, signal.SIGKILL)
            try:
                os.waitpid(child, os.WNOHANG)
            except ChildProcessError:
                pass
        time.sleep(0.005)


def cpu_of_the_reaped():
    usage = resource.getrusage(resource.RUSAGE_CHILDREN)
    return usage.ru_utime + usage.ru_stime


def cpu_of_the_dead(pid):
    """Of the process alone, in seconds, between its end and its being waited for."""
    fields = open("/proc/%d/stat" % pid).read().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


class Player:
    """Something that opens an address in a browser window."""

    def __init__(self, display):
        self.home = Home(display)
        self.process = None

    def spawn(self, arguments, **options):
        began = time.monotonic_ns()
        self.process = subprocess.Popen(
            arguments, env=self.home.environment(), stdin=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL, start_new_session=True,
            **{"stdout": subprocess.DEVNULL, **options})
        return began

    def stop(self, lasting):
        """Ends what still runs, as a user's session would; `lasting` see leave_nothing."""
        if self.process and self.process.poll() is None:
            self.process.send_signal(signal.SIGTERM)
            try:
                self.process.wait(10)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()
        leave_nothing(lasting)


class Program(Player):
    """The program itself, or the starter that runs it."""

    name = "EmbeddedBrowser"

    def __init__(self, display, program, starter):
        super().__init__(display)
        self.program = os.path.realpath(program)
        self.starter = starter

    def open(self, url):
        request = {"browsertype": 1, "url": url, "cookie": "KXSAMLEMBID=bench",
                   "samlslourltoclearcookies": ""}
        return self.spawn([json.dumps(request)], executable=self.program)

    def sign_in(self, url):
        """From start to verdict: begin and end."""
        began = self.spawn([self.starter, "--json", "--type", "saml-login", "--url", url,
                            "--cookie", "KXSAMLEMBID=bench"], stdout=subprocess.PIPE)
        output = self.process.communicate(timeout=PATIENCE)[0]
        ended = time.monotonic_ns()
        verdict = json.loads(output)["verdict"]
        if verdict != "signed in":
            raise RunFailed("the starter's verdict: " + verdict)
        return began, ended

    def processes(self):
        """Those that run the program: itself and what it forks to clean up after it."""
        found = []
        for name in filter(str.isdigit, os.listdir("/proc")):
            try:
                same = os.readlink("/proc/%s/exe" % name) == self.program
                if same and self.home.path in open("/proc/%s/environ" % name).read():
                    found.append(int(name))
            except OSError:
                pass
        return found

    def memory(self):
        """PSS in MiB."""
        kib = 0
        for process in self.processes():
            for line in open("/proc/%d/smaps_rollup" % process):
                if line.startswith("Pss:"):
                    kib += int(line.split()[1])
        return kib / 1024

    def wake_ups(self):
        count = 0
        for process in self.processes():
            for thread in os.listdir("/proc/%d/task" % process):
                for line in open("/proc/%d/task/%s/status" % (process, thread)):
                    if line.startswith("voluntary_ctxt_switches"):
                        count += int(line.split()[1])
        return count


class Chromium(Player):
    """The same Chromium without the program, with its own defaults."""

    name = "bare Chromium"

    def __init__(self, display, path=None):
        super().__init__(display)
        self.path = path or next((p for p in map(shutil.which, CHROMIUMS) if p), None)
        if not self.path:
            raise RunFailed("no Chromium is installed")

    def open(self, url):
        # Root has no sandbox, with the program neither.
        rights = ["--no-sandbox"] if os.geteuid() == 0 else []
        profile = os.path.join(self.home.path, "profile")
        return self.spawn([self.path, "--user-data-dir=" + profile, "--app=" + url] + rights)


class Playwright(Player):
    """playwright-core on the same Chromium; installed when needed, into `tools`."""

    name = "playwright-core"

    def __init__(self, display, chromium, tools):
        super().__init__(display)
        self.chromium = chromium
        if not shutil.which("node") or not shutil.which("npm"):
            raise RunFailed("node and npm are not installed")
        self.modules = os.path.join(os.path.abspath(tools), "node_modules")
        if not os.path.isdir(os.path.join(self.modules, "playwright-core")):
            os.makedirs(tools, exist_ok=True)
            done = subprocess.run(["npm", "install", "--no-save", "--prefix", tools,
                                   "playwright-core"], capture_output=True, text=True)
            if done.returncode != 0:
                raise RunFailed("npm cannot install playwright-core")

    def sign_in(self, url):
        script = os.path.join(os.path.dirname(os.path.abspath(__file__)), "playwright_sign_in.js")
        began = self.spawn(["node", script, self.modules, self.chromium, url],
                           stdout=subprocess.PIPE)
        output = self.process.communicate(timeout=PATIENCE)[0]
        ended = time.monotonic_ns()
        if b"KXSAMLEBSTATEID" not in output:
            raise RunFailed("playwright-core did not sign in")
        return began, ended
