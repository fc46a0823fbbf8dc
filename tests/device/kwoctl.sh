# shellcheck shell=sh
# kwoctl as a person uses it: what it prints, and how it ends.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh

head -c 100 /etc/zyl/speaker_0 >/tmp/short
printf 'stereo 2\n\nlevels 1 2\n' >/tmp/bad
printf '# ten\n0.0 0dB +0.5 4096\n+3 dB, 4096\t4096 4096\n-15.0, -20dB\n' >/tmp/ten
printf 'Preamp: -6 dB\nGraphicEQ: 1000 6; 4000 12; 20000 12\n' >/tmp/graphic
# Whatever user runs this, where its changes are recorded.
export KWOCTL_DIR=/tmp/kwoctl
run_commands /tests/cases/kwoctl_torvane.txt
kwoctl reload >/dev/null
sed 's/torvane/maldor/' /tmp/on >/tmp/other
expect_status 'a snapshot of another generation restores nothing' 1 kwoctl restore /tmp/other
expect 'through a pipe it comes back the same' "$(cat /tmp/on)" "$(kwoctl restore - </tmp/on >/dev/null && kwoctl set stereo=1 >/dev/null && kwoctl snapshot - 2>/dev/null)"
expect 'status shows what there is' 24 "$(kwoctl status | grep -c .)"

# The blocks.
expect_status 'the DSP is as it should be' 0 kwoctl verify
reply 9 i32 4 i32 5000 >/dev/null
kwoctl block fetch 1 /tmp/before 2>/dev/null >&2
poke /tmp/before 64 02
poke /tmp/before 2000 00 00
kwoctl block push lineout - </tmp/before >/dev/null
expect_status 'until a client changes it' 1 kwoctl verify lineout
expect 'which is named' 'block 1 lineout    2 differences, from /etc/zyl/lineout_3
  stereo-mode    offset    64, 4 bytes: expected 1, found 2
  data           offset  2000, 2 bytes: expected'" $(od -An -tu2 -j 2000 -N 2 /etc/zyl/lineout_3 | tr -d ' '), found 0" "$(cat /tmp/out)"
kwoctl reload on >/dev/null
expect 'forced mode is recognised' 'block 2 bluetooth  forced mode, to end it: kwoctl reload off; else as it should be, from /etc/zyl/bluetooth_0' "$(kwoctl verify 2)"
kwoctl reload >/dev/null
expect_status 'and a rebuild puts it right' 0 kwoctl verify
kwoctl block fetch 1 - >/tmp/after 2>/dev/null
expect_status 'blocks can be compared' 1 kwoctl diff /tmp/after /tmp/before
expect 'and decoded' '  2  stereo-mode     0x10015140      64     4  1 (0x1)' "$(kwoctl block show - </tmp/after | grep stereo)"
expect 'the page holds them whole' yes "$(kwoctl report - 2>/dev/null | grep -qF "$(base64 -w 0 /tmp/after)" && echo yes)"
expect 'the example takes the next stereo mode' 'stereo mode 2' "$(zyl_example)"

# Rows of other sizes than their values have.
printf 'row 3 size 4\nrow 0 size 8\nrow 2 size 8\n' >/etc/zyl/conversion.conf
restart_service
kwoctl set geq=on stereo=3 gains=725,726,727,728,729,730,731,732,733,734 >/dev/null
kwoctl geq set 9 +1dB >/dev/null
expect_status 'a rebuild suits any layout' 0 sh -c 'kwoctl reload >/dev/null && kwoctl verify'
for command in disable enable 'stereo 2' 'geq set 9 -1dB'; do
    # shellcheck disable=SC2086
    kwoctl $command >/dev/null
    expect_status "$command does too" 0 kwoctl verify
done
expect_status 'output that cannot be written is no success' 1 sh -c 'kwoctl status >/dev/full'

expect_status 'kwoctl alone is a wrong usage' 2 kwoctl
expect_status 'kwoctl help helps' 0 kwoctl help
commands=$(awk '/^  [a-z]/ { print $1 }' /tmp/out)
expect 'with every command' 'ab block diff disable effect enable geq get help history keep levels listening-test mask preset raw reload report restore route set snapshot status stereo try tune tuning undo verify version watch' \
    "$(echo "$commands" | sort | paste -sd ' ')"
for command in $commands; do
    expect "$command has a help of its own and is in the manual" "Usage: kwoctl $command yes" \
        "$(kwoctl help "$command" | head -n 1 | cut -d ' ' -f 1-3) $(grep -qE "^\.It Ic (.*, )?$command( |$)" /usr/share/man/man1/kwoctl.1 && echo yes)"
done
stop zyl_kwo_service
expect_status 'kwoctl without the service says so' 3 kwoctl status
expect_status 'and does not wait for ever' 3 kwoctl --wait 0.2 status
(sleep 1; start zyl_kwo_service) >/dev/null 2>&1 &
expect_status 'but as long as it is told' 0 kwoctl --wait 300 stereo
end_of_cases
