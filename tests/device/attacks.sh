# shellcheck shell=sh
# What an application, a fault of the library or a file in the wrong place takes from the others: nothing.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh
settings=/data/misc/zyl/zyl_kwo_settings
record=/data/misc/zyl/current_lineout
multi_channel_room='27 i32 4 i32 65 i32 4 i32 0'

memory() {
    awk '/^VmHWM/ { print $2 }' "/proc/$(pidof zyl_kwo_service)/status"
}
# kill_service: without a chance to save.
kill_service() {
    pid=$(pidof zyl_kwo_service)
    kill -9 "$pid"
    while [ -d "/proc/$pid" ]; do sleep 0.1; done
}
found() {
    await zyl_kwo_service
}

story >/dev/null
new_log >/dev/null
mode=$(reply 4)
# So many that those of the call before, which may still be closing, leave room for them.
expect 'descriptors that a code does not take are refused' 'done=0 status=-2147483647' \
    "$(zyl_attack hoard 3002 400 1 | sed 's/refused=[0-9]* //; s/ longest.*//')"
zyl_attack flood 5 1000 >/dev/null
expect 'one-way calls are not done' "$mode / " "$(reply 4) / $(story)"
for request in 'dump 41' 'dump 40000' 'shell 81' 'shell 40000'; do
    # shellcheck disable=SC2086
    expect "a request for a $request bytes long is refused before it is read" 'done=0 refused=4 status=-22 ' \
        "$(zyl_attack platform $request 4 | sed 's/longest.*//')$(new_log)"
done

# Two of six wait, and everything else is answered.
killall -STOP permissiond
for i in 1 2 3 4 5 6; do
    as shell nobody dumpsys -t 600 zyl_kwo_service >/tmp/dump.$i &
    dumps="$dumps $!"
done
until [ "$(cat /tmp/dump.* | grep -c 'busy with other dumps')" -ge 4 ]; do sleep 0.1; done
expect 'while the permission service hangs, other calls are answered' "$mode / 00000000" "$(reply 4) / $(reply 41 i32 0)"
killall -CONT permissiond
# shellcheck disable=SC2086
wait $dumps
expect 'two dumps waited for it, four did not' '2 4' \
    "$(cat /tmp/dump.* | grep -c 'Permission Denial') $(cat /tmp/dump.* | grep -c 'busy with')"

before=$(memory)
zyl_attack announce 2 >/tmp/out
expect "of two work areas of 16 MiB one is in memory at a time ($(($(memory) - before)) kB more, $(cat /tmp/out))" yes \
    "$([ $(($(memory) - before)) -lt 24576 ] && echo yes)"

# What stands in the place of the settings and of a record when they are saved: whether the settings are,
# whether the record is, and how it comes to be so. The file's mode and kind stay.
content() {
    if [ -f "$1" ]; then md5sum <"$1"; else stat -c %F "$1" 2>/dev/null; fi
}
reply 5 i32 1 >/dev/null
cp $settings $record /tmp/
other=2
new_log >/dev/null
while IFS='|' read -r name settings_saved record_saved commands; do
    for file in $settings $record; do
        rm -rf $settings* $record*
        cp /tmp/zyl_kwo_settings /tmp/current_lineout /data/misc/zyl/
        chown 2950:audio /data/misc/zyl $settings $record
        chmod 640 $settings $record
        eval "$commands"
        before=$(content "$file") kind=$(stat -c '%F %a' "$file" 2>/dev/null)
        other=$((5 - other)) saved=$record_saved
        if [ "$file" = $settings ]; then
            saved=$settings_saved
            reply 5 i32 $other >/dev/null
        else
            # shellcheck disable=SC2086
            reply $multi_channel_room >/dev/null
        fi
        after=$(content "$file")
        [ -n "$kind" ] || [ "$saved" = no ] || kind='regular file 600'
        expect "$name: ${file##*/}" "$saved $kind" "$([ "$before" = "$after" ] && echo no || echo yes) $(
            stat -c '%F %a' "$file" 2>/dev/null
        )"
    done
