// Tuning data and the listening test, on devices whose tunings are made from them.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>

#include "client/command.h"
#include "client/parse.h"
#include "client/report.h"

namespace {

// What tuning data can be for. Some kinds are for one of several outputs.
struct Kind {
    const char* name;
    const char* selector;  // what to call it, or null
    int32_t (*set)(Izyl_kwo_service& service, int32_t selector, const std::vector<uint8_t>& data,
                   std::vector<uint8_t>& work);
};

int32_t size(const std::vector<uint8_t>& bytes) {
    return static_cast<int32_t>(bytes.size());
}

const Kind kKinds[] = {
        {"speaker", nullptr,
         [](Izyl_kwo_service& service, int32_t, const auto& data, auto& work) {
             return service.setSpeakerZylcsTuning(data.data(), size(data), work.data(), size(work));
         }},
        {"second-speaker", nullptr,
         [](Izyl_kwo_service& service, int32_t, const auto& data, auto& work) {
             return service.setSecondSpeakerZylcsTuning(data.data(), size(data), work.data(),
                                                        size(work));
         }},
        {"accessory", "a route: lineout or bluetooth",
         [](Izyl_kwo_service& service, int32_t route, const auto& data, auto& work) {
             return service.setAccessoryZylcsTuning(route, data.data(), size(data), work.data(),
                                                    size(work));
         }},
        {"stereo-room", "a room: 1 lineout's, 2 bluetooth's",
         [](Izyl_kwo_service& service, int32_t index, const auto& data, auto& work) {
             return service.setStereoRoomZylcsTuning(index, data.data(), size(data), work.data(),
                                                     size(work));
         }},
        {"multichannel-room", nullptr,
         [](Izyl_kwo_service& service, int32_t, const auto& data, auto& work) {
             return service.setMultiChannelRoomZylcsTuning(data.data(), size(data), work.data(),
                                                           size(work));
         }},
};

ExitStatus showNames(Izyl_kwo_service& service) {
    struct Row {
        const char* what;
        int32_t result;
    };
    char names[7][kZylcsNameSize] = {};
    int32_t lengths[7];
    for (int32_t& length : lengths) length = kZylcsNameSize;
    const Row rows[] = {
            {"speaker", service.getSpeakerZylcsTuningName(names[0], &lengths[0])},
            {"second-speaker", service.getSecondSpeakerZylcsTuningName(names[1], &lengths[1])},
            {"accessory lineout", service.getAccessoryZylcsTuningName(1, names[2], &lengths[2])},
            {"accessory bluetooth", service.getAccessoryZylcsTuningName(2, names[3], &lengths[3])},
            {"stereo-room 1", service.getStereoRoomZylcsTuningName(1, names[4], &lengths[4])},
            {"stereo-room 2", service.getStereoRoomZylcsTuningName(2, names[5], &lengths[5])},
            {"multichannel-room",
             service.getMultiChannelRoomZylcsTuningName(names[6], &lengths[6])},
    };
    for (size_t i = 0; i < std::size(rows); ++i) {
        const ExitStatus status = reportResult("tune names", rows[i].result);
        if (status != kDone) return status;
        printf("%-20s %s\n", rows[i].what, names[i]);
    }
    return kDone;
}

// The service takes anything; a file without an identifier is a mistake that nobody would find
// later.
bool hasIdentifier(const std::vector<uint8_t>& data) {
    const size_t length = strnlen(reinterpret_cast<const char*>(data.data()), data.size());
    return length > 0 && length < data.size() && length < kZylcsNameSize;
}

ExitStatus upload(Izyl_kwo_service& service, const Kind& kind, int32_t selector,
                  const std::string& name, size_t workSize) {
    std::ifstream file(name, std::ios::binary);
    if (!file) return reportFile(name);
    const std::vector<uint8_t> data{std::istreambuf_iterator<char>(file), {}};
    if (!hasIdentifier(data)) {
        fprintf(stderr,
                "kwoctl: %s: no tuning data: it must begin with an identifier of 1 to 36 "
                "characters "
                "and a NUL\n",
                name.c_str());
        return kRefused;
    }
    std::vector<uint8_t> work(workSize);
    const ExitStatus status = reportResult("tune", kind.set(service, selector, data, work));
    if (status == kDone) {
        printf("%-20s %s\n", kind.name, reinterpret_cast<const char*>(data.data()));
    }
    return status;
}

ExitStatus tune(Izyl_kwo_service& service, const Arguments& given) {
    Arguments arguments = given;
    if (arguments == Arguments{"names"}) return showNames(service);
    int32_t workSize = 0;
    if (arguments.size() > 2 && arguments[arguments.size() - 2] == "--work") {
        const auto bytes = parseNumber(arguments.back());
        if (!bytes || *bytes < 0) return reportUsage("tune", arguments.back(), "a number of bytes");
        workSize = *bytes;
        arguments.resize(arguments.size() - 2);
    }
    for (const Kind& kind : kKinds) {
        if (arguments[0] != kind.name) continue;
        const size_t words = kind.selector == nullptr ? 2 : 3;
        if (arguments.size() != words) break;
        int32_t selector = 0;
        if (kind.selector != nullptr) {
            const auto number = parseRoute(arguments[1]);
            if (!number) return reportUsage("tune", arguments[1], kind.selector);
            selector = *number;
        }
        return upload(service, kind, selector, arguments.back(), static_cast<size_t>(workSize));
    }
    return reportUsage("tune", arguments[0],
                       "names, speaker FILE, second-speaker FILE, accessory ROUTE FILE, "
                       "stereo-room INDEX FILE or multichannel-room FILE");
}

ExitStatus showListeningTest(Izyl_kwo_service& service) {
    float values[4] = {};
    const ExitStatus status = reportResult(
            "listening-test",
            service.getListeningTestResult(&values[0], &values[1], &values[2], &values[3]));
    if (status != kDone) return status;
    printf("listening test");
    for (float value : values) printf(" %g", static_cast<double>(value));
    printf("\n");
    return kDone;
}

ExitStatus listeningTest(Izyl_kwo_service& service, const Arguments& arguments) {
    if (arguments.empty()) return showListeningTest(service);
    if (arguments == Arguments{"reset"}) {
        const ExitStatus status =
                reportResult("listening-test", service.resetListeningTestResult());
        return status == kDone ? showListeningTest(service) : status;
    }
    if (arguments.size() != 4) {
        return reportUsage("listening-test", arguments[0], "reset, or the first of four numbers");
    }
    float values[4];
    for (size_t i = 0; i < 4; ++i) {
        char* end = nullptr;
        values[i] = strtof(arguments[i].c_str(), &end);
        if (arguments[i].empty() || *end != '\0') {
            return reportUsage("listening-test", arguments[i], "a number");
        }
    }
    const ExitStatus status = reportResult(
            "listening-test",
            service.setListeningTestResult(values[0], values[1], values[2], values[3]));
    return status == kDone ? showListeningTest(service) : status;
}

}  // namespace

const std::vector<Command> kTuningCommands = {
        {"tune", "KIND [ROUTE|INDEX] FILE", "upload tuning data; KIND is speaker, second-speaker,",
         1, 5, tune},
        {"", "     [--work BYTES]", "accessory, stereo-room or multichannel-room", 0, 0, nullptr},
        {"", "names", "show what was uploaded", 0, 0, nullptr},
        {"listening-test", "[A B C D|reset]", "show, set or reset the listening test", 0, 4,
         listeningTest},
};
