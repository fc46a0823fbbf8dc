# shellcheck shell=sh
# The Torvane generation from its start on; what the calls of all tables lead to.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh

expect 'is registered with its descriptor' '[zyl.kwo.Izyl_kwo_service]' \
    "$(service list | sed -n 's/.*\tzyl_kwo_service: //p')"
expect 'a start uploads and announces three blocks' \
    "S185100 C0 C1 C2 W0 W1 W2 a" "$(story)"
expect 'a start logs its version, the missing files and its registration' \
    'ZylcsToQuorinConv I zyl_kwo_service Service starting (version 1.0.3.5.0)
zyl_settings_struct_torvane E virtual void zylSettingsStructTorvane::LoadStruct(): Error while trying to open file for loading (file://data//misc//zyl//zyl_kwo_settings)
ZylcsToQuorinConv E void zylDriver::ReadDevicesCSV(): Error while trying to open file for device mask (file://data//misc//zyl//cache-mask.csv), Using default values
ZylcsToQuorinConv I zyl_kwo_service is now ready, joining thread pool' "$(new_log)"

for table in equaliser clients; do
    run_cases /tests/cases/$table.cases
done
restart_service
expect 'routes and levels do not outlive a restart' \
    '00000000 00000000 00000000 fffec780' "$(reply 32) $(reply 3004 | cut -c 1-17)"

run_cases /tests/cases/torvane.cases
expect 'the settings file holds what was set' \
    0300000007000000010000000200000001000000010000000010000000100000001000000010000000100000001000000010000000100000001000000010000000000000 \
    "$(settings)"
expect 'nothing is left beside the settings file' zyl_kwo_settings "$(ls /data/misc/zyl)"
expect 'refusals are logged in the words of their place' \
    'ZylcsToQuorinConv E int zylDriver::LoadParamBlock(zylQuorinPipelineCtrl &, CacheBlockType, std::string): Tuning file cannot be opened [/etc/zyl/speaker_9]
zyl_kwo_service service E virtual status_t Bn_zyl_kwo_service::onTransact(uint32_t, const android::Parcel &, android::Parcel *, uint32_t): Error writing KWO set listening test result to reply' \
    "$(new_log)"
end_of_cases
