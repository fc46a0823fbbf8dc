# shellcheck shell=sh
# kwoctl when something ends in the middle: trials, a service that restarts, a DSP that does not follow.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh

export KWOCTL_DIR=/tmp/kwoctl
# Trials. What is tried goes back, whatever becomes of kwoctl.
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
kwoctl --json watch --interval 0.1 >/tmp/watched &
until grep -q '"state"' /tmp/watched; do sleep 0.1; done
kwoctl stereo 3 >/dev/null
until grep -q '"changes"' /tmp/watched; do sleep 0.1; done
kill $!
expect_status 'a watch ends well' 0 wait $!
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

stop servicemanager
expect_status 'without a service manager it says so' 3 timeout 20 kwoctl status
expect 'and does not hang' 'kwoctl: zyl_kwo_service: the service manager is not running; without it no service can be found; restart the phone' "$(cat /tmp/err)"
end_of_cases
