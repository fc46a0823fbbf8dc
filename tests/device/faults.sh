# shellcheck shell=sh
# Requests to the DSP failing: of each operation, and of the start.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh

run_cases /tests/cases/faults.cases
while IFS='|' read -r skip wanted; do
    case $skip in '#'*) continue ;; esac
    dspctl fail "$skip" 1
    restart_service
    dspctl reset
    expect "a start with request $skip failing goes on and answers" "$wanted 00000000 00000001" \
        "$(story) $(reply 4)"
done </tests/cases/starts.txt
end_of_cases
