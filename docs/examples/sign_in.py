#!/usr/bin/env python3
"""Signs in by embedded-browser-start and prints the session; says why when that fails.

    sign_in.py URL < COOKIES > SESSION
"""

import json
import subprocess
import sys


class NotSignedIn(Exception):
    """Why there is no session: verdict and reason for programs, the detail for people."""

    def __init__(self, answer):
        super().__init__(": ".join(filter(None, (answer["verdict"], answer["detail"]))))
        self.verdict, self.reason, self.status = answer["verdict"], answer["reason"], answer["status"]


def sign_in(url, cookies, seconds=300):
    """The session's cookies. The gateway's go in by a pipe: arguments show in process lists."""
    command = ["embedded-browser-start", "--type", "saml-login", "--url", url, "--cookie-stdin",
               "--timeout", str(seconds), "--json"]
    run = subprocess.run(command, input=cookies, stdout=subprocess.PIPE, text=True, check=False)
    if not run.stdout:
        raise ValueError("embedded-browser-start was used wrongly")
    answer = json.loads(run.stdout)
    if answer["verdict"] != "signed in":
        raise NotSignedIn(answer)
    return answer["return_data"]["postauthcookie"]


def main():
    try:
        print(sign_in(sys.argv[1], sys.stdin.read()))
    except NotSignedIn as failure:
        print(failure, file=sys.stderr)
        sys.exit(failure.status)


if __name__ == "__main__":
    main()
