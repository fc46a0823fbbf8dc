# shellcheck shell=sh
# Finds what was set before the power was cut.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh
expect 'the stereo mode is there after a power cut' '00000000 00000001' "$(reply 4)"
expect 'the tuning is there after a power cut' '00000000 00000002' "$(reply 6 i32 0)"
end_of_cases
