# shellcheck shell=sh
# Which settings generation a start picks, by the tuning files that are there.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh
samples=/usr/share/zyl/tunings

expect 'with no tuning the log says so' \
    'zyl_kwo_service service E zyl_kwo_service::zyl_kwo_service(): default tuning file for either Maldor or Torvane/Ruvelle cannot be opened. System is missing tunings' \
    "$(new_log | grep 'System is missing')"
story >/dev/null
run_cases /tests/cases/none.cases
expect 'with no tuning nothing is stored' '' "$(ls /data/misc/zyl)"
expect_status 'kwoctl shows and restores what there is all the same' 0 \
    sh -c 'kwoctl status && kwoctl snapshot /tmp/none && kwoctl levels 1 2 3 4 5 6 7 8 9 0 && kwoctl restore /tmp/none'
expect 'in one step' 'restored       /tmp/none, 1 step' "$(tail -n 1 /tmp/out)"
expect_status 'and says that there is no effect' 1 kwoctl enable
expect 'with the reason' "kwoctl: effect: not available on this device's settings generation (-9); see kwoctl get generation" "$(cat /tmp/err)"
story >/dev/null

cp "$samples"/torvane/* /etc/zyl/
restart_service
expect 'Torvane has tuning numbers' '00000000 00000001' "$(reply 6 i32 0)"
expect 'Torvane uploads its blocks' 'S185100 C0 C1 C2 W0 a W1 a W2 a a' "$(story)"

cp "$samples"/maldor/* /data/misc/zyl/
restart_service
expect 'Maldor wins where both are there' 'fffffff7 00000000' "$(reply 6 i32 0)"
expect 'Maldor starts with its default settings on disk' \
    "$(printf '06000000010000000200000001000000030000000000000000100000001000000010000000100000001000000010000000100000001000000010000000100000%s' 00000000)$(
        for _ in 1 2 3 4 5; do
            printf '00000000-0000-0000-0000-000000000000\0'
        done | xxd -p | tr -d '\n'
    )000000000080bf000080bf000080bf000080bf00$(
        for _ in 1 2; do
            printf '00000000-0000-0000-0000-000000000000\0'
        done | xxd -p | tr -d '\n'
    )00" "$(settings)"
expect 'Maldor uploads its blocks' 'S185100 C0 C1 C2 W0 a W1 a W2 a a' "$(story)"
# The record with the default equaliser laid over it.
speaker_block() {
    cp "/data/misc/zyl/$1" /tmp/block
    poke /tmp/block 132 00 00 00 00
    for band in 0 1 2 3 4 5 6 7 8 9; do
        poke /tmp/block $((100 + 2 * band)) 00 10
    done
    md5sum </tmp/block
}
expect 'from its own tuning files' "$(speaker_block current_speaker_on)" "$(dspctl block 0 | md5sum)"
expect 'Maldor switches to another speaker file' 'W0' "$(reply 3 i32 0 >/dev/null && story | cut -d ' ' -f 1)"
expect 'the one for off' "$(speaker_block current_speaker_off)" "$(dspctl block 0 | md5sum)"
expect 'Maldor refuses tuning numbers' fffffff7 "$(reply 7 i32 0 i32 0)"

rm -r /etc/zyl
restart_service
expect 'Maldor needs no Torvane files' '00000000 00000002' "$(reply 4)"

printf '1,2,' >/data/misc/zyl/cache-mask.csv
new /run/journal >/dev/null
restart_service
expect 'the mask file binds the blocks' '0x1 0x2 0x0' \
    "$(new /run/journal | sed -n 's/^dsp config.*mask=\(0x[0-9a-f]*\).*/\1/p' | paste -sd ' ')"

stop zyl_kwo_service
new_log >/dev/null
su -s /bin/sh oem_2950 -c 'exec zyl_kwo_service -stub' >>/run/log/zyl_kwo_service 2>&1 &
until service check zyl_kwo_service | grep -q ': found'; do sleep 0.1; done
expect '-stub is announced' 'ZylcsToQuorinConv I zyl_kwo_service Starting in stub mode (not opening driver)' \
    "$(new_log | sed -n 2p)"
expect 'and changes nothing else' 'S185100 C0' "$(story | cut -d ' ' -f 1,2 | sed 's/^.* S/S/')"
stop zyl_kwo_service

# The service manager registers nothing for applications.
chmod 666 /dev/zyl_quorin
echo 'app:x:10001:10001:app:/:/bin/sh' >>/etc/passwd
expect_status 'a refused registration ends the process' 255 \
    su -s /bin/sh app -c 'exec zyl_kwo_service -stubborn'
expect 'and is logged, with no word of a stub' \
    'ZylcsToQuorinConv E zyl_kwo_service Failed to add to the ServiceManager' \
    "$(sed 's/ [0-9-]* [0-9:]* *[0-9]* *[0-9]* / /' /tmp/err | grep -E 'Failed|stub')"
end_of_cases
