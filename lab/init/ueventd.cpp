// ueventd: gives device nodes mode, owner, group and context, those that are there and those that
// come. /ueventd.rc and /ueventd.*.rc say which, a line each: PATH MODE USER GROUP, and the last
// line that fits a path counts. As on API 24 a line with a user or a group that has no such name is
// dropped, a number included. Nodes that no line fits stay as the kernel makes them.

#include <fcntl.h>
#include <fnmatch.h>
#include <linux/netlink.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "lab/init/users.h"
#include "lab/init/words.h"
#include "lab/selinux/labels.h"

namespace {

struct Rule {
    std::string path;
    mode_t mode;
    uid_t user;
    gid_t group;
};

std::vector<Rule> readRules() {
    std::vector<Rule> rules;
    for (const Words& line : linesOf({"/ueventd.rc", "/ueventd.*.rc"})) {
        if (line.size() != 4) {
            fprintf(stderr, "ueventd: no rule: %s\n", line[0].c_str());
            continue;
        }
        char* end = nullptr;
        const auto mode = static_cast<mode_t>(strtoul(line[1].c_str(), &end, 8));
        const uid_t user = knownByName(line[2]);
        const gid_t group = knownByName(line[3]);
        if (*end != '\0' || user == kNobodyKnown || group == kNobodyKnown) {
            fprintf(stderr, "ueventd: dropped: %s %s %s %s\n", line[0].c_str(), line[1].c_str(),
                    line[2].c_str(), line[3].c_str());
            continue;
        }
        rules.push_back({line[0], mode, user, group});
    }
    return rules;
}

void makeReady(const std::string& path, const std::vector<Rule>& rules) {
    const char* node = path.c_str();
    if (!restoreContext(node)) perror(node);
    const auto rule = std::find_if(rules.rbegin(), rules.rend(), [node](const Rule& one) {
        return fnmatch(one.path.c_str(), node, FNM_PATHNAME) == 0;
    });
    if (rule != rules.rend() &&
        (chmod(node, rule->mode) != 0 || chown(node, rule->user, rule->group) != 0)) {
        perror(node);
    }
    fprintf(stderr, "ueventd: %s is ready\n", node);
}

// The node of a message "add@PATH", NUL, "KEY=VALUE", NUL, ...; empty for any other message.
std::string nodeThatCame(const char* message, size_t size) {
    if (strncmp(message, "add@", 4) != 0) return {};
    constexpr char kKey[] = "DEVNAME=";
    for (size_t at = 0; at < size; at += strlen(message + at) + 1) {
        if (strncmp(message + at, kKey, sizeof(kKey) - 1) == 0) {
            return std::string("/dev/") + (message + at + sizeof(kKey) - 1);
        }
    }
    return {};
}

}  // namespace

int main() {
    const std::vector<Rule> rules = readRules();
    const int events = socket(AF_NETLINK, SOCK_DGRAM | SOCK_CLOEXEC, NETLINK_KOBJECT_UEVENT);
    sockaddr_nl kernel = {};
    kernel.nl_family = AF_NETLINK;
    kernel.nl_groups = 1;
    if (bind(events, reinterpret_cast<const sockaddr*>(&kernel), sizeof(kernel)) != 0) {
        perror("ueventd: the kernel's events");
        return 1;
    }
    // After the first message can be heard, so that no node is missed.
    for (const auto& entry : std::filesystem::directory_iterator("/dev")) {
        if (entry.is_character_file() || entry.is_block_file()) makeReady(entry.path(), rules);
    }
    while (true) {
        char message[8192];
        const ssize_t size = recv(events, message, sizeof(message) - 1, 0);
        if (size <= 0) continue;
        message[size] = '\0';
        const std::string node = nodeThatCame(message, static_cast<size_t>(size));
        if (!node.empty()) makeReady(node, rules);
    }
}
