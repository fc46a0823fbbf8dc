# shellcheck shell=sh
# The phone itself: what of it the service and its tests rely on, as API 24 has it.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh
owner() {
    stat -c '%a %u:%g' "$1"
}

expect 'threads may take over a caller'\''s priority' 40 \
    "$(awk '/^Max nice/ { print $4 }' "/proc/$(pidof zyl_kwo_service)/limits")"
take_name test.name first &
first=$!
await test.name
take_name test.name second &
second=$!
expect_status 'of two services under a name the newest wins' 0 \
    timeout 60 sh -c 'until service list | grep -q "test.name: .second."; do sleep 0.1; done'
kill $first $second
expect 'service takes negative numbers' '00000000 ffffffff' "$(reply 40 i32 -1 >/dev/null && reply 32 i32 0)"

# What init refuses.
cat >/system/etc/init/test.rc <<'END'
service by_name /bin/id
    seclabel u:r:shell:s0
    user oem_2950
    group audio

service by_number /bin/id
    seclabel u:r:shell:s0
    user 2950
    group audio

service in_no_group /bin/id
    seclabel u:r:shell:s0
    user 2950
    group oem_2950

service without_domain /bin/id
    user 2950

on test
    mkdir /data/misc/by_name 0770 oem_2950 audio
    mkdir /data/misc/by_number 0770 2950 audio
END
expect_status 'a user that init does not know starts nothing' 127 rc start by_name
expect_status 'nor does a group' 127 rc start in_no_group
expect_status 'nor does a program without a domain' 127 rc start without_domain
expect 'a user by number does' 'uid=2950 gid=1005(audio)' "$(rc start by_number | sed 's/ context.*//')"
rc on test
expect 'a directory of a user that it does not know stays root'\''s' '770 0:1005 770 2950:1005' \
    "$(owner /data/misc/by_name) $(owner /data/misc/by_number)"

# What ueventd refuses, and that it sees nodes that come.
cat >/ueventd.zz.rc <<'END'
/dev/zyl_q* 0640 radio audio
/dev/zyl_quorin 0666 oem_2950 audio
/dev/zyl_quorin 0666 2950 audio
/dev/zyl_quorin 0666 system audio_2
END
# again RULE: a DSP that comes anew, and whom its node has then.
again() {
    stop dspd
    stop ueventd
    start ueventd
    start dspd
    for _ in $(seq 120); do
        [ "$(owner /dev/zyl_quorin 2>/dev/null)" != "$1" ] || break
        sleep 0.5
    done
    owner /dev/zyl_quorin
}
expect 'of rules for a node the last one with known names counts' '640 1001:1005' "$(again '640 1001:1005')"
rm /ueventd.zz.rc
expect 'and without others the service'\''s own' '660 1000:1005' "$(again '660 1000:1005')"
restart_service
expect 'with a DSP that came anew the service works after a start' 00000000 "$(reply 5 i32 3)"
end_of_cases
