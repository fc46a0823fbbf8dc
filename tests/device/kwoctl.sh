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

# Trials. What is tried goes back, whatever becomes of kwoctl; `kept` is what stays.
# stereo_becomes MODE: waits for it, half a minute or so at the most, without the help of kwoctl.
stereo_becomes() {
    for _ in $(seq 150); do
        [ "$(reply 4)" != "00000000 0000000$1" ] || return 0
        sleep 0.2
    done
    return 1
}
kwoctl set effect=on stereo=1 >/dev/null
expect 'a trial ends with its time' '{"trial":"running","seconds":1,"changes":{"stereo":{"before":1,"after":3}}}
{"trial":"back","why":"time","changes":{"stereo":{"before":1,"after":3}}}' "$(kwoctl --json try 1 set stereo=3)"
expect 'and leaves things as they were' 'stereo mode    1' "$(kwoctl get stereo)"
for how in undo HUP INT KILL both restart; do
    setsid kwoctl try 300 set stereo=3 >/tmp/trial 2>&1 &
    expect_status "a trial is on ($how)" 0 stereo_becomes 3
    trial=$(pidof kwoctl | tr ' ' '\n' | while read -r pid; do tr '\0' ' ' <"/proc/$pid/cmdline" | grep -q 'try 300' && echo "$pid"; done)
    case $how in
        undo) kwoctl undo >/dev/null ;;
        both) killall -9 kwoctl && kwoctl get stereo >/tmp/next 2>&1 ;;
        restart) restart_service ;;
        *) kill -"$how" "$trial" ;;
    esac
    expect_status "$how ends it" 0 stereo_becomes 1
done
expect 'what both left behind was ended by the next' 1 "$(grep -c 'the trial of .* was cut off; it is taken back' /tmp/next)"
expect 'and the history knows them all' 6 "$(kwoctl history | grep -c 'undone *try 300')"
(until kwoctl keep >/tmp/keep 2>/dev/null; do sleep 0.2; done) &
expect 'a trial that is kept stays' '{"trial":"kept","changes":{"stereo":{"before":1,"after":3}}} stereo mode    3' \
    "$(kwoctl --json try 300 set stereo=3 | tail -n 1) $(kwoctl get stereo)"
wait
kwoctl undo >/dev/null
expect 'and can be undone' 'stereo mode    1' "$(kwoctl get stereo)"
kwoctl snapshot /tmp/one >/dev/null
sed 's/^stereo 1/stereo 2/' /tmp/one >/tmp/two
expect 'two snapshots are compared by ear' 'A              /tmp/one
B              /tmp/two
A was /tmp/one
B was /tmp/two
as before' "$(printf ' q' | kwoctl ab /tmp/one /tmp/two 2>/dev/null)"
expect 'blindly, and one is kept' '2' "$(printf 'k' | kwoctl --json ab --blind /tmp/two /tmp/two | grep -cE '^\{"hears":"X"\}$|"X":"/tmp/two","Y":"/tmp/two","kept":"/tmp/two"')"
timeout 4 kwoctl --json watch --interval 0.1 >/tmp/watched &
sleep 2
kwoctl stereo 3 >/dev/null
wait
expect 'changes are seen as they come' '{"stereo":{"before":2,"after":3}}' "$(sed -n '2s/.*"changes":\(.*\)}$/\1/p' /tmp/watched)"

# A service that restarts in the middle, behind a slow DSP.
kwoctl snapshot /tmp/before >/dev/null
kwoctl set effect=off stereo=1 levels=1,2,3,4,5,6,7,8,9,10 >/dev/null
dspctl slow 400
kwoctl --wait 60 restore /tmp/before >/tmp/restored 2>&1 &
sleep 1.5
stop zyl_kwo_service
start zyl_kwo_service
wait $!
dspctl slow 0
expect 'a restart in the middle of restore is lived through' 0 "$(kwoctl diff /tmp/before now | grep -c .)"

# What the service calls done and the DSP did not do.
dspctl fail 0 1000
expect_status 'that the DSP did not follow is said' 1 kwoctl disable
expect 'with what to do' 'kwoctl: speaker: the service keeps it, but the DSP did not follow: the DSP did not take or give the data (-3); see kwoctl verify; kwoctl reload sends all again' "$(cat /tmp/err)"
expect_status 'of a rebuild too' 1 kwoctl reload
expect_status 'verify says what it could not read' 1 kwoctl verify --json
expect 'block by block' 3 "$(grep -o '"error":{"status":1,"what":"[a-z]*","why":"the DSP did not' /tmp/out | grep -c .)"
dspctl reset
kwoctl reload >/dev/null
expect 'a tuning that will not work is warned of' 'kwoctl: tuning.speaker: taken unseen while the effect is off, but there is no /etc/zyl/speaker_77; speaker has the tunings 0, 1, 2' "$(kwoctl tuning speaker 77 2>&1 >/dev/null)"
expect_status 'and can be undone' 0 kwoctl undo
kwoctl enable >/dev/null

stop zyl_kwo_service
expect_status 'kwoctl without the service says so' 3 kwoctl status
expect_status 'and does not wait for ever' 3 kwoctl --wait 0.2 status
(sleep 1; start zyl_kwo_service) >/dev/null 2>&1 &
expect_status 'but as long as it is told' 0 kwoctl --wait 20 stereo
stop servicemanager
expect_status 'without a service manager it says so' 3 timeout 20 kwoctl status
expect 'and does not hang' 'kwoctl: zyl_kwo_service: the service manager is not running; without it no service can be found; restart the phone' "$(cat /tmp/err)"
end_of_cases
