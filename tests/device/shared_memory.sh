# shellcheck shell=sh
# Whole blocks through memory that a client shares, of every kind that the policy lets pass.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh
story >/dev/null
new_log >/dev/null

# region FILE LENGTH: hands the file over as shared memory.
region() {
    reply 3001 nfd 7 i32 "$2" 7<>"$1"
}

digest() {
    md5sum | cut -d ' ' -f 1
}

expect 'neither no descriptor nor a device without memory can be mapped' 'fffffffd fffffffd' \
    "$(reply 3001 i32 0 i32 61700) $(region /dev/null 61700)"
expect 'and the log says why' 'zyl_kwo_service service E mmap failed! 9, Bad file descriptor
zyl_kwo_service service E mmap failed! 19, No such device' "$(new_log)"

for file in /tmp/region /data/local/tmp/region /dev/shm/region; do
    tr '\0' '\377' </dev/zero 2>/dev/null | head -c 70000 >$file
    expect "$file is a region" 00000000 "$(region $file 70000)"
    expect 'that takes a block' "00000000 $(dspctl block 1 | digest)" \
        "$(reply 3002 i32 1) $(head -c 61700 $file | digest)"
    expect 'and nothing behind it' "$(tr '\0' '\377' </dev/zero 2>/dev/null | head -c 8300 | digest)" \
        "$(tail -c 8300 $file | digest)"
    dd if=/etc/zyl/speaker_0 of=$file conv=notrunc 2>/dev/null
    expect 'and gives one' "00000000 $(head -c 61700 $file | digest)" \
        "$(reply 3003 i32 2) $(dspctl block 2 | digest)"
    expect 'which is announced' 'R1 W2 a' "$(story)"
done
expect 'no descriptor of a client is left open' 0 \
    "$(find "/proc/$(pidof zyl_kwo_service)/fd" -type l -exec readlink {} ';' | grep -c '/region')"
end_of_cases
