# What a step has to get round or to name, in a mount namespace of its own. $FAKE is empty.
. "$SUPPORT/obstacles.sh"

# read_only FOLDER: with all that is in it.
read_only() { mount --bind "$1" "$1"; mount -o remount,ro,bind "$1"; }

SharedMemorySmall() { hide /dev/shm -o size=64k; }
DataFolderTiny() { hide "$DATA" -o size=64k; }
RoomNowhere() {
  for full in "$DATA" "$TMPDIR"; do
    hide "$full" -o size=64k
    head -c 64k /dev/zero >"$full/big" 2>/dev/null || true
  done
}
DataFolderMissing() { rm -r "$HOME/Library"; }
DataFolderReadOnly() { read_only "$DATA"; }
ProfileReadOnly() { mkdir "$DATA/cef"; read_only "$DATA/cef"; }
LockOfAnotherHost() { mkdir -m 700 "$DATA/cef"; ln -s otherhost-123 "$DATA/cef/SingletonLock"; }
TemporaryFolderNotOurs() { read_only "$TMPDIR"; }
EnvironmentIsNoUtf8() { export ODD=$'\xE9' LAST=1; }
DisplayMissing() { unset DISPLAY WAYLAND_DISPLAY; }
DisplayDead() { export DISPLAY=:4242; }
# Takes connections, and says nothing.
DisplaySilent() {
  export DISPLAY=:4243
  coproc timeout 8 python3 -c 'import socket, time
display = socket.socket(socket.AF_UNIX)
display.bind("\0/tmp/.X11-unix/X4243")
display.listen()
print("", flush=True)
time.sleep(8)'
  read -r <&"${COPROC[0]}"
}

ChromiumMissing() { chromium /dev/null; }
# behaves KIND: one of fake_chromium.cpp.
behaves() { fake_chromium <<<"FAKE_CHROMIUM=$1 exec '$FAKE_PROGRAM' \"\$@\""; }
ChromiumTooOld() { behaves old; }
ChromiumHangs() { behaves silent; }
WindowDoesNotCome() { behaves windowless; }
PolicyOfAnAccount() { behaves forbidden; }
PolicyOfTheMachine() { policy managed '{"RemoteDebuggingAllowed": false, // why
}'; }
PolicyRecommended() { policy recommended '{"DeveloperToolsAvailability": 2}'; }
ChromiumIsAStub() {
  keep_chromium
  chromium /bin/false
  hide /opt
  mkdir -p /opt/google/chrome
  printf '#!/bin/sh\nexec "%s/kept/chromium" "$@"\n' "$FAKE" >/opt/google/chrome/chrome
  chmod 755 /opt/google/chrome/chrome
}
# As one that finds its profile in use, which ours cannot know in advance.
ChromiumEndsInTheUsersProfile() {
  keep_chromium
  fake_chromium <<END
for argument; do [ "\$argument" != --user-data-dir="${DATA%/}/cef" ] || exit 0; done
exec "$FAKE/kept/chromium" "\$@"
END
}

# As one who is not root, for whom there is a sandbox. as_ordinary_user COMMAND ARGV0 PROGRAM ..
as_ordinary_user() {
  exec unshare --user --map-user=65534 --map-group=65534 --keep-caps /bin/bash -ec "$1
exec setpriv --ambient-caps=-all --inh-caps=-all /bin/bash -c 'exec -a \"\$0\" \"\$@\"' \"\$@\"" - "${@:2}"
}
OrdinaryUser() { as_ordinary_user : "$@"; }
OrdinaryUserWithoutNamespaces() {
  as_ordinary_user 'echo 0 >/proc/sys/user/max_user_namespaces' "$@"
}

# Another /tmp, in which the build and the display's socket keep their places.
HomeNotSet() {
  local keep
  for keep in /tmp/.X11-unix "$STAGE" "$2"; do
    [[ $keep == /tmp/* ]] || continue
    local to="$FAKE/${keep#/tmp/}"
    if [ -d "$keep" ]; then mkdir -p "$to"; else mkdir -p "${to%/*}"; touch "$to"; fi
    mount --rbind "$keep" "$to"
  done
  # AppKit cannot have its own folder there.
  touch "$FAKE/GNUstepSecure$(id -u)"
  unset HOME TMPDIR
  mount --rbind "$FAKE" /tmp
}

meet "$@"
