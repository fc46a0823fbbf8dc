# shellcheck shell=bash
# Shell functions that put programs, with the libraries they need, where the phone looks for them.
# Sourced; $platform is the binder platform, $root what becomes the phone's root.

: "${platform:?}" "${root:?}"
CROSS=arm-linux-gnueabihf
library_path=("$platform/lib")

# The libraries of that sysroot, after those of any named before.
use_libraries_of() {
    library_path+=("$1/usr/lib/$CROSS/android" "$1/lib/$CROSS" "$1/usr/lib/$CROSS")
}

# The place on the phone of a library by that name, where the run paths and the loader look.
library_place() {
    case $1 in
        "$platform"/*) echo system/lib ;;
        */android/*) echo "usr/lib/$CROSS/android" ;;
        *) echo "lib/$CROSS" ;;
    esac
}

copy_stripped() {
    mkdir -p "$2"
    "$CROSS-strip" -o "$2/$(basename "$1")" "$(realpath "$1")"
}

# Copies the library, and what it needs in turn, unless it is there.
copy_library() {
    local directory_of
    for directory_of in "${library_path[@]}"; do
        [[ -e $directory_of/$1 ]] || continue
        set -- "$1" "$directory_of/$1" "$root/$(library_place "$directory_of/$1")"
        [[ ! -e $3/$1 ]] || return 0
        copy_stripped "$2" "$3"
        copy_needed "$2"
        return
    done
    echo "no library $1" && exit 1
}

copy_needed() {
    local library
    while read -r library; do
        copy_library "$library"
    done < <("$CROSS-readelf" -d "$1" | sed -nE 's/.*\(NEEDED\).*\[(.*)\]/\1/p')
}
