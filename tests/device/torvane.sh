# shellcheck shell=sh
# The Torvane generation from its start on: effect, stereo mode, tunings, forced mode.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh

# expected_block N TUNING: the tuning file with the default settings laid over it.
expected_block() {
    cp "/etc/zyl/$2" /tmp/block
    truncate -s 61700 /tmp/block
    if [ "$1" != 0 ]; then
        poke /tmp/block 64 02 00 00 00
        for offset in 16 32 36 40 352 360 368 400; do
            poke /tmp/block "$offset" 00 00 00 00
        done
    fi
    poke /tmp/block 132 00 00 00 00
    for band in 0 1 2 3 4 5 6 7 8 9; do
        poke /tmp/block $((100 + 2 * band)) 00 10
    done
    md5sum </tmp/block
}

expect 'is registered with its descriptor' '[zyl.kwo.Izyl_kwo_service]' \
    "$(service list | sed -n 's/.*\tzyl_kwo_service: //p')"
expect 'configures each block as the DSP expects it' \
    'dsp cache size=185100
dsp config block=0 mask=0x2 offset=0 words=0x10015100,0x1011,0x4044,0x0,0x3033,0x6066,0x1001522c,0x5055,0x8088,0x0,0x7077
dsp config block=1 mask=0x2000c offset=61700 words=0x10015100,0x1011,0x4044,0x0,0x3033,0x6066,0x1001522c,0x5055,0x8088,0x0,0x7077
dsp config block=2 mask=0x3f0 offset=123400 words=0x10015100,0x1011,0x4044,0x0,0x3033,0x6066,0x1001522c,0x5055,0x8088,0x0,0x7077' \
    "$(grep -E '^dsp (cache|config)' /run/journal)"
expect 'a start uploads and announces three blocks' \
    "S185100 C0 C1 C2 W0 a W1 a W2 a a" "$(story)"
expect 'speaker block is its tuning with the settings' \
    "$(expected_block 0 speaker_1)" "$(dspctl block 0 | md5sum)"
expect 'lineout block is its tuning with the settings' \
    "$(expected_block 1 lineout_3)" "$(dspctl block 1 | md5sum)"
expect 'bluetooth block is its tuning with the settings' \
    "$(expected_block 2 bluetooth_0)" "$(dspctl block 2 | md5sum)"
expect 'a start logs its version, the missing files and its registration' \
    'ZylcsToQuorinConv I zyl_kwo_service Service starting (version 1.0.3.5.0)
zyl_settings_struct_torvane E virtual void zylSettingsStructTorvane::LoadStruct(): Error while trying to open file for loading (file://data//misc//zyl//zyl_kwo_settings)
ZylcsToQuorinConv E void zylDriver::ReadDevicesCSV(): Error while trying to open file for device mask (file://data//misc//zyl//cache-mask.csv), Using default values
ZylcsToQuorinConv I zyl_kwo_service is now ready, joining thread pool' "$(new_log)"
expect 'a start writes no settings file' 'no' \
    "$([ -e /data/misc/zyl/zyl_kwo_settings ] && echo yes || echo no)"

run_cases /tests/cases/torvane.cases
expect 'the settings file holds what was set' \
    0300000007000000010000000200000001000000010000000010000000100000001000000010000000100000001000000010000000100000001000000010000000000000 \
    "$(settings)"
expect 'nothing is left beside the settings file' zyl_kwo_settings "$(ls /data/misc/zyl)"
expect 'refusals are logged in the words of their place' \
    'ZylcsToQuorinConv E int zylDriver::LoadParamBlock(zylQuorinPipelineCtrl &, CacheBlockType, std::string): Tuning file cannot be opened [/etc/zyl/speaker_9]
zyl_kwo_service service E virtual status_t Bn_zyl_kwo_service::onTransact(uint32_t, const android::Parcel &, android::Parcel *, uint32_t): Error writing KWO set listening test result to reply' \
    "$(new_log)"

rm /etc/zyl/lineout_3
reply 7 i32 1 i32 3 >/dev/null
expect 'lineout falls back to tuning 1 where 3 is missing' '00000000 00000001' "$(reply 6 i32 1)"
setprop zyl.kwo.log_time trueish
new_log >/dev/null
reply 5 i32 2 >/dev/null
expect 'upload times are logged on demand' 2 \
    "$(new_log | grep -cE '^ZylcsToQuorinConv I system time before sending parameters to driver [0-9]+$')"
setprop zyl.kwo.log_time TRUE
reply 5 i32 2 >/dev/null
expect 'and only when asked for with true' '' "$(new_log)"
end_of_cases
