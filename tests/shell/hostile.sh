#!/usr/bin/env bash
# hostile.sh SHELL: input that nobody means well with, by file and by pipe. It may fail, but only with a message.
set -uo pipefail
shell=$1
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
check() { # EXIT-STATUS TEXT FILE
    for way in file pipe; do
        if [[ $way == file ]]; then output=$("$shell" --keep-going "$3" 2>&1); else output=$("$shell" --keep-going <"$3" 2>&1); fi
        status=$?
        [[ $status == "$1" && $output == *"$2"* ]] && continue
        printf '%s by %s: exit status %s instead of %s, or no "%s"\n%s\n' "$3" $way $status "$1" "$2" "$output"
        exit 1
    done
}
: >"$dir/empty"
check 0 '' "$dir/empty"
printf 'init\nshutdown' >"$dir/no-newline"
check 0 $'ovk> shutdown\n-> 0 ok' "$dir/no-newline"
printf 'init\r\n# caf\xc3\xa9\r\n' >"$dir/dos"
check 0 '-> 0 ok' "$dir/dos"
{ head -c 100000 /dev/zero | tr '\0' a && printf '\ninit\n'; } >"$dir/long"
check 1 $'bytes\novk> init\n-> 0 ok' "$dir/long"
for ((byte = 0; byte < 256; byte++)); do printf "init \\x$(printf %02x $byte)%s\n" tail; done >"$dir/bytes"
check 1 "'\\x00'" "$dir/bytes"
check 1 "can't be read" "$dir"
"$shell" "$dir/no-newline" >/dev/full && exit 1 # nobody saw what came of it
# No such script; one line without end, which is the first failure; no library.
for arguments in "$dir/absent" /dev/zero "--library $dir/empty $dir/empty"; do
    # shellcheck disable=SC2086
    "$shell" $arguments >/dev/null 2>&1
    [[ $? == 1 ]] || exit 1
done
