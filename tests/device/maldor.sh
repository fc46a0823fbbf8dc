# shellcheck shell=sh
# The Maldor generation: what its operations leave in the records, on disk and in the DSP.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh

run_cases /tests/cases/maldor.cases

expect 'nothing is left beside the files' \
    'current_bluetooth current_lineout current_speaker_off current_speaker_on zyl_kwo_settings' \
    "$(cd /data/misc/zyl && echo *)"

# kwoctl on this generation.
printf 'Name\0' >/tmp/data
printf 'no identifier ends here, and it is longer than any' >/tmp/bad
printf 'generation maldor\nlistening-test 1 -2.5 0.1 4\n' >/tmp/test
clean_start maldor
run_commands /tests/cases/kwoctl_maldor.txt
expect 'kwoctl uploads everything in its order' \
    'conv AccessoryZylcsTuning mode=3 rate=44100 data=5 work=16 result=0 W2 a a conv ListeningTest a=1 b=-2.5 c=0.1 d=4 result=0 conv ListeningTest a=1 b=-2.5 c=0.1 d=4 result=0 W1 a a W2 a a conv SpeakerZylcsTuning mode=1 rate=48000 data=5 work=0 result=0 W0 a a conv ZylcsStereoRooms mode=2 rate=48000 update=1 data=5 work=0 result=0 conv ZylcsStereoRooms mode=2 rate=44100 update=1 data=5 work=0 result=0 W1 a a W2 a a conv SpeakerZylcsTuning mode=1 rate=48000 data=5 work=0 result=0 W0 a a R0 R1 R2' \
    "$(story)"
expect 'status shows identifiers' 'tuning data    accessory bluetooth  Name' "$(kwoctl status | grep 'bluetooth  Name')"
end_of_cases
