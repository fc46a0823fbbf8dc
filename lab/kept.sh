# shellcheck shell=bash
# What `run` needs for a phone that stays up: the place where it is kept, and commands on it. Sourced.
# A kept phone is a directory: `lock` is locked for as long as its QEMU runs, `console.in` is what the
# phone reads, `host` is the directory that both exchange.

# Seconds that a command has to end after it was asked to.
PATIENCE=3

# is_up DIRECTORY: whether a phone is kept there, or is just coming up.
is_up() {
    [[ -e $1/lock ]] && ! flock -n "$1/lock" true
}

# new_job DIRECTORY INPUT WORD...: makes what the phone needs to run the words: the command, where its
# output goes, and its standard input, which is this program's, read to its end, or (INPUT empty) nothing.
new_job() {
    local job=$1 input=$2
    shift 2
    mkdir -p "$job"
    quote exec "$@" >"$job/command"
    : >"$job/stdout"
    : >"$job/stderr"
    if [[ -n $input ]]; then
        cat >"$job/stdin"
    else
        ln -s /dev/null "$job/stdin"
    fi
}

# tell DIRECTORY WORD...: a line for the phone. Opened for both, so that nobody waits for a reader.
tell() {
    printf '%s\n' "${*:2}" 1<>"$1/console.in"
}

# end_job DIRECTORY JOB: ends a command that still runs on the phone.
end_job() {
    local signal tries
    for signal in TERM KILL; do
        is_up "$1" || return 0
        tell "$1" "$signal" "${2##*/}"
        for ((tries = PATIENCE * 20; tries > 0; --tries)); do
            [[ ! -e $2/status ]] || return 0
            sleep 0.05
        done
    done
}

# clear_phone DIRECTORY: removes all but the lock, which another may be waiting for.
clear_phone() {
    find "$1" -mindepth 1 ! -path "$1/lock" -delete
}

# stop_phone DIRECTORY: cuts the power of the phone that is kept there. False when there is none.
stop_phone() {
    is_up "$1" || return 1
    kill "$(cat "$1/qemu.pid")" 2>/dev/null || true
    (
        flock 9
        clear_phone "$1"
    ) 9>>"$1/lock"
}
