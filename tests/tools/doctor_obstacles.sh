# What the doctor has to find, each in mount, network and IPC namespaces of its own.
. "$SUPPORT/obstacles.sh"

# Without one the doctor is quick; those whose name begins with Chromium are about it.
[[ $1 == Chromium* || $1 == Nothing ]] || chromium /dev/null

HELPER=$APP/Helpers/EmbeddedBrowser.app
GERMAN=$APP/Resources/CorvaneResource_DE.txt

# What one run leaves, the next one counts; the log's lock is free before and after it.
Nothing() {
  local lock='lock = c.semget(c.ftok(a[1].encode(), 1), 1, 0o1666)'
  mkdir -p "$LOG"
  python "$lock; c.semctl(lock, 0, 16, 1)" "$LOG"
  "$2" --json >/dev/null || true
  python "$lock; sys.exit(c.semctl(lock, 0, 12) != 1)" "$LOG"
}
ProgramMissing() { hide "$APP/Helpers"; }
LibraryMissing() {
  for file in "$HELPER"/EmbeddedBrowser "$HELPER"/*/*/EmbeddedBrowser; do
    [ ! -x "$file" ] || replace "$file" < <(sed 's/libgnustep-gui/libgnustep-gux/g' "$file")
  done
}
MenuMissing() { hide "$HELPER/Resources"; }
CatalogsNotListed() { hide "$APP/Plugins"; }
CatalogMissing() { hide "$APP/Resources"; }
CatalogLacksTexts() { printf '\xEF\xBB\xBF[179]\nValue=x\n' | replace "$GERMAN"; }
CatalogInLatin1() { (cat "$GERMAN"; printf '[9]\nValue=\xDF\n') | replace "$GERMAN"; }
FrameworkMissing() { hide "$FRAMEWORK"; }
FrameworkIsAnotherLibrary() { replace "$FRAMEWORK"/Chromium* <"$(realpath /lib/*/libm.so.6)"; }
FrameworkOfAnotherVersion() { export FAKE_API_HASH=x; replace "$FRAMEWORK"/Chromium* <"$OTHER_FRAMEWORK"; }
TemporaryFolderUseless() { export TMPDIR=$HOME/t; hide "$TMPDIR" -o nr_inodes=1; }
TemporaryFolderFull() { export TMPDIR=$HOME/t; hide "$TMPDIR" -o size=8k; }
DisplayNotSet() { unset DISPLAY WAYLAND_DISPLAY; }
DisplayGone() { export DISPLAY=:4321; }
DisplaySilent() { listen 6077; export DISPLAY=127.0.0.1:77; }
HomeNotSet() { unset HOME; }
HomeRelative() { export HOME=here; }
HomeIsAFile() { touch "$FAKE/file"; export HOME=$FAKE/file; }
DataFolderOpenToAll() { chmod 777 "$DATA"; }
DataFolderOfAnotherUser() { chown 12345 "$DATA" || exit 77; }
DiskFull() { hide "$DATA" -o mode=700,size=16k; }
ProfileReadOnly() { hide "$DATA/cef" -o mode=700,ro; }
ProfileLockedElsewhere() { ln -s elsewhere-1 "$DATA/cef/SingletonLock"; }
SegmentTooSmall() { segment "$DATA" 100; }
SegmentOfAnotherUser() { chmod 755 "$HOME"; as_another "$PYTHON" -c 'import ctypes, sys
c = ctypes.CDLL(None); c.shmget(c.ftok(sys.argv[1].encode(), ord("R")), 4096, 0o1644)' "$DATA"; }
SegmentsUsedUp() { echo 0 >/proc/sys/kernel/shmmni; }
SegmentsNearlyUsedUp() {
  echo 10 >/proc/sys/kernel/shmmni
  python '[c.shmget(0, 9, 0o1600) for i in range(9)]'
}
SharedPagesNearlyUsedUp() {
  echo 100 >/proc/sys/kernel/shmall
  python 'c.shmget(0, 95 * 4096, 0o1600)'
}
SemaphoresNearlyUsedUp() {
  echo 250 32000 32 10 >/proc/sys/kernel/sem
  python '[c.semget(0, 1, 0o1600) for i in range(9)]'
}
SharedMemoryFolderSmall() { hide /dev/shm -o size=64k; }
UserWithoutAnEntry() {
  for file in passwd nsswitch.conf; do mount --bind /dev/null "/etc/$file"; done
  mkdir -p "$LOG"
  hide "${LOG%/*}" -o ro
}
LogFolderMissing() { hide "${LOG%/*}"; }
LogReadOnly() { hide "$LOG" -o ro; }
LogIsALink() { hide "$LOG"; ln -s "$FAKE/x" "$LOG/debuglog.log"; }
LogHasAnotherName() { hide "$LOG"; touch "$LOG/a"; ln "$LOG/a" "$LOG/debuglog.log"; }
LogIsAFolder() { hide "$LOG"; mkdir "$LOG/debuglog.log"; }
LogFull() {
  hide "$LOG"
  touch "$LOG/debuglog.log"
  (umask 0; truncate -s 30M "$FAKE/full")
  mount --bind "$FAKE/full" "$LOG/debuglog.log"
  mount -o remount,ro,bind "$LOG"
}
LogLockHeld() { mkdir -p "$LOG"; python 'c.semget(c.ftok(a[1].encode(), 1), 1, 0o1666)' "$LOG"; }
LogControlBlockOdd() { hide /dev/shm -o size=100M; seq 9999 >"/dev/shm/$BLOCK"; }
PortTaken() { listen 8088; }
FewOpenFiles() { ulimit -n 300; }
SmallFilesOnly() { ulimit -f 2000; }

ChromiumMissing() { chromium /dev/null; }
ChromiumInEnglishOnly() { export LANGUAGE=eo; }
ChromiumEndsAtOnce() { fake_chromium <<<'echo no luck >&2'; }
ChromiumSilent() { fake_chromium <<<'exec sleep 60'; }
ChromiumForbidden() { policy managed '{"RemoteDebuggingAllowed":false}'; }
ChromiumWithoutSandbox() {
  exec unshare --user --map-user=65534 --keep-caps /bin/bash -ec '
    echo 0 >/proc/sys/user/max_user_namespaces
    exec setpriv --ambient-caps=-all --inh-caps=-all "$0" --json' "$2"
}
# answering ANSWER [COMMAND ERROR]: answers every command alike, but for one.
answering() {
  fake_chromium <<END
while IFS= read -r -d '' call <&3; do
  id=\${call#*'"id":'} answer='"result":{$1}'
  [[ "$2" == "" || \$call != *"$2"* ]] || answer='"error":{$3}'
  printf '{"id":%s,%s}\0' "\${id%%,*}" "\$answer" >&4
done
END
}
PAGE='"product":"Chrome/1","targetId":"T","sessionId":"S"'
ChromiumOld() { answering "$PAGE" .setCookies '"code":-32601,"message":"It wasn\u0027t found"'; }
ChromiumOlderThanTried() { answering "$PAGE"; }
ChromiumOpensNoPage() { answering '"product":"Chrome/1"'; }

meet "$@"
