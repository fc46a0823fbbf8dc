# shellcheck shell=sh
# The audio system, there and not, and the dump.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh
story >/dev/null

# version: the text of code 11, from the reply's bytes.
version() {
    service call zyl_kwo_service 11 | sed -n "s/.*0x0000[0-9a-f]*: \(.*\) '.*/\1/p" | tr ' ' '\n' |
        sed -n 's/\(..\)\(..\)\(..\)\(..\)/\4\3\2\1/p' | xxd -r -p | tr -d '\0'
}

prefix='KwoService=1.0.3.5.0;ConversionLib=3.1.0'
expect 'versions of all parts' "$prefix;QuorinVersion=2.4.1;QuorinDescription=Headphone and speaker effect of this phone;QuorinPlatformVersion=7" "$(version)"
expect 'each is asked for' 'audio get QuorinVersion audio get QuorinDescription audio get QuorinPlatformVersion' "$(story)"
stop audiod
expect 'without an audio system there is still a version' "$prefix;;;" "$(version)"
expect 'and a setter still works' 00000000 "$(reply 5 i32 3)"
start audiod
await media.audio_flinger
story >/dev/null
expect 'announcements find the audio system again' 'w2.1=1 w2.2=1 a' \
    "$(reply 5 i32 1 >/dev/null && story)"

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
end_of_cases
