# shellcheck shell=sh
# kwoctl as a person uses it: what it prints, and how it ends.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh

# table: runs the lines STATUS|COMMAND|OUTPUT of standard input, with the errors behind the output; \n
# ends a line.
table() {
    while IFS='|' read -r status command wanted; do
        # shellcheck disable=SC2086
        expect_status "kwoctl $command ends with $status" "$status" kwoctl $command
        expect "kwoctl $command prints" "$(printf '%b' "$wanted")" "$(cat /tmp/out /tmp/err)"
    done
}

table <<'END'
0|get effect stereo tuning.speaker|effect         on\nstereo mode    2\ntuning         speaker 1
0|--json get|{"generation":"torvane","effect":true,"stereo":2,"tuning":{"speaker":1,"lineout":3,"bluetooth":0},"geq":false,"gains":[4096,4096,4096,4096,4096,4096,4096,4096,4096,4096],"levels":[-80000,-80000,-80000,-80000,-80000,-80000,-80000,-80000,-80000,-80000],"route":"speaker","mask":{"speaker":2,"lineout":131084,"bluetooth":1008},"version":"KwoService=1.0.3.5.0;ConversionLib=3.1.0;QuorinVersion=2.4.1;QuorinDescription=Headphone and speaker effect of this phone;QuorinPlatformVersion=7","platform":"1.0.3.5.0, device type 0"}
0|disable|effect         off
0|verify bluetooth|block 2 bluetooth  as it should be, from /etc/zyl/bluetooth_0\n  equaliser: not checked while the effect is off
0|snapshot /tmp/off|snapshot       to /tmp/off
0|enable|effect         on
0|stereo|stereo mode    2
0|stereo 3|stereo mode    3
1|stereo 4|kwoctl: stereo: 4 is out of range; it takes a stereo mode: 1, 2 or 3
2|stereo three|kwoctl: stereo: 'three' is not a stereo mode: 1, 2 or 3
2|stereo 1 2|kwoctl: usage: kwoctl stereo [1|2|3]
0|tuning speaker 2|tuning         speaker 2
0|tuning 2|tuning         bluetooth 0
1|tuning lineout 7|kwoctl: tuning.lineout: there is no such tuning file (-2); they are in /etc/zyl or /data/misc/zyl
1|tuning lineout -1|kwoctl: tuning.lineout: -1 is out of range; it takes a tuning number, 0 and up as far as there are tuning files
2|tuning 3|kwoctl: tuning: '3' is not a route: speaker, lineout or bluetooth
2|tuning|kwoctl: usage: kwoctl tuning ROUTE [N]
2|effect maybe|kwoctl: effect: 'maybe' is not on, off or toggle
0|effect toggle|effect         off
1|set stereo=1 gains=0,0,0,0,0,0,0,0,0,0 effect=on|kwoctl: gains: 0 is out of range; it takes a gain: 725 to 32767, or like +3dB
1|set stereo=1 geq=on|kwoctl: geq: the effect is off; first: kwoctl enable
1|set stereo=1 effect=on tuning.lineout=7|kwoctl: tuning.lineout: there is no such tuning file (-2); they are in /etc/zyl or /data/misc/zyl
0|get effect stereo|effect         off\nstereo mode    3
0|set stereo=1 effect=on geq=on gains=725,32767,+3dB,-1.5dB,0dB,-6,4096,4096,4096,4096|effect         on\nstereo mode    1\nequaliser      on\ngains          725 32767 5786 3446 4096 2053 4096 4096 4096 4096
0|geq toggle --json|{"geq":false,"gains":[725,32767,5786,3446,4096,2053,4096,4096,4096,4096]}
0|geq toggle --json|{"geq":true,"gains":[725,32767,5786,3446,4096,2053,4096,4096,4096,4096]}
0|snapshot /tmp/on|snapshot       to /tmp/on
1|diff /tmp/off /tmp/on|effect            off -> on\nstereo            2 -> 1\ntuning.speaker    1 -> 2\ngeq               (not there) -> on\ngains             4096 4096 4096 4096 4096 4096 4096 4096 4096 4096 -> 725 32767 5786 3446 4096 2053 4096 4096 4096 4096
0|restore /tmp/off|restored       /tmp/off, 6 steps
0|enable --wait 1|effect         on
0|get geq gains|equaliser      on\ngains          4096 4096 4096 4096 4096 4096 4096 4096 4096 4096
0|restore /tmp/on|restored       /tmp/on, 4 steps
0|restore /tmp/on|restored       /tmp/on, 0 steps
2|get nonsense --json --json=|kwoctl: --json=: '--json=' is not an option; see kwoctl help
2|reload --json|kwoctl: reload: '--json' is not an option of this command
2|nonsense|kwoctl: nonsense: no such command; see kwoctl help
0|--version|kwoctl 1.0
2|raw 5 i32|kwoctl: raw: 'i32' is not a pair of type and value
0|raw 5 i32 2|    0  0x00000000            0  ....
0|raw 4 --json|{"words":[0,2]}
0|raw 29 f 1 f -2.5 f 0 f 1e3|    0  0xfffffff7           -9  ....
0|raw 3001 fd /tmp/off i32 5|    0  0x00000000            0  ....
1|raw 999|kwoctl: raw: the service did not take it: UNKNOWN_TRANSACTION
1|listening-test|kwoctl: listening-test: not available on this device's settings generation (-9); see kwoctl get generation
END
printf 'stereo 2\n\nlevels 1 2\n' >/tmp/bad
expect_status 'a faulty snapshot restores nothing' 1 kwoctl restore /tmp/bad
expect 'and says where' "kwoctl: levels: '1' is not the first of 10 values
kwoctl: /tmp/bad:3: nothing is restored from this" "$(cat /tmp/err)"
sed 's/torvane/maldor/' /tmp/on >/tmp/other
expect_status 'nor does one of another generation' 1 kwoctl restore /tmp/other
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
expect 'forced mode is recognised' '  forced mode seems to be on; to end it: kwoctl reload off' "$(kwoctl verify 2 | tail -n 1)"
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
expect 'with every command' 'block diff disable effect enable geq get help levels listening-test mask raw reload report restore route set snapshot status stereo tune tuning verify version' \
    "$(echo "$commands" | sort | paste -sd ' ')"
for command in $commands; do
    expect "$command has a help of its own and is in the manual" "Usage: kwoctl $command yes" \
        "$(kwoctl help "$command" | head -n 1 | cut -d ' ' -f 1-3) $(grep -qE "^\.It Ic (.*, )?$command( |$)" /usr/share/man/man1/kwoctl.1 && echo yes)"
done
stop zyl_kwo_service
expect_status 'kwoctl without the service says so' 3 kwoctl status
expect_status 'and does not wait for ever' 3 kwoctl --wait 0.2 status
(sleep 1; start zyl_kwo_service) >/dev/null 2>&1 &
expect_status 'but as long as it is told' 0 kwoctl --wait 20 stereo
end_of_cases
