// Tuning data and the listening test, on devices whose tunings are made from them.

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "client/change.h"
#include "client/console.h"
#include "client/library/files.h"
#include "client/library/parse.h"

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

Outcome showNames(Session& session) {
    State state;
    Outcome outcome = readState(
            session,
            [](const Property& property) { return property.key.compare(0, 5, "data.") == 0; },
            &state);
    if (!outcome.ok()) return outcome;
    if (state.empty()) return resultOf("tune names", kZylKwoNotAvailable);
    if (session.options.json) {
        Json json;
        json.open('{');
        addToJson(json, state);
        print(json.close());
        return done();
    }
    for (const Reading& reading : state) {
        printf("%s%s\n", reading.property->part.c_str(), reading.value.text.c_str());
    }
    return done();
}

// Takes the words of one upload off the arguments, from `next` on.
Outcome parseUpload(const Arguments& arguments, size_t* next, Upload* upload) {
    const std::string& word = arguments[*next];
    for (const Kind& kind : kKinds) {
        if (word != kind.name) continue;
        const size_t words = kind.selector == nullptr ? 2 : 3;
        if (arguments.size() - *next < words) break;
        if (kind.selector != nullptr && !parseRoute(arguments[*next + 1], &upload->selector)) {
            return wrongUsage("tune", arguments[*next + 1], kind.selector);
        }
        upload->kind = &kind;
        upload->file = arguments[*next + words - 1];
        *next += words;
        return done();
    }
    return wrongUsage("tune", word,
                      "names, speaker FILE, second-speaker FILE, accessory ROUTE FILE, "
                      "stereo-room INDEX FILE or multichannel-room FILE");
}

Outcome readUpload(Upload& upload) {
    Outcome outcome = readFile(upload.file, &upload.data);
    if (!outcome.ok() || hasIdentifier(upload.data)) return outcome;
    return refusal(upload.file,
                   "no tuning data: it must begin with an identifier of 1 to 36 characters and a "
                   "NUL");
}

Outcome tune(Session& session, const Arguments& arguments) {
    if (arguments == Arguments{"names"}) return showNames(session);
    std::vector<Upload> uploads;
    for (size_t next = 0; next < arguments.size();) {
        Upload upload = {};
        Outcome outcome = parseUpload(arguments, &next, &upload);
        if (outcome.ok()) outcome = readUpload(upload);
        if (!outcome.ok()) return outcome;
        uploads.push_back(upload);
    }
    for (size_t i = 0; i < uploads.size(); ++i) {
        const Upload& upload = uploads[i];
        if (!session.options.json) showProgress(i + 1, uploads.size(), upload.file);
        std::vector<uint8_t> work(static_cast<size_t>(session.options.workSize));
        const int32_t result =
                upload.kind->set(session.service(), upload.selector, upload.data, work);
        if (!session.options.json) showProgress(0, 0, "");
        Outcome outcome = resultOf("tune", result);
        if (!outcome.ok()) {
            for (size_t k = 0; k < i; ++k) {
                outcome.holds.push_back(std::string(uploads[k].kind->name) + " is uploaded");
            }
            return outcome;
        }
        if (session.options.json) continue;
        printf("%-20s %s\n", upload.kind->name, reinterpret_cast<const char*>(upload.data.data()));
    }
    return session.options.json ? showNames(session) : done();
}

Outcome listeningTest(Session& session, const Arguments& arguments) {
    const Property& test = property("listening-test");
    if (arguments.empty()) return show(session, test);
    Value value;
    const bool reset = arguments.size() == 1 && lowerCase(arguments[0]) == "reset";
    Outcome outcome =
            parseValue(test, reset ? Arguments{"-1", "-1", "-1", "-1"} : arguments, &value);
    if (outcome.ok()) outcome = changeOne(session, test, value);
    return outcome.ok() ? show(session, test) : outcome;
}

constexpr char kDetails[] =
        "KIND is speaker, second-speaker, accessory ROUTE, stereo-room INDEX (1 lineout's, 2\n"
        "bluetooth's) or multichannel-room. Several may follow one another; all files are read "
        "and\n"
        "checked before the first is sent, but an upload that was made is not taken back, and "
        "undo\n"
        "does not know of it. --work BYTES gives the size of the conversion library's work area.\n"
        "Only on devices without tuning numbers.\n";

}  // namespace

const CommandTable& tuningCommands() {
    static const CommandTable table = {
            command("tune", "KIND FILE...", "upload tuning data", tune)
                    .takes(1, kAnyNumberOfArguments)
                    .with(Command::kWork)
                    .explained(kDetails),
            also("names", "show what was uploaded"),
            command("listening-test", "[A B C D|reset]", "show, set or reset the listening test",
                    listeningTest)
                    .takes(0, kAnyNumberOfArguments)
                    .explained("Only on devices without tuning numbers. -1 -1 -1 -1 stands for "
                               "none.\n"),
    };
    return table;
}
