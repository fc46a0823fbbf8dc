// What the page shows, as the data of its script.

#include "client/library/parse.h"
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

void addBlock(Json& json, const BlockReport& block) {
    json.open('{').name("name").text(block.name).name("found").text(base64(block.found));
    json.name("expected");
    json.text(block.outcome.ok() ? base64(block.verdict.expected.block) : "").close();
}

// The gains in decibels, and what the bands are called under the curve.
void addEqualiser(Json& json, const Session& session, const State& state) {
    Value unused;
    const Value* const gains = find(state, property("gains"), &unused);
    json.name("on").boolean(isOn(state, property("geq"))).name("decibels").open('[');
    const size_t count = gains == nullptr ? 0 : gains->numbers.size();
    for (size_t band = 0; band < count; ++band) json.number(decibelsOf(gains->numbers[band]));
    json.close().name("bands").open('[');
    for (size_t band = 0; band < count; ++band) {
        if (session.bands.empty()) {
            json.text(std::to_string(band));
        } else {
            const double hertz = session.bands[band];
            json.text(hertz < 1000 ? formatReal(hertz) : formatReal(hertz / 1000) + "k");
        }
    }
    json.close();
}

}  // namespace

std::string makeReportData(const Session& session, const Report& report) {
    Json json;
    json.open('{');
    addEqualiser(json, session, report.state);
    addParameters(json);
    json.name("blocks").open('[');
    for (const BlockReport& block : report.blocks) addBlock(json, block);
    return json.close().close().str();
}
