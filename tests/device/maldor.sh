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
    'Accessory(3,44100,5,16) W2 a ListeningTest(1,-2.5,0.1,4) ListeningTest(1,-2.5,0.1,4) W1 a W2 a Speaker(1,48000,5,0) W0 a StereoRooms(2,48000,1,5,0) StereoRooms(2,44100,1,5,0) W1 a W2 a Speaker(1,48000,5,0) W0 a R0 R1 R2' \
    "$(story)"
# The speaker's upload is done, and lineout's first write is not.
dspctl fail 1 1
expect_status 'that the DSP did not follow is told to a shell, which may not read the images' 1 \
    as shell 2000 kwoctl disable
expect 'and where' 'kwoctl: lineout: the service keeps it, but the DSP did not follow: its block does not hold what the settings say; see kwoctl verify; kwoctl reload sends all again' "$(cat /tmp/err)"
expect_status 'when it follows there is nothing to tell' 0 as shell 2000 kwoctl enable
expect 'status shows identifiers' 'tuning data    accessory bluetooth  Name' "$(kwoctl status | grep 'bluetooth  Name')"
end_of_cases
