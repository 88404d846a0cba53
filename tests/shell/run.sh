#!/usr/bin/env bash
# run.sh SHELL SCRIPT: runs the script and compares with what its comments expect.
#   #exit N   the exit status; 0 without it
#   #out TEXT the output has a line with TEXT, behind the line that the one before was found in
#   #not TEXT the output has no line with TEXT
# Comments that the shell shows don't count as output.
set -uo pipefail
shell=$1 script=$2
output=$(cd "$(dirname "$script")" && "$shell" "$(basename "$script")" 2>&1)
status=$?
fail() {
    printf '%s\n--- %s\n' "$output" "$1"
    exit 1
}
wanted=$(sed -n 's/^#exit //p' "$script")
[[ $status == "${wanted:-0}" ]] || fail "exit status $status instead of ${wanted:-0}"
mapfile -t lines < <(grep -v '^#' <<<"$output")
at=0
while read -r kind text; do
    found=-1
    [[ $kind == '#not' ]] && from=0 || from=$at
    for ((i = from; i < ${#lines[@]}; i++)); do
        [[ ${lines[i]} == *"$text"* ]] && found=$i && break
    done
    case $kind in
    '#out') ((found >= 0)) && at=$((found + 1)) || fail "missing behind line $at: $text" ;;
    '#not') ((found < 0)) || fail "not wanted: $text" ;;
    esac
done < <(grep -E '^#(out|not) ' "$script")
exit 0