done <<'TABLE'
nothing|yes|no|rm $file
a file of its own|yes|yes|
a file of another's|no|no|chown root $file; chmod 644 $file
a file that all may write|yes|yes|chown root $file; chmod 666 $file
a directory|no|no|rm $file; mkdir $file
a FIFO|no|no|rm $file; mkfifo $file
a link|yes|yes|mv $file $file.else; ln -s ${file##*/}.else $file
a link to nowhere|no|no|rm $file; ln -s /data/misc/none/at-all $file
a stale temporary|yes|yes|echo >$file.tmp
a directory by the temporary's name|yes|yes|mkdir $file.tmp
a directory of another's|yes|yes|chown root /data/misc/zyl; chmod 755 /data/misc/zyl
TABLE
chown 2950:audio /data/misc/zyl
chmod 770 /data/misc/zyl
expect 'in silence but for settings that cannot be opened, and the policy denied a FIFO alone' \
    '4 fifo_file' "$(new_log | grep -c 'SaveStruct(): Error while trying to open file for saving') $(
        denials | sed 's/.*tclass=\([a-z_]*\).*/\1/' | sort -u | paste -sd ' '
    )"
dmesg -c >/dev/null

# The same at a start.
rm -f $settings* $record*
cp /tmp/zyl_kwo_settings /tmp/current_lineout /data/misc/zyl/
chown root $settings
chmod 600 $settings
before=$(md5sum <$settings)
kill_service
# As much as a disk has room for, and more.
dd if=/dev/zero of=/data/misc/zyl/cache-mask.csv bs=1 count=0 seek=1000M 2>/dev/null
start
found
expect 'settings that cannot be read are left alone, and the defaults hold' "$before root 00000000 00000002" \
    "$(md5sum <$settings) $(stat -c %U $settings) $(reply 4)"
expect "a mask file of a gigabyte is not read to its end ($(memory) kB)" yes \
    "$([ "$(memory)" -lt 16384 ] && echo yes)"
rm /data/misc/zyl/cache-mask.csv
chown 2950:audio $settings $record

# reported LINE: the service's first lines of the log where the conversion library reports so, and whether it
# lives through calls.
reported() {
    kill_service
    echo "$1" >/etc/zyl/conversion.conf
    new_log >/dev/null
    start
    found
    pid=$(pidof zyl_kwo_service)
    reply 12 i32 1 >/dev/null
    reply 15 i32 4096 i32 4096 i32 4096 i32 4096 i32 4096 i32 4096 i32 4096 i32 4096 i32 4096 i32 4096 >/dev/null
    # shellcheck disable=SC2086
    said=$(reply $multi_channel_room)
    [ "$pid" = "$(pidof zyl_kwo_service)" ] || said="$said, died"
    echo "$said $(new_log | grep -o -e 'row [0-9]* is refused' -e 'no pipeline of a size that can be' -e 'a record holds [0-9]* bytes' | sort -u | paste -sd ' ') $(stat -c %s $record)"
}
mkdir -p /etc/zyl
expect 'a row of 4 GiB is refused' '00000000 row 2 is refused 61700' "$(reported 'row 2 size 4294967288')"
expect 'a pipeline of 1 GiB is refused' 'fffffffc a record holds 61700 bytes no pipeline of a size that can be 61700' \
    "$(reported 'pipeline-size 1073741824')"
expect 'an image larger than a record is not folded into one' 'fffffffc a record holds 61700 bytes 61700' \
    "$(reported 'pipeline-size 70000')"
rm /etc/zyl/conversion.conf
kill_service

# Clients have filled its table of descriptors: standard input, output and error, binder, and the directory
# for its settings and for its records are all it has.
# shellcheck disable=SC3045  # the phone's shell has it
(exec >>/run/log/zyl_kwo_service 2>&1; ulimit -Sn 6 && exec as shell 2950:audio zyl_kwo_service) &
found
new_log >/dev/null
expect 'with its table full it starts, saves and reaches the DSP' '00000000 / w2.1=3 w2.2=3 a' \
    "$(story >/dev/null; reply 5 i32 3) / $(story)"

# The name is the last one's that asked for it.
older=$(pidof zyl_kwo_service)
: >/run/log/zyl_kwo_service
as shell 2950:audio zyl_kwo_service >>/run/log/zyl_kwo_service 2>&1 &
until grep -q 'joining thread pool' /run/log/zyl_kwo_service; do sleep 0.1; done
kill -9 "$older"
expect 'of two services the newer one answers, with what the older one saved' '00000000 00000003' "$(reply 4)"

stop servicemanager
until ! pidof zyl_kwo_service; do sleep 0.1; done
expect 'the service ends with the service manager' 1 \
    "$(grep -c 'The ServiceManager died, ending' /run/log/zyl_kwo_service)"
# Before there is one to register with.
start
sleep 1
for name in servicemanager permissiond audiod; do
    stop $name
    start $name
done
found
expect 'and the next one waits for the next one' '00000000 00000003 0' \
    "$(reply 4) $(reply 41 i32 0 >/dev/null; new_log | grep -c Failed)"
end_of_cases
