# shellcheck shell=sh
# The DSP refuses: each request of each operation in turn, and the device itself missing.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh

uptime_centiseconds() {
    sed 's/ .*//; s/\.//' /proc/uptime
}

run_cases /tests/cases/faults.cases
reply 5 i32 3 >/dev/null

# The n-th request of a start: whatever fails, the service comes up and goes on with the next. The DSP
# still knows the cache size of the start before.
while IFS='|' read -r skip wanted; do
    story >/dev/null
    dspctl fail "$skip" 1
    restart_service
    dspctl reset
    expect "a start with request $skip failing goes on" "$wanted" "$(story)"
    expect "a start with request $skip failing answers" '00000000 00000003' "$(reply 4)"
done <<'END'
0|xS185100 C0 C1 C2 W0 a W1 a W2 a a
1|S185100 xC0 C1 C2 !W0 a W1 a W2 a a
2|S185100 C0 xC1 C2 W0 a !W1 a W2 a a
3|S185100 C0 C1 xC2 W0 a W1 a !W2 a a
4|S185100 C0 C1 C2 xW0 a W1 a W2 a a
5|S185100 C0 C1 C2 W0 a xW1 a W2 a a
6|S185100 C0 C1 C2 W0 a W1 a xW2 a a
END
restart_service
story >/dev/null
restart_service
expect 'the next start is whole again' 'S185100 C0 C1 C2 W0 a W1 a W2 a a' "$(story)"

mv /dev/zyl_quorin /dev/away
from=$(uptime_centiseconds)
expect 'without its device a setter fails' ffffffff "$(reply 5 i32 2)"
to=$(uptime_centiseconds)
expect 'and announces all the same' 'a a' "$(story)"
elapsed=$(((to - from) * 10))
expect "after twelve attempts of 100 ms (took $elapsed ms)" yes \
    "$([ "$elapsed" -ge 1200 ] && [ "$elapsed" -lt 3000 ] && echo yes)"
mv /dev/away /dev/zyl_quorin
expect 'and works again when it is back' 00000000 "$(reply 5 i32 2)"

rm /etc/zyl/speaker_1
new_log >/dev/null
story >/dev/null
expect 'without its tuning file the effect cannot be switched' 0x80000002 "$(reply 3 i32 3)"
expect 'and the DSP hears nothing of it' '' "$(story)"
expect 'the log tells why' 'zyl_kwo_service service E LoadParamBlock returned an error (-2)....' \
    "$(new_log | grep 'LoadParamBlock returned')"
expect 'but the choice is kept' 00000003 "$(reply 2)"
expect 'a rebuild goes on with the other blocks' 'W1 a W2 a a' "$(reply 41 i32 0 >/dev/null && story)"
mkdir /data/misc/zyl/zyl_kwo_settings.tmp
new_log >/dev/null
expect 'a settings file that cannot be written fails no call' 00000000 "$(reply 5 i32 1)"
expect 'but is logged' \
    'zyl_settings_struct_torvane E virtual void zylSettingsStructTorvane::SaveStruct(): Error while trying to open file for saving (file://data//misc//zyl//zyl_kwo_settings)' \
    "$(new_log)"
end_of_cases
