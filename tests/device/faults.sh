# shellcheck shell=sh
# Requests to the DSP failing: of each operation, and of the start.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh

run_cases /tests/cases/faults.cases
end_of_cases
