# shellcheck shell=sh
# Whole blocks through memory that a client shares, and clients that mean no good.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh
story >/dev/null
new_log >/dev/null

# region FILE LENGTH: hands the file over as shared memory.
region() {
    POSIXLY_CORRECT=1 reply 3001 nfd 7 i32 "$2" 7<>"$1"
}

# A file of ones, so that zeros show.
fresh() {
    tr '\0' '\377' </dev/zero 2>/dev/null | head -c "$2" >"$1"
}

digest() {
    md5sum | cut -d ' ' -f 1
}

expect 'no region, no fetch' fffff448 "$(reply 3002 i32 0)"
expect 'no region, no push' fffff448 "$(reply 3003 i32 0)"
expect 'a region of no length cannot be mapped' fffffffd "$(region /tmp/seen 0)"
expect 'that is logged' 'zyl_kwo_service service E mmap failed! 22, Invalid argument' "$(new_log)"
expect 'no descriptor at all' fffffffd "$(reply 3001 i32 0 i32 61700)"
expect 'that is logged too' 'zyl_kwo_service service E mmap failed! 9, Bad file descriptor' "$(new_log)"
mkfifo /tmp/fifo
expect 'a pipe cannot be mapped' fffffffd "$(region /tmp/fifo 61700)"
expect 'and says why' 'zyl_kwo_service service E mmap failed! 19, No such device' "$(new_log)"

for directory in /tmp /data /dev/shm; do
    fresh "$directory/region" 70000
    expect "a file in $directory is a region" 00000000 "$(region "$directory/region" 70000)"
    for block in 0 1 2; do
        expect "fetch block $block" 00000000 "$(reply 3002 i32 $block)"
        expect "region holds block $block" "$(dspctl block $block | digest)" \
            "$(head -c 61700 "$directory/region" | digest)"
    done
    expect 'what lies behind the block is not touched' "$(fresh /tmp/ones 8300 && digest </tmp/ones)" \
        "$(tail -c 8300 "$directory/region" | digest)"
done
expect 'fetching only reads' "$(for _ in 1 2 3; do echo R0 R1 R2; done | paste -sd ' ')" "$(story)"

expect 'a block that does not exist is fetched as zeros' "00000000 $(head -c 61700 /dev/zero | digest)" \
    "$(reply 3002 i32 5) $(head -c 61700 /dev/shm/region | digest)"
expect 'a block that does not exist is pushed nowhere' 00000000 "$(reply 3003 i32 5)"
expect 'negative blocks do not exist' '00000000 00000000' "$(reply 3002 i32 -1) $(reply 3003 i32 -1)"
expect 'nobody hears of such blocks' '' "$(story)"

head -c 70000 /etc/zyl/speaker_0 >/tmp/image
dd if=/tmp/image of=/dev/shm/region conv=notrunc 2>/dev/null
expect 'push' 00000000 "$(reply 3003 i32 1)"
expect 'a push uploads and announces' 'W1 a a' "$(story)"
expect 'the image as it is' "$(digest </tmp/image)" "$(dspctl block 1 | digest)"
dspctl fail 0 1
expect 'a refused push' fffffffd "$(reply 3003 i32 1)"
expect 'is announced by the upload alone' 'xW1 a' "$(story)"
fresh /dev/shm/region 70000
region /dev/shm/region 70000 >/dev/null
dspctl fail 0 1
expect 'a refused fetch' fffffffd "$(reply 3002 i32 1)"
expect 'leaves the region alone' "$(fresh /tmp/ones 70000 && digest </tmp/ones)" "$(digest </dev/shm/region)"
story >/dev/null

# Regions that are not what they say.
fresh /tmp/short 61700
expect 'a region one byte short is taken' 00000000 "$(region /tmp/short 61699)"
expect 'but counts as none' fffff448 "$(reply 3002 i32 0)"
expect 'a region that fits exactly is enough' '00000000 00000000' \
    "$(region /tmp/short 61700) $(reply 3002 i32 0)"
fresh /tmp/hollow 1000
expect 'a file shorter than its mapping' 00000000 "$(region /tmp/hollow 61700)"
expect 'cannot be filled' fffffffd "$(reply 3002 i32 0)"
story >/dev/null
expect 'nor pushed' fffffffd "$(reply 3003 i32 0)"
expect 'and nothing of it goes to the DSP' '' "$(story)"
fresh /tmp/cut 70000
region /tmp/cut 70000 >/dev/null
: >/tmp/cut
expect 'a file cut after it was mapped' 'fffffffd fffffffd' "$(reply 3002 i32 0) $(reply 3003 i32 0)"

# A client that cuts and grows its file while the service copies, and a bystander.
pid=$(pidof zyl_kwo_service)
fresh /tmp/restless 70000
region /tmp/restless 70000 >/dev/null
while [ ! -e /tmp/enough ]; do
    : >/tmp/restless
    truncate -s 70000 /tmp/restless
done &
answers=''
for _ in 1 2 3 4 5 6 7 8 9 10; do
    reply 3002 i32 0 >/dev/null
    reply 3003 i32 0 >/dev/null
    answers="$answers$(reply 4)"
done
touch /tmp/enough
wait
expect 'bystanders are answered all the while' \
    "$(for _ in 1 2 3 4 5 6 7 8 9 10; do printf '00000000 00000002'; done)" "$answers"
expect 'the service lives through all of it' "$pid" "$(pidof zyl_kwo_service)"
expect 'with no descriptor left open' 0 \
    "$(find /proc/"$pid"/fd -type l -exec readlink {} ';' | grep -cE '^/(tmp|data|dev/shm)/')"

# kwoctl has a region of its own.
reply 41 i32 0 >/dev/null
expect_status 'kwoctl fetches a block' 0 kwoctl block fetch lineout /tmp/block
expect 'as the DSP has it' "$(dspctl block 1 | digest)" "$(digest </tmp/block)"
expect_status 'kwoctl pushes a block' 0 kwoctl block push 2 /tmp/block
expect 'as the file has it' "$(digest </tmp/block)" "$(dspctl block 2 | digest)"
head -c 100 /tmp/block >/tmp/small
expect_status 'kwoctl pushes no short file' 1 kwoctl block push 2 /tmp/small
expect 'and says why' 'kwoctl: /tmp/small: a block has 61700 bytes, this file has fewer' "$(cat /tmp/err)"
expect_status 'kwoctl knows three blocks' 2 kwoctl block fetch 3 /tmp/block
end_of_cases
