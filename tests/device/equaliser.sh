# shellcheck shell=sh
# The equaliser: what is accepted, in which order it goes to the DSP, and what a failure stops.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh

flat='i32 4096 i32 4096 i32 4096 i32 4096 i32 4096 i32 4096 i32 4096 i32 4096 i32 4096 i32 4096'
ramp='i32 725 i32 1000 i32 2000 i32 3000 i32 4096 i32 5000 i32 6000 i32 7000 i32 8192 i32 32767'
ramp_bytes=d502e803d007b80b001088137017581b0020ff7f
refused='zyl_settings_struct_torvane E virtual int32_t zylSettingsStructTorvane::setGEQGain(uint32_t, uint16_t): Setting GEQ gain out of range error, band'

# calls: lines "FAILING REQUEST or nothing|CALL|REPLY|STORY" on standard input.
calls() {
    while IFS='|' read -r skip call answer wanted; do
        [ -z "$skip" ] || dspctl fail "$skip" 1
        # shellcheck disable=SC2086
        got=$(reply $call)
        dspctl reset
        expect "call $call${skip:+ with request $skip failing}" "$answer" "$got"
        expect "its story" "$wanted" "$(story)"
    done
}

story >/dev/null
new_log >/dev/null
calls <<END
|13|00000000 00000000|
|9 i32 4 i32 8192|00000000|w7.2=0020 a w7.0=0020 a w7.1=0020 a a
|8 i32 4|00000000 00001000|
|15 $flat|ffffffff|
END
expect 'gains are refused by the settings while the equaliser is off' "$refused 4
$refused 0" "$(new_log)"

calls <<END
|12 i32 1|00000000|w13.0=01000000 a w13.2=01000000 a w13.1=01000000 a a
|13|00000000 00000001|
|9 i32 4 i32 8192|00000000|w7.2=0020 a w7.0=0020 a w7.1=0020 a a
|8 i32 4|00000000 00002000|
|9 i32 0 i32 724|ffffffff|
|9 i32 0 i32 725|00000000|w3.2=d502 a w3.0=d502 a w3.1=d502 a a
|9 i32 9 i32 32767|00000000|w12.2=ff7f a w12.0=ff7f a w12.1=ff7f a a
|9 i32 9 i32 32768|ffffffff|
|9 i32 10 i32 4096|ffffffff|
|9 i32 -1 i32 4096|ffffffff|
|9 i32 1 i32 74565|00000000|w4.2=4523 a w4.0=4523 a w4.1=4523 a a
|8 i32 1|00000000 00002345|
|8 i32 10|ffffffff 00000000|
|15 $ramp|00000000|w3.2=$ramp_bytes a w3.0=$ramp_bytes a w3.1=$ramp_bytes a a
|14|00000000 000002d5 000003e8 000007d0 00000bb8 00001000 00001388 00001770 00001b58 00002000 00007fff|
|15 i32 4096 i32 4096 i32 4096 i32 4096 i32 4096 i32 700|ffffffff|
|14|00000000 000002d5 000003e8 000007d0 00000bb8 00001000 00001388 00001770 00001b58 00002000 00007fff|
0|9 i32 4 i32 5000|ffffffff|xw7.2 a
1|9 i32 4 i32 5000|ffffffff|w7.2=8813 a xw7.0 a
2|9 i32 4 i32 5000|ffffffff|w7.2=8813 a w7.0=8813 a xw7.1 a
|8 i32 4|00000000 00001388|
0|15 $ramp|ffffffff|xw3.2 a
1|15 $ramp|ffffffff|w3.2=$ramp_bytes a xw3.0 a
2|15 $ramp|ffffffff|w3.2=$ramp_bytes a w3.0=$ramp_bytes a xw3.1 a
0|12 i32 1|ffffffff|xw13.0 a
1|12 i32 1|ffffffff|w13.0=01000000 a xw13.2 a
2|12 i32 1|ffffffff|w13.0=01000000 a w13.2=01000000 a xw13.1 a
|12 i32 1|00000000|w13.0=01000000 a w13.2=01000000 a w13.1=01000000 a a
END
expect 'gains and the switch are on disk' \
    d5020000e8030000d0070000b80b0000001000008813000070170000581b000000200000ff7f000001000000 \
    "$(settings | cut -c 49-)"

reply 3 i32 0 >/dev/null
story >/dev/null
calls <<END
|13|00000000 00000000|
|12 i32 0|00000000|
END
reply 3 i32 1 >/dev/null
expect 'the switch outlives the effect being off' '00000000 00000001' "$(reply 13)"

# Rows as wide as other conversion libraries have them: a gain travels in a word, ten of them packed,
# and what a row is wider than a gain is zero.
for size in 4 8; do
    echo "row 3 size $size" >/etc/zyl/conversion.conf
    restart_service
    story >/dev/null
    new /run/journal >/dev/null
    calls <<END
|9 i32 2 i32 4660|00000000|w5.2=$(printf '3412%0*d' $((2 * size - 4)) 0) a w5.0=$(printf '3412%0*d' $((2 * size - 4)) 0) a w5.1=$(printf '3412%0*d' $((2 * size - 4)) 0) a a
END
    new /run/journal >/dev/null
    # shellcheck disable=SC2086
    reply 15 $ramp >/dev/null
    expect "ten gains in rows of $size bytes are one write of ten rows" \
        "$((10 * size)) $((10 * size)) $((10 * size))" \
        "$(new /run/journal | sed -n 's/^dsp write.* size=\([0-9]*\) .*/\1/p' | paste -sd ' ')"
    expect "whose first bytes are the gains and the rest zero" \
        "$ramp_bytes$(printf '%0*d' $((20 * size - 40)) 0)" \
        "$(dspctl block 1 | dd bs=1 skip=100 count=$((10 * size)) 2>/dev/null | xxd -p | tr -d '\n')"
done
end_of_cases
