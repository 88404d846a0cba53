#!/usr/bin/env bash
# reload.sh SHELL: after a reload the process has the new code alone, its file is gone, and calls reach it.
set -euo pipefail
TMPDIR=$(mktemp -d)
export TMPDIR
trap 'rm -rf "$TMPDIR"' EXIT
coproc SHELL_PIPE { exec "$1"; }
pid=$SHELL_PIPE_PID
ask() { # COMMAND TEXT: sends the command and waits for a line with the text
    echo "$1" >&"${SHELL_PIPE[1]}"
    while read -r -t 60 line <&"${SHELL_PIPE[0]}"; do
        [[ $line == *"$2"* ]] && return
    done
    echo "no '$2' after '$1'"
    exit 1
}
maps() { grep -c "$1" "/proc/$pid/maps" || true; }
ask init '-> 0 ok'
(($(maps 'libovk-ethernet\.so') > 0))
for _ in 1 2 3; do
    ask reload 'loaded anew at another address'
    (($(maps 'libovk-ethernet\.so') == 0))
    (($(sed -nE 's/.*(ovk-shell-\w{6}) .deleted.$/\1/p' "/proc/$pid/maps" | sort -u | wc -l) == 1))
    [[ -z $(ls "$TMPDIR") ]]
done
ask 'exception configure 0 1 send_to_tvu_func function=Discard_Pdu' '-> 0 ok'
ask shutdown '-> 0 ok'
ask '! reload' '-> 1 '
