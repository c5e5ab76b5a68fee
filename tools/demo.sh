#!/usr/bin/env bash
# Runs one step through the starter, the program and a real browser window, against the gateway box.
# Called by ./dev demo: demo.sh BUILD [ARGUMENT..], and before it builds anything with "check" in
# place of BUILD, which only looks at the arguments.
set -euo pipefail

die() { printf 'demo: %s\n' "$*" >&2; exit 1; }
say() { printf '%s\n' "$*" >&2; }

readonly kinds='good unknown-authority wrong-host expired wrong-host-unknown-authority'

only_check= build_dir=
if [[ $1 == check ]]; then only_check=1; else build_dir=$(realpath "$1"); fi
shift
step=saml interactive= certificate= screenshot=
while (($#)); do
  case $1 in
    saml | custom | logout) step=$1 ;;
    --interactive) interactive=1 ;;
    --certificate)
      certificate=${2:-}
      [[ -n $certificate && " $kinds " == *" $certificate "* ]] || die "--certificate takes one of: $kinds"
      shift
      ;;
    --screenshot)
      [[ -n ${2:-} ]] || die "--screenshot needs a file"
      screenshot=$(realpath -m "$2")
      shift
      ;;
    *) die "unknown argument: $1 (see ./dev help)" ;;
  esac
  shift
done

# Before anybody waits for a picture that cannot be kept. Its name says how it is stored.
if [[ -n $screenshot ]]; then
  rm -f "$screenshot" 2>/dev/null
  { : >"$screenshot"; } 2>/dev/null || die "cannot write $screenshot"
  rm -f "$screenshot"
  [[ $screenshot == *.png || $screenshot == *.jpg ]] || die "--screenshot takes a file named .png or .jpg"
fi
[[ -z $only_check ]] || exit 0
screenshot=${screenshot:-$build_dir/demo.png}
rm -f "$screenshot"

work=$(mktemp -d)
children=()
cleanup() {
  local pid
  for pid in "${children[@]}"; do kill "$pid" 2>/dev/null || true; done
  for pid in "${children[@]}"; do wait "$pid" 2>/dev/null || true; done
  rm -rf "$work"
}
trap cleanup EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

# A user of the demo's own, so that nothing of the real one's is touched.
export HOME=$build_dir/demo-home
mkdir -p "$HOME"

start_display() {
  [[ -n ${DISPLAY:-} ]] && xdpyinfo >/dev/null 2>&1 && return
  [[ -z $interactive ]] || die "--interactive needs a display"
  mkfifo "$work/display"
  # Held open for reading and writing, so that opening it cannot block.
  exec {display_fd}<>"$work/display"
  Xvfb -displayfd "$display_fd" -screen 0 1280x900x24 -nolisten tcp >/dev/null 2>&1 &
  children+=($!)
  local number
  read -r -t 20 -u "$display_fd" number || die "Xvfb did not start"
  export DISPLAY=:$number
  openbox >/dev/null 2>&1 &
  children+=($!)
}

start_gateway() {
  local options=(--port 0 --https-port 0 --exit-with-stdin --authority-file "$work/authority.pem")
  [[ -z $certificate ]] || options+=(--certificate "$certificate" --certificate-for gateway)
  mkfifo "$work/gateway-in" "$work/gateway-out"
  exec {gateway_in}<>"$work/gateway-in" {gateway_out}<>"$work/gateway-out"
  "$build_dir/tools/gateway/embedded-browser-gateway" "${options[@]}" <"$work/gateway-in" >"$work/gateway-out" &
  children+=($!)
  local line
  read -r -t 20 -u "$gateway_out" line || die "the gateway box did not start"
  http=$(sed -n 's/.*"http":"\([^"]*\)".*/\1/p' <<<"$line")
  https=$(sed -n 's/.*"https":"\([^"]*\)".*/\1/p' <<<"$line")
}

# Makes the browser of the demo's user trust the authority of the gateway box.
trust_authority() {
  rm -rf "$HOME/.pki"
  docs/examples/trust-authority "$work/authority.pem"
}

# The window of that title, within half a minute. A window that goes meanwhile makes a search fail.
window() {
  local id tries=150
  while ((tries-- > 0)); do
    id=$(xdotool search --onlyvisible --name "$1" 2>/dev/null | tail -n 1) || true
    [[ -z $id ]] || { echo "$id"; return; }
    sleep 0.2
  done
  echo "no window $1" >&2
  return 1
}

# A window shows a moment before it is drawn, and has only a few colours until then.
picture() {
  [[ ! -e $screenshot ]] || return 0
  local tries=50
  while import -frame -window "$1" "$screenshot" &&
      (($(identify -format %k "$screenshot") < 16 && tries-- > 0)); do
    sleep 0.1
  done
}

# What the user does: answers the certificate question, signs in.
act() {
  local id
  if [[ -n $certificate && $certificate != good ]]; then
    id=$(window '^Corvane Secure$') || return
    picture "$id"
    # The question takes keys only a moment after it shows. "Continue" and "Continuer", "Fortfahren".
    while xdotool search --onlyvisible --name '^Corvane Secure$' >/dev/null; do
      xdotool key alt+c alt+f
      sleep 0.5
    done
  fi
  [[ $step != logout ]] || return 0
  id=$(window 'Sign in') || return
  xdotool windowactivate --sync "$id"
  sleep 1 # the page takes keys only a moment after the window has its title
  xdotool type --delay 40 ada
  picture "$id"
  xdotool key Tab
  xdotool type --delay 40 'open sesame'
  xdotool key Return
}

start_display
start_gateway
origin=$http
if [[ -n $certificate || $step == logout ]]; then
  # The single logout knows its gateway by "https://" only.
  origin=$https
  trust_authority
fi
case $step in
  saml) type=saml-login scenario=saml-redirect cookie='KXSAMLEMBID=box' ;;
  custom) type=custom scenario=custom-finished cookie='KXEBID=box;KXEBSTATUS=EB-LAUNCH' ;;
  logout) type=saml-logout scenario=logout-state2 cookie='KXID=box;;KXFIRST=a=b' ;;
esac

"$build_dir/tools/starter/embedded-browser-start" --type "$type" --url "$origin/$scenario/start" \
  --cookie "$cookie" --timeout "$([[ -n $interactive ]] && echo 300 || echo 60)" --json >"$work/result" &
starter=$!
children+=("$starter")
if [[ -n $interactive ]]; then
  say "sign in as ada, password open sesame"
else
  # Whoever waits for a hand that has failed waits for nothing.
  { act >/dev/null 2>"$work/act" || kill "$starter" 2>/dev/null; } &
  children+=($!)
fi
status=0
wait "$starter" || status=$?
cat "$work/result"
run=$(sed -n 's/.*"helper_process": *\([0-9]*\).*/\1/p' "$work/result")
# Where a step ended as it should, the demo has succeeded.
readonly logged_out=6 stopped=11
[[ $step == logout && $status == "$logged_out" ]] && status=0
((status != stopped)) || say "demo: nobody could work the window: $(tail -n 1 "$work/act" 2>/dev/null)"
say
[[ ! -e $screenshot ]] || say "picture of the window: $screenshot"
say "log of the run:        $build_dir/stage/var/log/Corvane Secure/Logging/debuglog.log"
say
say "next: ${build_dir#"$PWD/"}/tools/log/embedded-browser-log --explain ${run:-last}"
say "                                                   this very run, told step by step"
say "      ./dev demo --certificate unknown-authority   the question about a certificate"
say "      ./dev doctor                                 what this computer has and lacks"
say "      ./dev test                                   all tests"
exit "$status"
