# shellcheck shell=sh
# kwoctl as a person uses it: what it prints, and how it ends.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh

# STATUS|COMMAND|OUTPUT, with the errors behind the output; \n ends a line.
while IFS='|' read -r status command wanted; do
    # shellcheck disable=SC2086
    expect_status "kwoctl $command ends with $status" "$status" kwoctl $command
    expect "kwoctl $command prints" "$(printf '%b' "$wanted")" "$(cat /tmp/out /tmp/err)"
done <<'END'
0|status|effect         on\nstereo mode    2\ntuning         speaker 1\ntuning         lineout 3\ntuning         bluetooth 0
0|disable|effect         off
0|enable|effect         on
0|stereo|stereo mode    2
0|stereo 3|stereo mode    3
1|stereo 4|kwoctl: stereo: a value is out of range (-1)
2|stereo three|kwoctl: stereo: 'three' is not a stereo mode: 1, 2 or 3
2|stereo 1 2|kwoctl: usage: kwoctl stereo [1|2|3]
0|tuning speaker 2|tuning         speaker 2
0|tuning 2|tuning         bluetooth 0
1|tuning lineout 7|kwoctl: tuning: there is no such tuning file (-2)
2|tuning 3|kwoctl: tuning: '3' is not a route: speaker, lineout or bluetooth
2|tuning|kwoctl: usage: kwoctl tuning ROUTE [N]
2|nonsense|kwoctl: nonsense: no such command; see kwoctl help
END
expect_status 'kwoctl alone is a wrong usage' 2 kwoctl
expect_status 'kwoctl help helps' 0 kwoctl help
expect 'with every command' 'block disable enable geq levels mask reload route status stereo tuning version' \
    "$(awk '/^  [a-z]/ { print $1 }' /tmp/out | sort | paste -sd ' ')"
stop zyl_kwo_service
expect_status 'kwoctl without the service says so' 3 kwoctl status
end_of_cases
