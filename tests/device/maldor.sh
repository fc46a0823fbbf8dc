# shellcheck shell=sh
# The Maldor generation: what its operations leave in the records, on disk and in the DSP.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh

run_cases /tests/cases/maldor.cases

field() {
    dd if=/data/misc/zyl/zyl_kwo_settings bs=1 skip="$1" count="$2" 2>/dev/null | tr -d '\0'
}
expect 'every identifier has its place in the settings file' \
    'Id-1 Id-22  Id-1 Id-22 Id-1 Id-22' \
    "$(field 68 37) $(field 105 37) $(field 142 37) $(field 179 37) $(field 216 37) $(field 273 37) $(field 310 37)"
expect 'nothing is left beside the files' \
    'current_bluetooth current_lineout current_speaker_off current_speaker_on zyl_kwo_settings' \
    "$(cd /data/misc/zyl && echo *)"

# The records are what the DSP runs, but for the settings that are laid over them.
without_settings() {
    cp "$1" /tmp/bare
    for offset in 16 32 36 40 64 132 352 360 368 400; do
        poke /tmp/bare "$offset" 00 00 00 00
    done
    poke /tmp/bare 100 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00
    md5sum </tmp/bare
}
in_step() {
    dspctl block "$2" >/tmp/block
    [ "$(without_settings "/data/misc/zyl/$1")" = "$(without_settings /tmp/block)" ] && echo yes
}
# A healthy rebuild brings in step what failures left behind.
reply 41 i32 0 >/dev/null
for record in current_speaker_off:0 current_lineout:1 current_bluetooth:2; do
    expect "the DSP runs ${record%:*}" yes "$(in_step "${record%:*}" "${record#*:}")"
done

state() {
    dd if="/data/misc/zyl/$1" bs=1 skip=448 count=4 2>/dev/null | xxd -p
}
clean_start maldor
kwoctl listening-test 1 -2.5 3 4 >/dev/null
expect 'a listening test shows in both records' '03000000 03000000' \
    "$(state current_lineout) $(state current_bluetooth)"
expect 'and in the settings file' 0000803f000020c0000040400000804001 "$(settings | cut -c 513-546)"
restart_service
expect 'and outlives the service' 'listening test 1 -2.5 3 4' "$(kwoctl listening-test)"
kwoctl listening-test reset >/dev/null
expect 'a reset clears both' '00000000 00000000' \
    "$(state current_lineout) $(state current_bluetooth)"
expect 'and the settings file' 000080bf000080bf000080bf000080bf00 "$(settings | cut -c 513-546)"

# Records that are missing, short, or cannot be replaced.
printf 'Name\0' >/tmp/data
before=$(md5sum </data/misc/zyl/current_bluetooth)
mv /data/misc/zyl/current_lineout /tmp/lineout
story >/dev/null
expect 'without a lineout record there is no room' fffffffe "$(reply 25 i32 1 i32 0 i32 0)"
expect 'nor a listening test' fffffffe "$(reply 29 f 1 f 1 f 1 f 1)"
expect 'a reset does not make one' "00000000 no" \
    "$(reply 31) $([ -e /data/misc/zyl/current_lineout ] && echo yes || echo no)"
head -c 61699 /tmp/lineout >/data/misc/zyl/current_lineout
expect 'a short record is no record' fffffffc "$(reply 27 i32 0 i32 0)"
expect 'the other record is not touched' "$before" "$(md5sum </data/misc/zyl/current_bluetooth)"
cp /tmp/lineout /data/misc/zyl/current_lineout
mkdir /data/misc/zyl/current_lineout.tmp
new_log >/dev/null
expect 'a record that cannot be replaced counts as saved' 00000000 "$(reply 23 i32 1 i32 0 i32 0)"
expect 'and stays what it was' "$(md5sum </tmp/lineout)" "$(md5sum </data/misc/zyl/current_lineout)"
expect 'without a word' '' "$(new_log | grep -v settings)"

# kwoctl on this generation.
clean_start maldor
expect_status 'kwoctl uploads tuning data' 0 kwoctl tune accessory bluetooth /tmp/data --work 16
expect 'with its work area' 'conv AccessoryZylcsTuning mode=3 rate=44100 data=5 work=16 result=0 W2 a a' "$(story)"
expect 'and shows its name' 'accessory bluetooth  Name' "$(kwoctl tune names | grep Name)"
printf 'no identifier ends here, and it is longer than any' >/tmp/bad
expect_status 'kwoctl refuses data without an identifier' 1 kwoctl tune speaker /tmp/bad
expect 'and says what is wrong' \
    'kwoctl: /tmp/bad: no tuning data: it must begin with an identifier of 1 to 36 characters and a NUL' \
    "$(cat /tmp/err)"
expect_status 'kwoctl knows no tuning numbers here' 1 kwoctl tuning speaker
expect 'status shows identifiers instead' 'tuning data    accessory bluetooth  Name' "$(kwoctl status | grep Name)"
printf 'generation maldor\nlistening-test 1 -2.5 0.1 4\n' >/tmp/test
expect_status 'a snapshot restores a listening test' 0 kwoctl restore /tmp/test
expect 'exactly' '{"listening-test":[1,-2.5,0.1,4]}' "$(kwoctl listening-test --json)"
expect_status 'several uploads are made in one go' 0 kwoctl tune speaker /tmp/data stereo-room 1 /tmp/data
expect 'raw sends data as well' '    0  0x00000000            0  ....' "$(kwoctl raw 19 blob /tmp/data i32 0)"
expect_status 'and the DSP runs them all' 0 kwoctl verify
end_of_cases
