#!/usr/bin/env bash
# help.sh SHELL: each command stands in a group of the list, and its example is a command as it takes it.
set -euo pipefail
shell=$1
mapfile -t commands < <("$shell" <<<help | sed -nE 's/^  ([a-z0-9-]+( [a-z0-9-]+)?)  .*/\1/p')
((${#commands[@]} > 50)) || { echo "only ${#commands[@]} commands are listed"; exit 1; }
examples=$(printf 'help %s\n' "${commands[@]}" | "$shell" | sed -n 's/^example: //p')
output=$(printf '%s\n' init 'port p1 = interface create 0x11 routed' "$examples" | grep -v '^help' | "$shell" --keep-going) || true
(($(wc -l <<<"$examples") > 35)) || { echo "few examples: $examples"; exit 1; }
! grep -B3 '^usage:\|no command' <<<"$output"
