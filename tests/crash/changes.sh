# shellcheck shell=sh
# changes.sh TIMES BLOCK: has every writer make TIMES changes. Once a change is acknowledged its number
# is written to the block, which lies behind the file system and so stands in order among the writes
# that the disk gets; and a line says what the files then hold: NUMBER WRITER [SUM FILE]...
# shellcheck source=tests/device/lib.sh
. /tests/device/lib.sh
times=$1 block=$2 number=0

# acknowledged [FILE]...
acknowledged() {
    number=$((number + 1))
    # A whole block, from a file: anything else, dd would leave in the page cache for later.
    printf '%-4096s' $number >/tmp/number
    dd if=/tmp/number of=/dev/vda bs=4096 seek="$block" conv=notrunc oflag=direct status=none
    # shellcheck disable=SC2046
    echo $number "$writer" $(for file; do sha256sum "$file"; done)
}

# The file system is not to guess what a careless writer meant.
mount -o remount,noauto_da_alloc /data
while IFS='|' read -r writer files change <&3; do
    for n in $(seq 0 "$times"); do
        eval "$change" >/dev/null 2>&1
        # Only where it starts from is safe by itself.
        [ "$n" -gt 0 ] || sync
        # shellcheck disable=SC2086
        acknowledged $files
    done
    sync
    writer=nobody acknowledged
done 3</tests/crash/writers.txt
