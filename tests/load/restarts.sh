# shellcheck shell=sh
# restarts.sh ROUNDS SAMPLES: while clients ask, reload and dump, the permission service is stopped, killed
# and started at random, and the service manager killed and started. The service answers all the while, ends
# with the service manager alone, and comes back with what was acknowledged. Then so many calls of a client
# that asks now and then, beside clients that upload without a pause: none of them goes first twice.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh
wanted=$1 samples=$2

# shellcheck disable=SC3028  # the phone's shell has RANDOM
client() {
    while [ ! -e /tmp/over ]; do
        service call zyl_kwo_service 8 i32 $((RANDOM % 10))
        service call zyl_kwo_service 41 i32 0
        as shell nobody timeout 5 dumpsys zyl_kwo_service
        sleep 0.5
    done >/dev/null 2>&1
}

# end_of NAME: without a chance to say good-bye.
end_of() {
    killall -9 "$1"
    while pidof "$1" >/dev/null; do sleep 0.1; done
}
again() {
    start "$1"
    await "$2"
}

# Each leaves all as it was before.
# shellcheck disable=SC3028  # as above
stop_permission() {
    killall -STOP permissiond
    sleep "0.$((RANDOM % 10))"
    answer
    killall -CONT permissiond
}
kill_permission() {
    end_of permissiond
    answer
    again permissiond permission
}
kill_manager() {
    end_of servicemanager
    while [ -d "/proc/$pid" ]; do sleep 0.1; done
    ended=$((ended + 1))
    again servicemanager manager
    stop permissiond
    again permissiond permission
    # It asks for the permission of each of its clients once: here, and not while nobody answers.
    stop audiod
    again audiod media.audio_flinger
    again zyl_kwo_service zyl_kwo_service
    pid=$(pidof zyl_kwo_service)
}

# Sets a mode, which must be answered, and has it that the mode from before was there.
answer() {
    got=$(reply 4)
    [ "$got" = "00000000 0000000$mode" ] || lost="$lost $rounds: $got, not $mode"
    mode=$((mode % 3 + 1))
    got=$(reply 5 i32 $mode)
    [ "$got" = 00000000 ] || lost="$lost $rounds: $got"
}

rm -f /tmp/over
for _ in 1 2; do
    client &
    clients="$clients $!"
done
reply 5 i32 1 >/dev/null
pid=$(pidof zyl_kwo_service) mode=1 rounds=0 ended=0 restarts=0 lost=''
while [ "$rounds" -lt "$wanted" ]; do
    rounds=$((rounds + 1))
    # Each once, and then at random.
    # shellcheck disable=SC3028  # as above
    case $((rounds > 3 ? RANDOM % 3 : rounds % 3)) in
        0) kill_manager ;;
        1) stop_permission ;;
        2) kill_permission ;;
    esac
    answer
    [ "$pid" = "$(pidof zyl_kwo_service)" ] || restarts=$((restarts + 1))
    pid=$(pidof zyl_kwo_service)
done
: >/tmp/over
# shellcheck disable=SC2086
wait $clients
echo "# $rounds rounds, the service manager killed in $ended"
expect 'every call was answered, with what was acknowledged before' '' "$lost"
expect 'the service ended with the service manager alone' 0 "$restarts"
for uploaders in 1 4; do
    zyl_attack wait $uploaders "$samples" >/tmp/out
    most=$(sed 's/.*uploads=//' /tmp/out)
    expect "beside $uploaders, at most $((2 * uploaders)) uploads come first ($(cat /tmp/out))" yes \
        "$([ "$most" -le $((2 * uploaders)) ] && echo yes)"
done
end_of_cases
