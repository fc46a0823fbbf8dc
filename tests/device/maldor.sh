# shellcheck shell=sh
# The Maldor generation: what its operations leave in the records, on disk and in the DSP.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh

run_cases /tests/cases/maldor.cases

expect 'nothing is left beside the files' \
    'current_bluetooth current_lineout current_speaker_off current_speaker_on zyl_kwo_settings' \
    "$(cd /data/misc/zyl && echo *)"

# A record that cannot be replaced.
cp /data/misc/zyl/current_lineout /tmp/lineout
mkdir /data/misc/zyl/current_lineout.tmp
new_log >/dev/null
expect 'a record that cannot be replaced counts as saved' 00000000 "$(reply 23 i32 1 i32 0 i32 0)"
expect 'and stays what it was' "$(md5sum </tmp/lineout)" "$(md5sum </data/misc/zyl/current_lineout)"
expect 'without a word' '' "$(new_log | grep -v settings)"

printf 'Name\0' >/tmp/data
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
