#!/bin/bash
# The Debian packages. `packages.sh make WORK SOURCES` builds them below WORK, twice, and looks
# at them; `packages.sh live WORK` installs them in a root of its own, signs in, upgrades beneath a
# sign-in, removes and purges. Nothing of that can be seen from outside.
set -euo pipefail
export LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive
mode=$1 work=$2
faults=0
fault() { echo "$*"; faults=1; }
# same WHAT EXPECTED FOUND
same() { diff <(echo "$2") <(echo "$3") || fault "$1: see above"; }
skip() { echo "skipped: $*"; exit 77; }

make() {
  local deb name
  rm -rf "$work"/{first,second,contents,older}
  mkdir -p "$work/contents"
  "$sources/packaging/deb/make" "$work/build" "$work/first"
  # At another time, by a more careful user elsewhere.
  (umask 077 && sleep 1 && TZ=Asia/Tokyo "$sources/packaging/deb/make" "$work/build" "$work/second")
  for deb in "$work"/first/*.deb; do
    cmp "$deb" "$work/second/${deb##*/}" || fault "one build, two packages"
    name=$(dpkg-deb -f "$deb" Package)
    dpkg-deb -x "$deb" "$work/contents/$name"
    ! grep -rlF "$sources" "$work/contents/$name" || fault "$name tells where it was built"
    lintian --allow-root --fail-on error,warning "$deb" || fault "lintian: see above"
  done
  same "packages" "embedded-browser libebstarter-dev" "$(ls "$work/contents" | xargs)"
  # What a linker knows of, and what not: the browser, and the back end that GNUstep loads.
  same "dependencies" "chromium gnustep-back0.29 libgnustep-gui0.29 libssl3" "$(
    dpkg-deb -f "$work"/first/embedded-browser_*.deb Depends | tr , '\n' | sed 's/^ *//; s/ .*//' |
      grep -xE 'chromium|gnustep-back0.29|libgnustep-gui0.29|libssl3' | xargs)"
  # The same but for its number.
  dpkg-deb -R "$work"/first/embedded-browser_*.deb "$work/older"
  sed -i 's/^Version: .*/Version: 0.0.1/' "$work/older/DEBIAN/control"
  dpkg-deb --root-owner-group -b "$work/older" "$work/older.deb"
}

# A root that is this one with changes of its own, which end with the process.
enter() {
  local root=$work/root/root
  mkdir -p "$work/root"
  mount -t tmpfs tmpfs "$work/root"
  mkdir "$work"/root/{changes,work,root}
  mount -t overlay overlay "$root" \
    -o "lowerdir=/,upperdir=$work/root/changes,workdir=$work/root/work" || skip "no overlay here"
  mount -t proc proc "$root/proc"
  mount --rbind /dev "$root/dev"
  mount -t tmpfs tmpfs "$root/dev/shm"
  mount -t tmpfs tmpfs "$root/tmp"
  mkdir "$root"/tmp/{before,packages,changes}
  cp "$0" "$work/older.deb" "$work"/first/*.deb "$root/tmp/packages"
  mount --bind "$work/root/changes" "$root/tmp/changes"
  cd "$root"
  # Chromium's sandbox refuses to be made in a chroot.
  pivot_root . tmp/before
  umount -l /tmp/before
  exec bash /tmp/packages/packages.sh inside /tmp/packages
}

as_user() {
  setpriv --reuid=ada --regid=ada --clear-groups \
    env -i HOME=/home/ada PATH=/usr/bin:/bin DISPLAY=:77 "$@"
}

# display COMMAND..: until it succeeds; windows that go while it looks at them fail it.
display() {
  for _ in {1..150}; do
    as_user "$@" 2>/dev/null && return
    sleep 0.2
  done
  fault "in vain: $*"
}

inside() {
  local origin step window log='/var/log/Corvane Secure/Logging'
  useradd -m ada
  touch "$work/mark"
  dpkg -i "$work/older.deb"
  same "log folder" "root 777" "$(stat -c '%U %a' "$log")"

  Xvfb :77 -screen 0 1280x900x24 -nolisten tcp -ac >/dev/null 2>&1 &
  mkfifo "$work/out"
  exec 8<>"$work/out"
  as_user embedded-browser-gateway --port 0 --https-port 0 >&8 &
  read -r -t 30 -u 8 origin
  origin=$(grep -o 'http://[^"]*' <<<"$origin")
  display xdotool getmouselocation
  as_user openbox >/dev/null 2>&1 &

  # The user signs in only after another version has been installed.
  as_user embedded-browser-start --type saml-login --cookie KXSAMLEMBID=box --timeout 60 \
    --url "$origin/saml-redirect/start" >"$work/verdict" 2>&1 &
  step=$!
  window=$(display xdotool search --onlyvisible --name 'Sign in to your account')
  dpkg -i "$work"/*_*.deb
  as_user xdotool windowactivate --sync "${window##*$'\n'}"
  sleep 1
  as_user xdotool type --delay 40 ada
  as_user xdotool key Tab
  as_user xdotool type --delay 40 'open sesame'
  as_user xdotool key Return
  wait "$step" || fault "beneath an upgrade: $(cat "$work/verdict")"
  as_user embedded-browser-gateway --scenario saml-redirect --start || fault "signing in"
  same "log" "ada 666" "$(stat -c '%U %a' "$log/debuglog.log")"
  . /usr/share/bash-completion/completions/embedded-browser-start
  _embedded_browser embedded-browser-start --tim ''
  same "completion" --timeout "${COMPREPLY[*]}"
  kill $(jobs -p)
  wait

  dpkg -r embedded-browser libebstarter-dev
  [[ -s $log/debuglog.log ]] || fault "the log went before its time"
  dpkg -P embedded-browser
  same "left of folders" "" "$(find /Applications /Library /var/log/Corvane* /usr/share/*/*bstarter* \
    /usr/share/*/embedded-browser* 2>/dev/null)"
  same "left of files" "" "$(cd "$work/../changes" && find . \
    \( -path './var/lib/dpkg' -o -path './var/cache' -o -path './home' -o -name dpkg.log \
      -o -name '*.cache' \) -prune -o ! -type d -cnewer "$work/mark" -print)"
  same "left in memory" "" "$(ls /dev/shm; ipcs -s | grep 0x; ipcs -m | grep 0x)"
}

case $mode in
  make)
    sources=$3
    make
    ;;
  live)
    ((EUID == 0)) || skip "installing takes root"
    unshare --mount --ipc --pid --fork true || skip "no namespaces here"
    ! dpkg-query -W embedded-browser 2>/dev/null || skip "installed here"
    exec unshare --mount --ipc --pid --fork --kill-child "$0" enter "$work"
    ;;
  enter) enter ;;
  inside) inside ;;
esac
exit $faults
