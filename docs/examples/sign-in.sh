#!/bin/sh
# Signs in and prints the session; says why when that fails.
#
#     sign-in.sh URL < COOKIES > SESSION
#
# The exit status is that of embedded-browser-start. Needs jq.
result=$(embedded-browser-start --type saml-login --url "$1" --cookie-stdin --json)
status=$?
case $status in
  0) printf '%s\n' "$result" | jq -r .return_data.postauthcookie ;;
  # Whoever closes the window need not be told so.
  7) ;;
  *) printf '%s\n' "$result" | jq -r '[.verdict, .detail] | map(select(. != "")) | join(": ")' >&2 ;;
esac
exit "$status"
