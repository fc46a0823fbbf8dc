# shellcheck shell=sh
# What the service may do, by its user and by the policy: what it needs, and no more.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh
process=/proc/$(pidof zyl_kwo_service)

descriptors() {
    for fd in "$process"/fd/*; do readlink "$fd"; done | paste -sd ' '
}
# Binder, and the directory of what it saves.
used='/dev/null /run/log/zyl_kwo_service /run/log/zyl_kwo_service /data/misc/zyl /dev/binder'

expect 'it runs as its user, without capabilities' \
    '2950:audio 0000000000000000 0000000000000000 0000000000000000' \
    "$(stat -c %u:%G "$process") $(awk '/^Groups:/ && NF > 1 || /^Cap(Inh|Prm|Eff):/ { print $2 }' "$process/status" | paste -sd ' ')"
expect 'and in its domain, which is enforced' 'u:r:zyl_kwo_service:s0 1' \
    "$(tr -d '\0' <"$process/attr/current") $(cat /sys/fs/selinux/enforce)"
expect 'a start leaves open what a daemon has and what it keeps' "$used" "$(descriptors)"
reply 5 i32 3 >/dev/null
kwoctl block fetch speaker /tmp/block >/dev/null
dumpsys zyl_kwo_service >/dev/null
expect 'and so do calls' "$used" "$(descriptors)"
expect 'its files are for nobody else' \
    '660 1000:audio /dev/zyl_quorin
770 2950:audio /data/misc/zyl
600 2950:audio /data/misc/zyl/zyl_kwo_settings' \
    "$(stat -c '%a %u:%G %n' /dev/zyl_quorin /data/misc/zyl /data/misc/zyl/zyl_kwo_settings)"
expect 'nobody may use the device' 1 \
    "$(su -s /bin/sh nobody -c ': 2>/dev/null </dev/zyl_quorin'; echo $?)"
expect 'every context is one of the policy' '' "$(
    sed -n 's/^[^#].* //p' /file_contexts /service_contexts /property_contexts | while read -r context; do
        printf %s "$context" >/sys/fs/selinux/context || echo "$context"
    done 2>&1
)"
expect 'all of it by the policy' '' "$(denials)"

# From a shell, as its user, which is how somebody looks for a fault: nothing of what it kept is lost.
stop zyl_kwo_service
as shell 2950:audio zyl_kwo_service -stub >/tmp/out 2>&1 &
await zyl_kwo_service
expect 'started by hand it works as well, with the same settings' '00000000 00000003 00000000 1' \
    "$(reply 4) $(reply 5 i32 1) $(grep -c 'in stub mode' /tmp/out)"
restart_service
expect 'and back' '00000000 00000001' "$(reply 4)"

chmod 370 /data/misc/zyl
expect 'it saves in a directory that it may search and write, but not read' 00000000 "$(reply 5 i32 2)"
chmod 770 /data/misc/zyl
restart_service
expect 'which lasts' '00000000 00000002' "$(reply 4)"

# Each time all but one thing is as the service needs it: its user's rights, or the policy's type.
without() {
    expect "without $1 it fails" "$2" "$(reply 5 i32 1) $(new_log | grep -c 'open file for saving')"
}
new_log >/dev/null
chown -R root /data/misc/zyl
chmod 755 /data/misc/zyl
without 'the right to its files' '00000000 1'
chown -R 2950 /data/misc/zyl
mv /data/misc/zyl /data/away
mkdir -m 777 /data/misc/zyl
without 'the type of its directory' '00000000 1'
rmdir /data/misc/zyl
mv /data/away /data/misc/zyl
chmod 600 /dev/zyl_quorin
without 'the right to the device' 'ffffffff 0'
rm /dev/zyl_quorin
# shellcheck disable=SC2046
mknod -m 666 /dev/zyl_quorin c $(sed 's/:/ /' /sys/class/cuse/zyl_quorin/dev)
without 'the type of the device' 'ffffffff 0'
restorecon /dev/zyl_quorin
expect 'with both it works' '00000000 0' "$(reply 5 i32 1) $(new_log | grep -c 'open file for saving')"
cp /system/bin/zyl_kwo_service /tmp/impostor
expect_status 'another program of its user cannot take its name' 255 as shell 2950 /tmp/impostor
expect 'the policy denied just that' 'dir chr_file service_manager' \
    "$(denials | sed 's/.*tclass=\([a-z_]*\).*/\1/' | uniq | paste -sd ' ')"
dmesg -c >/dev/null
: >/run/log/servicemanager
end_of_cases
