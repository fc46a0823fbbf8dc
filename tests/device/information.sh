# shellcheck shell=sh
# Routes, levels, versions and the dump.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh
story >/dev/null
new_log >/dev/null

# version: the text of code 11, from the reply's bytes.
version() {
    service call zyl_kwo_service 11 | sed -n "s/.*0x0000[0-9a-f]*: \(.*\) '.*/\1/p" | tr ' ' '\n' |
        sed -n 's/\(..\)\(..\)\(..\)\(..\)/\4\3\2\1/p' | xxd -r -p | tr -d '\0'
}

run_cases /tests/cases/clients.cases
restart_service
expect 'routes and levels do not outlive a restart' \
    '00000000 00000000 00000000 fffec780' "$(reply 32) $(reply 3004 | cut -c 1-17)"
story >/dev/null

fill() {
    printf '%0*d' "$1" 0
}
# The reply to each query, and what becomes of it: a version and a platform text of 39 characters fit,
# of 40 do not; a key in the middle is where a text begins.
texts() {
    audioctl reply QuorinVersion "$1"
    audioctl reply QuorinDescription "$2"
    audioctl reply QuorinPlatformVersion "$3"
}
new_log >/dev/null
prefix='KwoService=1.0.3.5.0;ConversionLib=3.1.0'
expect 'versions of all parts' "$prefix;QuorinVersion=2.4.1;QuorinDescription=Headphone and speaker effect of this phone;QuorinPlatformVersion=7" "$(version)"
expect 'each is asked for' 'audio get QuorinVersion audio get QuorinDescription audio get QuorinPlatformVersion' "$(story)"
texts '' '' ''
expect 'no answers leave empty pieces' "$prefix;;;" "$(version)"
expect 'missing keys are logged' \
    "ZylcsToQuorinConv E int zylDriver::getQuorinVersion(char *, unsigned int): cannot copy version info. min value of 'size' should be 0
ZylcsToQuorinConv E int zylDriver::getQuorinDescription(char *, unsigned int): cannot copy quorin description. min value of 'size' should be 0" \
    "$(new_log)"
texts 'x=1;QuorinVersion=2' "QuorinDescription=$(fill 2053)" "P=$(fill 37)"
expect 'replies that just fit' "$prefix;QuorinVersion=2;QuorinDescription=$(fill 2053);P=$(fill 37)" "$(version)"
expect 'fit without a word' '' "$(new_log)"
texts "QuorinVersion=$(fill 26)" "QuorinDescription=$(fill 2054)" "P=$(fill 38)"
expect 'replies one too long' "$prefix;;;" "$(version)"
expect 'are logged with their length' \
    "ZylcsToQuorinConv E int zylDriver::getQuorinVersion(char *, unsigned int): cannot copy version info. min value of 'size' should be 40
ZylcsToQuorinConv E int zylDriver::getQuorinDescription(char *, unsigned int): cannot copy quorin description. min value of 'size' should be 2072
ZylcsToQuorinConv E int zylDriver::getQuorinPlatformVersion(char *, unsigned int): cannot copy quorin platform version. min value of 'size' should be 40" \
    "$(new_log)"
stop audiod
expect 'without an audio system there is still a version' "$prefix;;;" "$(version)"
expect 'and a setter still works' 00000000 "$(reply 5 i32 3)"
start audiod
until service check media.audio_flinger | grep -q ': found'; do sleep 0.1; done
story >/dev/null
expect 'announcements find the audio system again' 'w2.1=01000000 a w2.2=01000000 a a' \
    "$(reply 5 i32 1 >/dev/null && story)"
echo no-version >/etc/zyl/conversion.conf
restart_service
texts '' '' ''
expect 'a conversion library without a version is left out' 'KwoService=1.0.3.5.0;;;' "$(version)"
rm /etc/zyl/conversion.conf
restart_service

expect 'a permitted dump is the banner alone, without a line end' 'zyl_kwo_service dump.......|' \
    "$(dumpsys zyl_kwo_service && echo '|')"
