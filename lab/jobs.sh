# shellcheck shell=bash
# Commands on the phone, and the place of a phone that stays up; part of `run`, with its variables.
# shellcheck disable=SC2034,SC2154
# A kept phone is a directory: `lock` is locked for as long as its QEMU runs, `console.in` is what the
# phone reads, `host` is the directory that both exchange.

# Seconds that a command has to end after it was asked to.
PATIENCE=3

# is_up DIRECTORY: whether a phone is kept there, or is just coming up. Those who ask do not lock each
# other out.
is_up() {
    [[ -e $1/lock ]] && ! flock -sn "$1/lock" true
}

# A line of shell, for the phone's as for any other, that runs the words as they are.
quote() {
    local word
    for word; do
        printf " '%s'" "${word//\'/\'\\\'\'}"
    done
    echo
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

# From here on with what `run` has set: where the phone is ($work), what to run there ($command), as
# which job ($job), and how this program ends ($outcome).

# Passes on what the command has written since; ends like any program whose reader has gone.
pass_output() {
    cat <&3 || interrupted 141
    cat <&4 >&2 || interrupted 141
}

wait_for_job() {
    # Often at first; one that has run for long may be waited for with less trouble.
    local rounds=0
    exec 3<"$job/stdout" 4<"$job/stderr"
    while look "$job/status"; do
        pass_output
        sleep "0.$((++rounds < 200 ? 05 : 20))"
    done
    pass_output
    outcome=$(cat "$job/status")
}

# On the phone that is up, or coming up, in $work.
run_on_kept() {
    until [[ -s $work/qemu.pid ]]; do
        is_up "$work" || give_up 125 'the phone is gone'
        sleep 0.05
    done
    qemu=$(cat "$work/qemu.pid")
    while look "$work/host/up"; do sleep 0.1; done
    job=$(mktemp -d "$work/host/jobs/XXXXXX")
    new_job "$job" "$input" "${command[@]}"
    tell "$work" RUN "${job##*/}"
    wait_for_job
}

keep_phone() {
    mkdir -p "$work"
    exec 8>>"$work/lock"
    flock -w 1 8 ||
        give_up 125 "a phone is up already; ./run${name:+ --name $name} --stop ends it"
    kept=''
    clear_phone "$work"
    prepare
    mkdir "$work/host/jobs"
    mkfifo "$work/console.in"
    : >"$work/console"
    ln -s console "$work/console.out"
    SECONDS=0
    start_machine -chardev "pipe,id=console,path=$work/console" -serial chardev:console
    echo "$qemu" >"$work/qemu.pid"
    exec 8>&-
    while look "$work/host/up"; do sleep 0.1; done
    rm -r "$work/initrd" "$work/root"
    kept=yes outcome=0
    if ((${#command[@]} > 0)); then
        run_on_kept
    else
        say "The phone is up: ./run${name:+ --name $name} -- COMMAND runs there, --stop ends it."
    fi
}
