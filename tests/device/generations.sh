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
expect_status 'and kwoctl shows what there is all the same' 0 kwoctl status
run_commands /tests/cases/kwoctl_none.txt
story >/dev/null

cp "$samples"/torvane/* /etc/zyl/
restart_service
expect 'Torvane has tuning numbers' '00000000 00000001' "$(reply 6 i32 0)"
expect 'Torvane uploads its blocks' 'S185100 C0 C1 C2 W0 W1 W2 a' "$(story)"

cp "$samples"/maldor/* /data/misc/zyl/
restart_service
expect 'Maldor wins where both are there' 'fffffff7 00000000' "$(reply 6 i32 0)"
expect 'Maldor uploads its blocks' 'S185100 C0 C1 C2 W0 W1 W2 a' "$(story)"
rm -r /etc/zyl
restart_service
expect 'Maldor needs no Torvane files' '00000000 00000002' "$(reply 4)"

stop zyl_kwo_service
new_log >/dev/null
as shell 2950:audio zyl_kwo_service -stub >>/run/log/zyl_kwo_service 2>&1 &
await zyl_kwo_service
expect '-stub is announced' 'ZylcsToQuorinConv I zyl_kwo_service Starting in stub mode (not opening driver)' \
    "$(new_log | sed -n 2p)"
expect 'and changes nothing else' 'S185100 C0' "$(story | cut -d ' ' -f 1,2 | sed 's/^.* S/S/')"
stop zyl_kwo_service

# The service manager registers nothing for applications.
chmod 666 /dev/zyl_quorin
expect_status 'a refused registration ends the process' 255 as shell 10001 zyl_kwo_service -stubborn
expect 'and is logged, with no word of a stub' \
    'ZylcsToQuorinConv E zyl_kwo_service Failed to add to the ServiceManager' \
    "$(sed 's/ [0-9-]* [0-9:]* *[0-9]* *[0-9]* / /' /tmp/err | grep -E 'Failed|stub')"
end_of_cases