expect 'a denied dump names the caller' yes "$(
    su -s /bin/sh nobody -c 'dumpsys zyl_kwo_service & echo pid $!; wait' | awk '
        /^pid / { pid = $2 }
        /^Permission Denial/ { text = $0 }
        END { print text == "Permission Denial: can'\''t dump zyl_kwo_service from pid=" pid ", uid=9999" ? "yes" : text }'
)"
new_log >/dev/null
# A dump request as no one sends it, without a descriptor: '_DMP' as a number.
expect 'a dump that cannot be written is an error' 0x80000000 "$(reply 1598311760 i32 0)"
expect 'and logged' \
    'zyl_kwo_service service E virtual status_t zyl_kwo_service::dump(int, const Vector<android::String16> &): error writing string' \
    "$(new_log | grep -v '^Parcel ')"
expect 'a reader that closes early cannot end the service: it ignores SIGPIPE' 1 \
    "$(sed -n 's/^SigIgn:.*\([0-9a-f]\)[0-9a-f][0-9a-f][0-9a-f]$/\1/p' "/proc/$(pidof zyl_kwo_service)/status")"

while IFS='|' read -r command wanted; do
    # shellcheck disable=SC2086
    expect "kwoctl $command prints" "$(printf '%b' "$wanted")" "$(kwoctl $command 2>&1)"
done <<'END'
route|active route   speaker
route bluetooth|active route   bluetooth
route 77|active route   77
mask|mask           speaker   0x00000002\nmask           lineout   0x0002000c\nmask           bluetooth 0x000003f0
mask lineout|mask           lineout   0x0002000c
mask 3|kwoctl: mask: a value is out of range (-1)
levels|levels         -80000 -80000 -80000 -80000 -80000 -80000 -80000 -80000 -80000 -80000
levels 1 -2 3 4 5 6 7 8 9 10|levels         1 -2 3 4 5 6 7 8 9 10
levels 1 2|kwoctl: levels: '1' is not the first of 10 values
version|version        KwoService=1.0.3.5.0;ConversionLib=3.1.0;;;\nplatform       1.0.3.5.0, device type 0
reload on|reloaded       forced mode on
reload|reloaded       forced mode off
geq set 0 +3dB|kwoctl: geq: the equaliser is off, gains are not kept; first: kwoctl geq on
geq loud|kwoctl: geq: 'loud' is not on, off, toggle, flat, set BAND GAIN or set-all with ten GAINs
END
kwoctl geq on >/dev/null
kwoctl geq set 9 -6dB >/dev/null
expect 'kwoctl geq takes raw gains and decibels' \
    'equaliser      on
band 0   4096   +0.0 dB  ................|...................
band 1   8192   +6.0 dB  ................|######.............
band 2   5786   +3.0 dB  ................|###................
band 3   4096   +0.0 dB  ................|...................
band 4   4096   +0.0 dB  ................|...................
band 5   4096   +0.0 dB  ................|...................
band 6   4096   +0.0 dB  ................|...................
band 7   4096   +0.0 dB  ................|...................
band 8   2048   -6.0 dB  ..........######|...................
band 9    725  -15.0 dB  .###############|...................' \
    "$(kwoctl --color always geq set-all 4096 8192 +3dB 4096 0dB 4096 4096 4096 -6.02 725 |
        tr -d '\033' | sed 's/\[[0-9]*m//g')"
expect_status 'kwoctl geq refuses a gain out of range' 1 kwoctl geq set 0 724
expect_status 'kwoctl geq refuses a band out of range' 1 kwoctl geq set 10 4096
expect_status 'kwoctl geq flat' 0 kwoctl geq flat
expect 'sets every band' 10 "$(grep -c ' 4096 ' /tmp/out)"
kwoctl disable >/dev/null
expect_status 'kwoctl geq on with the effect off' 1 kwoctl geq on
expect 'tells what to do' 'kwoctl: geq: the effect is off; first: kwoctl enable' "$(cat /tmp/err)"
end_of_cases
