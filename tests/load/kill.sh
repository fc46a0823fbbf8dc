# shellcheck shell=sh
# kill.sh KILLS: the service is killed at random moments, from its first instruction on, while four
# clients change their settings, and started again. What a client got an answer for is there
# afterwards, the settings file is always whole, and the DSP ends as the settings say.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh
wanted=$1

blocks() {
    for block in 0 1 2; do dspctl block $block; done | md5sum
}

# Kills the service after up to a second, until nobody is there to mind. Every other time it has started
# by then, or on a slow machine no client would ever get its calls done.
kill_often() {
    while [ -d "/proc/$1" ]; do
        [ $((kills % 2)) -eq 0 ] || await zyl_kwo_service
        # shellcheck disable=SC3028  # the phone's shell has it
        sleep "0.$((RANDOM % 10))$((RANDOM % 10))"
        pid=$(pidof zyl_kwo_service) || continue
        kill -9 "$pid"
        while [ -d "/proc/$pid" ]; do :; done
        kills=$((kills + 1))
        start zyl_kwo_service
    done
}

kills=0 rounds=0 died=0 wrong='' torn='' apart=''
while [ "$kills" -lt "$wanted" ]; do
    rounds=$((rounds + 1))
    : >/run/journal
    : >/run/log/zyl_kwo_service
    zyl_load changing 4 40 >/tmp/out 2>&1 &
    kill_often $!
    await zyl_kwo_service
    wrong="$wrong$(sed -n 's/^setting.*/& in round '"$rounds"';/p' /tmp/out)"
    died=$((died + $(sed -n 's/.*died=\([0-9]*\).*/\1/p' /tmp/out)))
    size=$(stat -c %s /data/misc/zyl/zyl_kwo_settings)
    [ "$size" -eq 68 ] || torn="$torn $size"
    found=$(blocks)
    reply 41 i32 0 >/dev/null
    [ "$found" = "$(blocks)" ] || apart="$apart $rounds"
done
echo "# $kills kills in $rounds rounds, $died calls died"
expect 'no acknowledged change is lost' '' "$wrong"
expect 'the settings file is whole after each round' '' "$torn"
expect 'the DSP is as the settings say after each round' '' "$apart"
expect 'calls died, too' yes "$([ "$died" -gt 0 ] && echo yes)"
end_of_cases
