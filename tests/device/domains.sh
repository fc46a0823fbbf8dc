# shellcheck shell=sh
# The service's clients in the domains that they have on a phone, with their levels: what each may, and
# what none of them may.
# shellcheck source=tests/device/lib.sh
. /tests/lib.sh
apps=s0:c512,c768

# client DOMAIN USER WORDS...: what client.sh prints; "the block" stands for the digest of what the DSP has.
client() {
    client_domain=$1 client_user=$2 block=$(dspctl block 0 | md5sum)
    shift 2
    as "$client_domain" "$client_user" sh /tests/client.sh "$@" 2>/dev/null | sed "s/$block/the block/"
}

for name in untrusted platform priv system; do
    mkdir -m 777 "/data/data/${name}_app"
done
restorecon /data/data

# The shell's replies are checked by other groups.
client shell 2000 operations >/dev/null
client shell 2000 operations >/tmp/operations
client shell 2000 memory >/tmp/memory
client shell 2000 file /data/local/tmp >/tmp/file
expect 'a shell does all operations, and none fails' '33 0' \
    "$(grep -c 'Result: Parcel' /tmp/operations) $(grep -c Error /tmp/operations)"
expect 'and gets what the DSP has through memory and through a file' 'the block the block' \
    "$(grep -h 'the block' /tmp/memory /tmp/file | paste -sd ' ')"

while read -r domain user files; do
    # There is one right to call: what some applications may call, all may.
    case $domain in untrusted* | platform* | priv* | system_server)
        expect "$domain does all operations" "$(cat /tmp/operations)" "$(client "$domain" "$user" operations)"
        ;;
    esac
    expect "$domain shares memory" "$(cat /tmp/memory)" "$(client "$domain" "$user" memory)"
    [ -z "$files" ] || expect "$domain shares a file" "$(cat /tmp/file)" \
        "$(client "$domain" "$user" file "$files")"
done <<END
untrusted_app:$apps 10057 /data/data/untrusted_app
platform_app:$apps 10058 /data/data/platform_app
priv_app:$apps 10059 /data/data/priv_app
system_app 1000 /data/data/system_app
radio 1001
bluetooth 1002
system_server 1000
END
expect 'audioserver calls' "$(service call zyl_kwo_service 2)" \
    "$(as audioserver 1041 service call zyl_kwo_service 2)"
expect 'levels are in force: an application with other categories cannot open the file' \
    'Permission denied' "$(as untrusted_app:s0:c513,c768 10057 cat /data/data/untrusted_app/region 2>&1 |
        sed 's/.*: //')"

for domain in shell dumpstate system_server; do
    expect "$domain gets a dump" 'zyl_kwo_service dump.......' "$(as "$domain" 2000 dumpsys zyl_kwo_service)"
done
expect 'all of it by the policy' '' "$(denials)"

# What is denied from here on is meant to be.
expect 'a dump does not go to a pipe of an application' 0 \
    "$(as untrusted_app:$apps 10057 dumpsys zyl_kwo_service 2>/dev/null | grep -c dump)"
for domain in shell system_server audioserver system_app "untrusted_app:$apps" "platform_app:$apps" \
    "priv_app:$apps"; do
    expect_status "$domain cannot take the name" 1 as "$domain" 2950 take_name zyl_kwo_service impostor
done
# Isolated are the domain and the user, either of which is enough; of the user the service manager says
# nothing.
for who in "isolated_app:$apps 99001" "isolated_app:$apps 10057" "untrusted_app:$apps 99001"; do
    # shellcheck disable=SC2086
    expect "$who does not find it" 'Service zyl_kwo_service: not found' \
        "$(as $who service check zyl_kwo_service)"
done
expect 'the policy denied just that' \
    '1 untrusted_app fifo_file, 1 shell service_manager, 1 system_server service_manager, 1 audioserver service_manager, 1 system_app service_manager, 1 untrusted_app service_manager, 1 platform_app service_manager, 1 priv_app service_manager, 1 isolated_app service_manager' \
    "$(denials | sed 's/.*zyl_kwo_service:s0 tcontext=u:r:\([a-z_]*\).*tclass=\([a-z_]*\).*/\1 \2/; s/.*scontext=u:r:\([a-z_]*\).*tclass=\([a-z_]*\).*/\1 \2/' |
        uniq -c | sed 's/^ *//' | paste -sd ',' | sed 's/,/, /g')"
dmesg -c >/dev/null
: >/run/log/servicemanager
end_of_cases
