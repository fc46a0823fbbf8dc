# shellcheck shell=sh
# soak.sh MODE CLIENTS CALLS ROUNDS SECONDS: rounds of load on one service, at least so many and at
# least so long, and what it has of memory, mappings and descriptors before and after each. It must
# have no more after the last than after the first, except for what it keeps by design: a mapping for each
# region, and the speaker's tuning data.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh
mode=$1 clients=$2 calls=$3 rounds=$4 seconds=$5
pid=$(pidof zyl_kwo_service)

of_memory() {
    awk -v name="$1:" '$1 == name { print $2 }' "/proc/$pid/smaps_rollup"
}

# measure: sets what the service has now.
measure() {
    # Nobody reads them here, and an hour's worth does not fit.
    : >/run/log/zyl_kwo_service
    : >/run/journal
    # A call's descriptors are closed after its reply.
    descriptors=none before=''
    until [ "$before" = "$descriptors" ]; do
        before=$descriptors
        sleep 0.2
        descriptors=$(find "/proc/$pid/fd" -type l | grep -c '')
    done
    mappings=$(grep -c '' "/proc/$pid/maps")
    threads=$(find "/proc/$pid/task" -maxdepth 1 -mindepth 1 | grep -c '')
    pss=$(of_memory Pss) private=$(of_memory Anonymous)
}

# load SEED: one round; adds to the sums.
load() {
    expect_status "round $1: nobody is answered wrongly" 0 \
        zyl_load "$mode" "$clients" "$calls" "$1"
    for word in $(tail -n 1 /tmp/out); do
        case $word in *=*) eval "round_${word%%=*}=${word#*=}" ;; esac
    done
    all=$((all + round_calls)) known=$((known + round_known)) died=$((died + round_died))
    measure
    echo "# $(cut -d . -f 1 /proc/uptime) s, $all calls ($known of codes that exist), $round_regions regions, $round_kept bytes kept:" \
        "$pss kB PSS, $private kB anonymous, $mappings mappings, $descriptors descriptors, $threads threads"
    sed -n 's/^bystander/# &/p' /tmp/out
}

all=0 known=0 died=0 regions=0 kept=0
measure
echo "# at the start: $pss kB PSS, $private kB anonymous, $mappings mappings, $descriptors descriptors"
round_calls=0 round_known=0 round_died=0 round_regions=0 round_kept=0
load 0
first_descriptors=$descriptors first_mappings=$mappings first_private=$private first_threads=$threads
round=1
while [ "$round" -lt "$rounds" ] || [ "$(cut -d . -f 1 /proc/uptime)" -lt "$seconds" ]; do
    load "$round"
    regions=$((regions + round_regions)) kept=$((kept + round_kept))
    round=$((round + 1))
done
expect 'the service never died' "$pid 0" "$(pidof zyl_kwo_service) $died"
expect 'no descriptor is left' "$first_descriptors" "$descriptors"
# A new thread has a stack and a heap, each with a guard.
of_threads=$((4 * (threads - first_threads)))
expect "$regions regions and no other mapping are left" yes \
    "$([ $((mappings - first_mappings)) -le $((regions + of_threads)) ] && echo yes)"
grown=$((private - first_private - kept / 1024))
expect "memory has grown by what is kept, $((kept / 1024)) kB, and by no more than 512 kB ($grown kB)" yes \
    "$([ "$grown" -le 512 ] && echo yes)"
end_of_cases
