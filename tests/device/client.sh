# shellcheck shell=sh
# client.sh operations | memory | file DIRECTORY: a client in whatever domain it is run, as domains.sh
# runs it. What it prints is the same in every domain.

call() {
    service call zyl_kwo_service "$@"
}

# Each operation once, with arguments that leave the settings as they are from the second time on. The
# number among the bytes is a name of four letters.
operations() {
    while read -r words; do
        # shellcheck disable=SC2086
        echo "$words: $(call $words)"
    done <<'END'
1 i32 1
2
3 i32 1
4
5 i32 3
6 i32 0
7 i32 0 i32 1
8 i32 3
9 i32 3 i32 4000
11
12 i32 1
13
14
15 i32 4096 i32 4096 i32 4096 i32 4000 i32 4096 i32 4096 i32 4096 i32 4096 i32 4096 i32 4096
19 i32 8 i32 1701667150 i32 0 i32 0
20 i32 8 i32 1701667150 i32 0 i32 0
21
22
23 i32 1 i32 8 i32 1701667150 i32 0 i32 0
24 i32 1
25 i32 1 i32 8 i32 1701667150 i32 0 i32 0
26 i32 1
27 i32 8 i32 1701667150 i32 0 i32 0
28
29 f 1 f 2 f 3 f 4
30
31
32 i32 0
40 i32 2
41 i32 0
1001 i32 1
3004
3005 i32 1 i32 2 i32 3 i32 4 i32 5 i32 6 i32 7 i32 8 i32 9 i32 10
END
}

# A block by a region that kwoctl makes, by memfd.
memory() {
    kwoctl block fetch speaker - 2>/dev/null | md5sum
    kwoctl block fetch speaker - 2>/dev/null | kwoctl block push speaker - 2>&1
}

# A block by a region in a file of the client's.
file() {
    truncate -s 61700 "$1/region"
    call 3001 nfd 7 i32 61700 7<>"$1/region"
    call 3002 i32 0
    md5sum <"$1/region"
    call 3003 i32 0
}

"$@"
