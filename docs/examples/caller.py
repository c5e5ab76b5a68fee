#!/usr/bin/env python3
"""A complete caller of EmbeddedBrowser, written from docs/INTERFACE.md alone.

Runs one step, enforces a time limit, and prints the result as JSON. Exit status: 0 with a result,
1 without one, 2 for wrong usage. The gateway's cookies are read from standard input.

    caller.py PROGRAM TYPE URL [SECONDS] < COOKIES

PROGRAM is the helper's path, TYPE one of saml-login, custom, saml-logout.
"""

import ctypes
import json
import os
import signal
import subprocess
import sys

TYPES = {"saml-login": 1, "custom": 2, "saml-logout": 3}
SEGMENT_SIZE = 4096
GRACE_SECONDS = 10

libc = ctypes.CDLL(None, use_errno=True)
libc.ftok.argtypes = [ctypes.c_char_p, ctypes.c_int]
libc.shmget.argtypes = [ctypes.c_int, ctypes.c_size_t, ctypes.c_int]
libc.shmat.argtypes = [ctypes.c_int, ctypes.c_void_p, ctypes.c_int]
libc.shmat.restype = ctypes.c_void_p
libc.shmdt.argtypes = [ctypes.c_void_p]
libc.shmctl.argtypes = [ctypes.c_int, ctypes.c_int, ctypes.c_void_p]
IPC_CREAT = 0o1000
IPC_EXCL = 0o2000
IPC_RMID = 0


def checked(result, what):
    """The result of a call to the C library, or an exception that says what has failed."""
    if result in (-1, ctypes.c_void_p(-1).value):
        error = ctypes.get_errno()
        raise OSError(error, f"{what}: {os.strerror(error)}")
    return result


class ReturnSegment:
    """The shared memory that takes the result: made empty here, for this user alone."""

    def __init__(self, home):
        folder = home + "/Library/Application Support/Corvane Secure/"
        os.makedirs(folder, mode=0o700, exist_ok=True)
        self.key = checked(libc.ftok(os.fsencode(folder), ord("R")), folder)

    def __enter__(self):
        self.remove()
        flags = IPC_CREAT | IPC_EXCL | 0o600
        self.id = checked(libc.shmget(self.key, SEGMENT_SIZE, flags), "shared memory")
        return self

    def __exit__(self, *_):
        self.remove()

    def read(self):
        """What was written, without the zero bytes behind it."""
        memory = checked(libc.shmat(self.id, None, 0), "shared memory")
        content = ctypes.string_at(memory, SEGMENT_SIZE)
        libc.shmdt(memory)
        return content.split(b"\0", 1)[0]

    def remove(self):
        found = libc.shmget(self.key, 0, 0)
        if found != -1:
            checked(libc.shmctl(found, IPC_RMID, None), "old shared memory")


def run(program, request, seconds):
    """Runs the helper to its end. What asks this program to end is passed on to it."""
    helper = subprocess.Popen([json.dumps(request)], executable=program,
                              stdin=subprocess.DEVNULL, stdout=sys.stderr)
    for number in (signal.SIGHUP, signal.SIGINT, signal.SIGTERM):
        signal.signal(number, lambda received, _: helper.send_signal(received))
    try:
        return helper.wait(seconds)
    except subprocess.TimeoutExpired:
        helper.terminate()
    try:
        return helper.wait(GRACE_SECONDS)
    except subprocess.TimeoutExpired:
        helper.kill()
        return helper.wait()


def main():
    if len(sys.argv) not in (4, 5) or sys.argv[2] not in TYPES:
        print(__doc__, file=sys.stderr)
        return 2
    request = {
        "browsertype": TYPES[sys.argv[2]],
        "url": sys.argv[3],
        "cookie": sys.stdin.read().rstrip("\r\n"),
        "samlslourltoclearcookies": "",
    }
    seconds = float(sys.argv[4]) if len(sys.argv) == 5 else 300
    with ReturnSegment(os.environ["HOME"]) as segment:
        status = run(sys.argv[1], request, seconds)
        content = segment.read()
    if not content:
        print(f"no result; the helper ended with status {status}", file=sys.stderr)
        return 1
    print(json.dumps(json.loads(content), indent=2))
    return 0


if __name__ == "__main__":
    sys.exit(main())
