# shellcheck shell=sh
# changes.sh TIMES BLOCK: has every writer make TIMES changes. Once a change is acknowledged its number
# is written to the block, which lies behind the file system and so stands in order among the writes
# that the disk gets; and a line says what the files then hold: NUMBER WRITER [SUM FILE]...
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh
times=$1 block=$2 number=0

acknowledged() {
    number=$((number + 1))
    writer=$1
    shift
    # A whole block, from a file: anything less, dd would leave in the page cache for later.
    printf '%-4096s' $number >/tmp/number
    dd if=/tmp/number of=/dev/vda bs=4096 seek="$block" conv=notrunc oflag=direct status=none
    # shellcheck disable=SC2046
    echo $number "$writer" $(for file; do sha256sum "$file"; done)
}

# changes WRITER FILE...
changes() {
    "$1" 0 "$2" >/dev/null
    sync
    for change in $(seq "$times"); do
        acknowledged "$@"
        "$1" "$change" "$2" >/dev/null
    done
    acknowledged "$@"
    sync
    acknowledged nobody
}

maldor() {
    reply 29 f "$1" f 1 f 2 f 3
}

torvane() {
    [ "$1" -gt 0 ] || reply 3 i32 1
    [ "$1" -gt 0 ] || reply 12 i32 1
    reply 9 i32 4 i32 $((5000 + $1))
}

# From here on, writers that each leave something out.
contents() {
    seq $((1000 + $1)) 3000
}

rewrites() {
    contents "$1" >"$2"
}

overwrites() {
    contents "$1" | dd of="$2" conv=notrunc,fsync
}

renames_unsynced() {
    contents "$1" >"$2.tmp"
    mv "$2.tmp" "$2"
    sync "${2%/*}"
}

forgets_the_directory() {
    contents "$1" >"$2.tmp"
    sync -d "$2.tmp"
    mv "$2.tmp" "$2"
}

# The file system is not to guess what a careless writer meant.
mount -o remount,noauto_da_alloc /data
directory=/data/misc/zyl
clean_start maldor
changes maldor $directory/zyl_kwo_settings $directory/current_lineout $directory/current_bluetooth
clean_start torvane
changes torvane $directory/zyl_kwo_settings
stop zyl_kwo_service
for writer in rewrites overwrites renames_unsynced forgets_the_directory; do
    mkdir "/data/$writer"
    changes "$writer" "/data/$writer/file"
done
