# shellcheck shell=bash
# Shell functions that `run` and the scripts of the lab share. Sourced, after `set -euo pipefail`.

ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
BUILD=$ROOT/build
CACHE=${XDG_CACHE_HOME:-$HOME/.cache}/zyl-kwo
# What is made here goes onto the phone, where users of all kinds read it.
umask 022

say() {
    printf '%s\n' "$*" >&2
}

die() {
    say "${0##*/}: $*"
    exit 1
}

# run_step NAME COMMAND...: runs the command with its output in build/log/NAME.log, which is shown in
# part, and named, when the command fails.
run_step() {
    local name=$1 log status=0
    shift
    mkdir -p "$BUILD/log"
    log=$BUILD/log/$name.log
    "$@" >"$log" 2>&1 </dev/null || status=$?
    ((status != 0)) || return 0
    tail -n 20 "$log" >&2
    say "${0##*/}: failed with status $status; see ${log#"$ROOT"/}"
    return "$status"
}

# Says every ten seconds how far the step with this log is, where the log counts: [12/34].
tell_progress() {
    local log=$1 count nothing
    # Waits on something that never comes, without a process of its own, which would outlive this one.
    exec {nothing}<> <(:)
    until read -rt 10 -u "$nothing"; do
        count=$(grep -oE '^\[[0-9]+/[0-9]+\]' "$log" | tail -n 1)
        [[ -z $count ]] || say "  $count"
    done
}

# step NAME MESSAGE COMMAND...: a long run_step, announced, that tells how far it is.
step() {
    local teller status=0
    say "$2 ..."
    mkdir -p "$BUILD/log"
    : >"$BUILD/log/$1.log"
    tell_progress "$BUILD/log/$1.log" &
    teller=$!
    run_step "$1" "${@:3}" || status=$?
    kill "$teller" 2>/dev/null || true
    wait "$teller" 2>/dev/null || true
    return "$status"
}

# A short key for the contents of the named files and the text of the other arguments.
key_of() {
    local argument
    for argument; do
        if [[ -f $argument ]]; then
            cat "$argument"
        else
            printf '%s\n' "$argument"
        fi
    done | sha256sum | cut -c 1-16
}

# cached NAME KEY MESSAGE COMMAND...: the directory NAME-KEY in the cache, made by the command (which
# gets an empty directory as last argument) unless it is there. It appears only when it is complete.
cached() {
    local name=$1 key=$2 message=$3 target
    shift 3
    target=$CACHE/$name-$key
    [[ ! -d $target ]] || return 0
    mkdir -p "$CACHE"
    (
        flock 9
        [[ ! -d $target ]] || exit 0
        rm -rf "$target.new"
        mkdir "$target.new"
        step "$name" "$message" "$@" "$target.new"
        mv "$target.new" "$target"
    ) 9>"$CACHE/$name.lock"
}

# Points the symbolic link at the target, at once and only when it does not yet do so.
link() {
    local target=$1 name=$2
    [[ $(readlink "$name" || true) != "$target" ]] || return 0
    mkdir -p "${name%/*}"
    ln -s "$target" "$name.$$"
    mv -T "$name.$$" "$name"
}

# with_lock NAME COMMAND...: runs the command while nobody else runs one under that name.
with_lock() {
    local name=$1
    shift
    mkdir -p "$BUILD"
    (
        flock 9
        "$@" 9>&-
    ) 9>"$BUILD/$name.lock"
}

# configure_preset PRESET: makes build/PRESET, unless it is there and stands on the platform in use.
configure_preset() {
    local preset=$1 directory=$BUILD/$1 platform built_on
    platform=$(readlink "$BUILD"/{sysroot,platform/{armhf,native},dbus} || true)
    built_on=$(cat "$directory/platform" 2>/dev/null || true)
    if [[ ! -e $directory/build.ninja || $built_on != "$platform" ]]; then
        (cd "$ROOT" && step "configure-$preset" "Configuring the build \"$preset\"" \
            cmake --fresh --preset "$preset")
        printf '%s\n' "$platform" >"$directory/platform"
    fi
}

# build_preset PRESET [TARGET...]: configures and builds in build/PRESET what is out of date.
build_preset() {
    local preset=$1 directory=$BUILD/$1
    shift
    configure_preset "$preset"
    ! ninja -C "$directory" -n "$@" | grep -q 'no work to do' || return 0
    step "build-$preset" "Building \"$preset\"" ninja -C "$directory" "$@"
}
