# shellcheck shell=sh
# Binders and descriptors where words are expected: none of them is read as a word.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh
codes='1 2 3 4 5 6 7 8 9 11 12 13 14 15 19 20 21 22 23 24 25 26 27 28 29 30 31 32 40 41 1001 3002 3003 3004 3005'

used() {
    find "/proc/$(pidof zyl_kwo_service)/fd" -type l | grep -c ''
}
levels=$(reply 3004) mode=$(reply 4) descriptors=$(used)
story >/dev/null
# shellcheck disable=SC2086
zyl_objects $codes >/tmp/calls
for code in $codes; do
    # 34 calls, with the status BAD_TYPE.
    expect "$code refuses objects wherever they stand" '34 -2147483647' \
        "$(sed -n "s/^$code .* //p" /tmp/calls | sort | uniq -c | sed 's/^ *//' | paste -sd ' ')"
done
zyl_objects 3001 >/tmp/calls
expect '3001 takes one object, a descriptor or not, and no second one' \
    'client 0 11, descriptor 0 11, descriptors -2147483647 1, service 0 11, ' \
    "$(awk '{ ++calls[$2 " " $4] } END { for (call in calls) print call, calls[call] }' /tmp/calls | sort | paste -sd ',' | sed 's/,/, /g; s/$/, /')"
expect 'nothing came of it: no level, no mode, no word to the DSP, no descriptor' \
    "$levels / $mode / / $descriptors" "$(reply 3004) / $(reply 4) / $(story)/ $(used)"
end_of_cases
