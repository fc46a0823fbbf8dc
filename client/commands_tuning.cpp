// Tuning data and the listening test, on devices whose tunings are made from them.

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "client/changes.h"
#include "client/command.h"
#include "client/files.h"
#include "client/parse.h"

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

// The service takes anything; a file without an identifier is a mistake that nobody would find
// later.
bool hasIdentifier(const std::vector<uint8_t>& data) {
    const size_t length = strnlen(reinterpret_cast<const char*>(data.data()), data.size());
    return length > 0 && length < data.size() && length < kZylcsNameSize;
}

struct Upload {
    const Kind* kind;
    int32_t selector;
    std::string file;
    std::vector<uint8_t> data;
};

ExitStatus showNames(Session& session) {
    ExitStatus status = kDone;
    const std::vector<Reading> readings = readAll(
            session,
            [](const Property& property) { return strncmp(property.key, "data.", 5) == 0; },
            &status);
    if (status != kDone) return status;
    if (readings.empty()) return reportResult("tune names", kZylKwoNotAvailable);
    Json json;
    json.open('{');
    addToJson(json, readings);
    if (session.options.json) {
        json.close().print();
        return kDone;
    }
    for (const Reading& reading : readings) {
        printf("%s%s\n", reading.property->part, reading.value.text.c_str());
    }
    return kDone;
}

// Takes the words of one upload off the arguments, from `next` on.
ExitStatus parseUpload(const Arguments& arguments, size_t* next, Upload* upload) {
    const std::string& word = arguments[*next];
    for (const Kind& kind : kKinds) {
        if (word != kind.name) continue;
        const size_t words = kind.selector == nullptr ? 2 : 3;
        if (arguments.size() - *next < words) break;
        if (kind.selector != nullptr) {
            if (!parseRoute(arguments[*next + 1], &upload->selector)) {
                return reportUsage("tune", arguments[*next + 1], kind.selector);
            }
        }
        upload->kind = &kind;
        upload->file = arguments[*next + words - 1];
        *next += words;
        return kDone;
    }
    return reportUsage("tune", word,
                       "names, speaker FILE, second-speaker FILE, accessory ROUTE FILE, "
                       "stereo-room INDEX FILE or multichannel-room FILE");
}

ExitStatus readUpload(Upload& upload) {
    const ExitStatus status = readFile(upload.file, &upload.data);
    if (status != kDone || hasIdentifier(upload.data)) return status;
    return reportRefusal(upload.file,
                         "no tuning data: it must begin with an identifier of 1 to 36 characters "
                         "and a NUL");
}

ExitStatus tune(Session& session, const Arguments& arguments) {
    if (arguments == Arguments{"names"}) return showNames(session);
    std::vector<Upload> uploads;
    for (size_t next = 0; next < arguments.size();) {
        Upload upload = {};
        ExitStatus status = parseUpload(arguments, &next, &upload);
        if (status == kDone) status = readUpload(upload);
        if (status != kDone) return status;
        uploads.push_back(upload);
    }
    for (size_t i = 0; i < uploads.size(); ++i) {
        const Upload& upload = uploads[i];
        showProgress(i + 1, uploads.size(), upload.file);
        std::vector<uint8_t> work(static_cast<size_t>(std::max(session.options.workSize, 0)));
        const int32_t result =
                upload.kind->set(session.service(), upload.selector, upload.data, work);
        showProgress(0, 0, "");
        const ExitStatus status = reportResult("tune", result);
        if (status != kDone) return status;
        if (session.options.json) continue;
        printf("%-20s %s\n", upload.kind->name, reinterpret_cast<const char*>(upload.data.data()));
    }
    return session.options.json ? showNames(session) : kDone;
}

ExitStatus listeningTest(Session& session, const Arguments& arguments) {
    const Property& test = property("listening-test");
    if (arguments.empty()) return show(session, test);
    if (arguments != Arguments{"reset"}) return setAndShow(session, test, arguments);
    const ExitStatus status =
            reportResult("listening-test", session.service().resetListeningTestResult());
    return status == kDone ? show(session, test) : status;
}

constexpr char kDetails[] =
        "KIND is speaker, second-speaker, accessory ROUTE, stereo-room INDEX (1 lineout's, 2\n"
        "bluetooth's) or multichannel-room. Several may follow one another; all files are read "
        "and\n"
        "checked before the first is sent, but an upload that was made is not taken back. --work\n"
        "gives the size of the conversion library's work area. Only on devices without tuning\n"
        "numbers.\n";

}  // namespace

const std::vector<Command> kTuningCommands = {
        {"tune", "KIND FILE...", "upload tuning data", kDetails, 1, kAnyNumber, Command::kService,
         "--json --work", tune},
        {"", "names", "show what was uploaded", "", 0, 0, Command::kService, "", nullptr},
        {"listening-test", "[A B C D|reset]", "show, set or reset the listening test",
         "Only on devices without tuning numbers. -1 -1 -1 -1 stands for none.\n", 0, 4,
         Command::kService, "--json", listeningTest},
};
