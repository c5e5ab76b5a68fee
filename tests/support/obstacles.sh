# Obstacles of a machine, put up in namespaces of a test's own. A script of obstacles sources this
# first; each obstacle is a function with the name of its test. At its end stands
#   meet OBSTACLE ARGV0 PROGRAM [ARGUMENT..]
# which puts the obstacle up and becomes the program; the obstacle knows the arguments. Status 77: it
# cannot be put up here.

set -e

# hide FOLDER [MOUNT OPTION..]: an empty folder takes its place.
hide() { mkdir -p "$1"; mount -t tmpfs "${@:2}" none "$1"; }

# replace FILE: standard input takes its place.
replace() { cat >"$FAKE/x"; chmod 755 "$FAKE/x"; mount --bind "$FAKE/x" "$1"; }

# chromium FILE: takes the place of every installed Chromium.
chromium() {
  local all=(/usr/lib*/chromium*/chromium* /usr/{,local/}bin/{chromium,chromium-browser,google-chrome})
  for file in $(realpath -q "${all[@]}" /opt/google/chrome/chrome | sort -u); do
    [ ! -x "$file" ] || mount --bind "$1" "$file"
  done
}

# The same, with the Bash commands of standard input.
fake_chromium() { (echo '#!/bin/bash'; cat) >"$FAKE/c"; chmod 755 "$FAKE/c"; chromium "$FAKE/c"; }

# The real one in a place where nothing hides it.
keep_chromium() { mkdir -p "$FAKE/kept"; mount --rbind /usr/lib/chromium "$FAKE/kept"; }

# policy LEVEL JSON: of the machine.
policy() {
  hide /etc/chromium
  mkdir -p "/etc/chromium/policies/$1"
  printf '%s\n' "$2" >"/etc/chromium/policies/$1/p.json"
}

# python CODE [ARGUMENT..]: the C library is "c", the arguments are a[1] and so on.
python() { "$PYTHON" -c "import ctypes, sys; c = ctypes.CDLL(None); a = sys.argv; $1" "${@:2}"; }

# segment FOLDER SIZE: as a run's result lies there.
segment() { python 'c.shmget(c.ftok(a[1].encode(), ord("R")), int(a[2]), 0o1644)' "$@"; }

# as_another COMMAND..: as some other user.
as_another() { setpriv --reuid=12345 --regid=12345 --clear-groups "$@" || exit 77; }

# listen PORT: takes connections and never answers, as long as the program runs.
listen() {
  read -r < <(exec "$PYTHON" -c '
import ctypes, fcntl, socket, struct, sys, time
ctypes.CDLL(None).prctl(1, 9)
server = socket.socket()
fcntl.ioctl(server, 0x8914, struct.pack("16sh14x", b"lo", 1))
server.bind(("127.0.0.1", int(sys.argv[1])))
server.listen()
print("ready", flush=True)
time.sleep(60)' "$1")
}

meet() {
  "$@"
  exec -a "$2" "${@:3}"
}
