# shellcheck shell=sh
# The equaliser: what is accepted, in which order it goes to the DSP, and what a failure stops.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh

ramp='i32 725 i32 1000 i32 2000 i32 3000 i32 4096 i32 5000 i32 6000 i32 7000 i32 8192 i32 32767'
ramp_bytes=d502e803d007b80b001088137017581b0020ff7f
refused='zyl_settings_struct_torvane E virtual int32_t zylSettingsStructTorvane::setGEQGain(uint32_t, uint16_t): Setting GEQ gain out of range error, band'

run_cases /tests/cases/equaliser.cases
expect 'gains are refused by the settings while the equaliser is off' "$refused 4
$refused 0" "$(new_log)"
expect 'gains and the switch are on disk' \
    d5020000e8030000d0070000b80b0000001000008813000070170000581b000000200000ff7f000001000000 \
    "$(settings | cut -c 49-)"

# Rows as wide as other conversion libraries have them: a gain travels in a word, ten of them packed,
# and what a row is wider than a gain is zero.
for size in 4 8; do
    echo "row 3 size $size" >/etc/zyl/conversion.conf
    restart_service
    story >/dev/null
    wide=$(printf '3412%0*d' $((2 * size - 4)) 0)
    expect "a gain in a row of $size bytes is a row" "w5.2=$wide a w5.0=$wide a w5.1=$wide a a" \
        "$(reply 9 i32 2 i32 4660 >/dev/null && story)"
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
