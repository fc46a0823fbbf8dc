# shellcheck shell=sh
# Requests to the DSP failing, as the kernel tells it. What each failure of forced mode's many writes
# stops is played natively alone.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh

grep -vE '^SET_RELOAD_FLAG 1 .*x[wW]' /tests/cases/faults.cases >/tmp/faults.cases
run_cases /tmp/faults.cases
end_of_cases
