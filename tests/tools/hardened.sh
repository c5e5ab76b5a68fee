#!/bin/bash
# hardened.sh FILE..: names every built file that lacks what cmake/Hardening.cmake asks for.
faults=0
for file; do
  facts=$(readelf -hldsnW "$file") || exit 1
  lacks() { echo "$file: no $1"; faults=1; }
  has() { grep -qE -- "$1" <<<"$facts"; }
  has 'Type: +DYN' || lacks "position independence"
  has 'GNU_STACK .* RW ' || lacks "stack that cannot be executed"
  has 'GNU_RELRO' && has '\(FLAGS(_1)?\).*NOW' || lacks "full RELRO"
  has ' __stack_chk_fail' || lacks "stack protector"
  has ' __[a-z]+_chk@' || lacks "fortified calls"
  # The marks of places that may be jumped to. The file as a whole is marked only where the system's
  # start files are; Debian's are not.
  marks=$(LC_ALL=C grep -aoP '\xf3\x0f\x1e\xfa' "$file" | wc -l)
  [[ $(uname -m) != x86_64 ]] || ((marks > 100)) || lacks "control-flow protection"
  # An executable also says so itself.
  [[ $(basename "$file") == *Framework || $(basename "$file") == *.so ]] || has 'FLAGS_1.*PIE' || lacks PIE
done
exit $faults
