// What the page shows, as the data of its script.

#include <ctime>

#include "client/expected.h"
#include "client/parse.h"
#include "client/properties.h"
#include "client/report_page.h"

namespace {

std::string base64(const Bytes& bytes) {
    constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (size_t i = 0; i < bytes.size(); i += 3) {
        uint32_t group = 0;
        for (size_t k = 0; k < 3; ++k)
            group = group << 8 | (i + k < bytes.size() ? bytes[i + k] : 0);
        for (size_t k = 0; k < 4; ++k) {
            const bool padding = i + k > bytes.size();
            text += padding ? '=' : kDigits[group >> (18 - 6 * k) & 63];
        }
    }
    return text;
}

void addParameters(Json& json) {
    json.name("parameters").open('[');
    for (const Parameter& parameter : parameters()) {
        json.open('{').name("name").text(parameter.name).name("id").number(parameter.id);
        json.name("offset").number(static_cast<double>(parameter.offset));
        json.name("size").number(static_cast<double>(parameter.size)).close();
    }
    json.close();
}

// A block that cannot be held against anything is shown all the same.
ExitStatus addBlock(Session& session, int32_t number, Json& json) {
    Bytes found;
    const ExitStatus status = reportResult("report", session.fetchBlock(number, &found));
    if (status == kNoService) return status;
    Expected expected;
    const bool known = status == kDone && found.size() == blockSize() &&
                       expectBlock(session, number, found, &expected) == kDone;
    json.open('{').name("name").text(kRouteNames[number]).name("file").text(expected.file);
    json.name("found").text(base64(found)).name("expected");
    json.text(known ? base64(expected.block) : "").name("unknown").text(expected.unknown).close();
    return kDone;
}

std::string now() {
    const time_t time = ::time(nullptr);
    tm parts = {};
    gmtime_r(&time, &parts);
    char text[32] = {};
    strftime(text, sizeof(text), "%Y-%m-%d %H:%M:%S UTC", &parts);
    return text;
}

}  // namespace

ExitStatus makeReportData(Session& session, std::string* data) {
    ExitStatus status = kDone;
    const std::vector<Reading> readings = readAll(
            session, [](const Property&) { return true; }, &status);
    if (status != kDone) return status;
    Json json;
    json.open('{').name("taken").text(now()).name("state").open('{');
    addToJson(json, readings);
    json.close();
    addParameters(json);
    json.name("blocks").open('[');
    for (int32_t number = 0; number < kKnownRoutes && status == kDone; ++number) {
        status = addBlock(session, number, json);
    }
    *data = json.close().close().str();
    return status;
}
