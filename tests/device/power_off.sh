# shellcheck shell=sh
# Sets what the next boot is to find, and has the power cut right after the reply.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh
expect 'a stereo mode is set' 00000000 "$(reply 5 i32 1)"
expect 'a tuning is set' 00000000 "$(reply 7 i32 0 i32 2)"
end_of_cases
