# shellcheck shell=sh
# What the cases on the phone share. A case is one line of output, "ok NAME" or "not ok NAME" with
# what was expected and what came; the last line says how many there were.

cases=0
: >/tmp/seen

# expect NAME EXPECTED ACTUAL
expect() {
    cases=$((cases + 1))
    if [ "$2" = "$3" ]; then
        echo "ok $1"
    else
        echo "not ok $1"
        printf 'expected: %s\ngot:      %s\n' "$2" "$3"
    fi
}

# expect_status NAME STATUS COMMAND...: the exit status; the output is in /tmp/out and /tmp/err.
expect_status() {
    status_name=$1 status_wanted=$2 status_got=0
    shift 2
    "$@" >/tmp/out 2>/tmp/err || status_got=$?
    expect "$status_name" "$status_wanted" "$status_got"
}

# What the kernel and the service manager denied the service or its clients by the policy.
denials() {
    dmesg | cat - /run/log/servicemanager | sed -n 's/.*denied *\({ .*\)/\1/p' | grep zyl_kwo
}

end_of_cases() {
    expect 'the policy denied nothing' '' "$(denials)"
    echo "1..$cases"
}

# reply CODE [ARGUMENT]...: the words of the service's reply, in hex, or the error's number.
reply() {
    service call zyl_kwo_service "$@" |
        sed -n 's/0x0000[0-9a-f]*: //; s/Result: Parcel(//; s/^NULL)//; s/Error: \(0x[0-9a-f]*\).*/\1/; s/ *'\''.*//; s/^ *//; /./p' |
        paste -sd ' '
}

# new FILE: the lines that came since the last look.
new() {
    lines=$(grep -c '' "$1")
    seen=$(sed -n "s|^$1 ||p" /tmp/seen)
    tail -n +$((${seen:-0} + 1)) "$1"
    sed -i "\|^$1 |d" /tmp/seen
    echo "$1 $lines" >>/tmp/seen
}

new_log() {
    new /run/log/zyl_kwo_service | sed 's/ [0-9-]* [0-9:]* *[0-9]* *[0-9]* / /'
}

# The journal since the last look, a word an event; see lab/cases/story.h.
story() {
    new /run/journal | zyl_play -
}

# await SERVICE: until it is registered.
await() {
    until service check "$1" | grep -q ': found'; do sleep 0.1; done
}

restart_service() {
    stop zyl_kwo_service
    start zyl_kwo_service
    await zyl_kwo_service
}

# clean_start GENERATION: the service anew, with the generation's samples and no settings.
clean_start() {
    stop zyl_kwo_service
    rm -rf /etc/zyl /data/misc/zyl/*
    mkdir /etc/zyl
    case $1 in
        torvane) cp /usr/share/zyl/tunings/torvane/* /etc/zyl/ ;;
        maldor)
            cp /usr/share/zyl/tunings/maldor/* /data/misc/zyl/
            chown 2950:audio /data/misc/zyl/*
            ;;
    esac
    restart_service
    story >/dev/null
    new_log >/dev/null
}

# run_cases FILE: calls the service as the lines of the file say; see lab/cases/case_table.h.
run_cases() {
    clean_start "$(sed -n 's/^# generation: //p' "$1")"
    played=0
    zyl_play "$1" >/tmp/played || played=$?
    cat /tmp/played
    cases=$((cases + $(grep -cE '^(not )?ok ' /tmp/played)))
    [ "$played" -le 1 ] || expect "${1##*/} is played to its end" 0 "$played"
    story >/dev/null
}

# run_commands FILE: runs kwoctl as the lines of the file say, which are
#     STATUS|COMMAND|OUTPUT
# with the errors behind the output; \n ends a line.
run_commands() {
    while IFS='|' read -r status command wanted; do
        case $status in '#'*) continue ;; esac
        # shellcheck disable=SC2086
        expect_status "kwoctl $command ends with $status" "$status" kwoctl $command
        expect "kwoctl $command prints" "$(printf '%b' "$wanted")" "$(cat /tmp/out /tmp/err)"
    done <"$1"
}

# poke FILE OFFSET HEX...: overwrites bytes of a file.
poke() {
    poke_file=$1 poke_offset=$2
    shift 2
    for byte; do
        printf '%b' "\\x$byte"
    done | dd of="$poke_file" bs=1 seek="$poke_offset" conv=notrunc 2>/dev/null
}

settings() {
    xxd -p /data/misc/zyl/zyl_kwo_settings | tr -d '\n'
}
