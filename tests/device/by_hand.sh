# shellcheck shell=sh
# The lines of docs/protocol.md that are there to be copied are answered as the document says.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh
mkdir -p /data/local/tmp
truncate -s 61700 /data/local/tmp/region

# lines GENERATION: "ARGUMENTS|REPLY" a line, those for any generation and for this one.
lines() {
    # shellcheck disable=SC2016
    awk -v wanted="$1" '/^## / { hand = /By hand/; only = "" }
        /^On the / { only = tolower($3) }
        hand && /^\| `service/ && (only == "" || only == wanted)' /tests/protocol.md |
        sed 's/^| `service call zyl_kwo_service \([^`]*\)` | .* | \(.*\) |$/\1|\2/'
}

for generation in torvane maldor; do
    clean_start "$generation"
    lines "$generation" >/tmp/lines
    while IFS='|' read -r arguments wanted <&9; do
        answer=$(eval "reply $arguments")
        case $wanted in
            none) wanted='' ;;
            'a C string') [ "${answer#536f774b }" = "$answer" ] || wanted=$answer ;;
            *Error*) wanted=$(echo "$wanted" | grep -oE '0x[0-9a-f]+') ;;
        esac
        expect "$generation: $arguments" "$wanted" "$answer"
    done 9</tmp/lines
done
end_of_cases
