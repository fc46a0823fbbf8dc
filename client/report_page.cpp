#include "client/report_page.h"

#include "client/library/parse.h"
#include "client/library/storage.h"

namespace {

// The build makes this of report_page.html.
constexpr char kPage[] =
#include "report_page.inc"
        ;

std::string escape(const std::string& text) {
    std::string escaped;
    for (char c : text) {
        switch (c) {
            case '&': escaped += "&amp;"; break;
            case '<': escaped += "&lt;"; break;
            case '>': escaped += "&gt;"; break;
            case '"': escaped += "&quot;"; break;
            default: escaped += c;
        }
    }
    return escaped;
}

std::string tile(const std::string& name, const std::string& value, const char* style) {
    return "<div class=\"tile\"><span class=\"soft\">" + escape(name) + "</span><b class=\"" +
           style + "\">" + escape(value) + "</b></div>\n";
}

std::string row(const std::string& name, const std::string& value) {
    return "<tr><th>" + escape(name) + "</th><td>" + escape(value) + "</td></tr>\n";
}

std::string valueOf(const State& state, const char* key) {
    Value unused;
    const Property& row = property(key);
    const Value* const value = find(state, row, &unused);
    return value == nullptr ? "\u2013" : formatValue(row, *value);
}

std::string describeGains(const Session& session, const Value& gains) {
    std::string text;
    for (size_t band = 0; band < gains.numbers.size(); ++band) {
        const double gain = gains.numbers[band];
        text += format("%s: %s (%.0f)\n", nameOfBand(session.bands, band).c_str(),
                       formatDecibels(decibelsOf(gain)).c_str(), gain);
    }
    return text;
}

std::string describeBlocks(const Report& report, const char** style) {
    int wrong = 0;
    int checked = 0;
    for (const BlockReport& block : report.blocks) {
        if (!block.outcome.ok()) continue;
        ++checked;
        if (!block.verdict.differences.empty() || block.verdict.forced) ++wrong;
    }
    *style = wrong > 0 ? "bad" : checked > 0 ? "good" : "";
    if (checked == 0) return "not checked";
    return wrong > 0 ? format("%d differ", wrong) : format("%d as set", checked);
}

std::string makeTiles(const Report& report) {
    const char* blocksStyle = "";
    const std::string blocks = describeBlocks(report, &blocksStyle);
    const auto style = [&report](const char* key) {
        return isOn(report.state, property(key)) ? "good" : "";
    };
    return tile("Generation", valueOf(report.state, "generation"), "") +
           tile("Effect", valueOf(report.state, "effect"), style("effect")) +
           tile("Stereo mode", valueOf(report.state, "stereo"), "") +
           tile("Equaliser", valueOf(report.state, "geq"), style("geq")) +
           tile("Active route", valueOf(report.state, "route"), "") +
           tile("DSP blocks", blocks, blocksStyle);
}

std::string makeProperties(const Session& session, const State& state) {
    std::string rows;
    for (const Reading& reading : state) {
        const Property& property = *reading.property;
        rows += row(property.key, isNone(property, reading.value) ? "none"
                                  : property.kind == Property::kGains
                                          ? describeGains(session, reading.value)
                                          : formatValue(property, reading.value));
    }
    return rows;
}

// Every difference, those outside of parameters ("data") included.
std::string makeBlock(const BlockReport& block, int32_t number) {
    const Verdict& verdict = block.verdict;
    std::string text = "<h3>" + std::string(kRouteNames[number]) + " <code class=\"soft\">" +
                       escape(verdict.expected.file) + "</code></h3>\n";
    if (!block.outcome.ok()) {
        return text + "<p class=\"bad\">not checked: " + escape(block.outcome.why) + "</p>\n";
    }
    const size_t count = verdict.differences.size();
    if (verdict.forced) text += "<p class=\"bad\">forced mode is on</p>\n";
    text += count == 0 ? "<p class=\"good\">as it should be</p>\n"
                       : format("<p class=\"bad\">%zu difference%s</p>\n", count,
                                count == 1 ? "" : "s");
    if (!verdict.expected.unknown.empty()) {
        text += "<p class=\"soft\">" + escape(verdict.expected.unknown) + "</p>\n";
    }
    if (count == 0) return text;
    text += "<div class=\"scroll\"><table><tr><th>what</th><th class=\"n\">offset</th>"
            "<th class=\"n\">bytes</th><th>should be</th><th>is</th></tr>\n";
    for (const Difference& difference : verdict.differences) {
        text +=
                format("<tr><td>%s</td><td class=\"n\">%zu</td><td class=\"n\">%zu</td>"
                       "<td>%s</td><td>%s</td></tr>\n",
                       difference.name.c_str(), difference.offset, difference.size,
                       difference.first.c_str(), difference.second.c_str());
    }
    return text + "</table></div>\n";
}

BlockReport readBlock(Session& session, int32_t number) {
    BlockReport block;
    block.name = kRouteNames[number];
    block.outcome = resultOf(kRouteNames[number], session.fetchBlock(number, &block.found));
    if (block.outcome.ok()) block.outcome = examineBlock(session, number, &block.verdict);
    return block;
}

void fill(std::string* page, const std::string& place, const std::string& text) {
    const size_t at = page->find(place);
    if (at != std::string::npos) page->replace(at, place.size(), text);
}

}  // namespace

Outcome makeReportPage(Session& session, std::string* page) {
    Report report;
    Outcome outcome = readState(session, everything, &report.state);
    if (!outcome.ok()) return outcome;
    std::string blocks;
    for (int32_t number = 0; number < kKnownRoutes; ++number) {
        report.blocks.push_back(readBlock(session, number));
        if (report.blocks.back().outcome.status == kNoService) return report.blocks.back().outcome;
        blocks += makeBlock(report.blocks.back(), number);
    }
    *page = kPage;
    // The properties last: they hold others' texts, which might name a place.
    fill(page, "@TAKEN@", readableTime(now()) + " UTC");
    fill(page, "@TILES@", makeTiles(report));
    fill(page, "@DATA@", makeReportData(session, report));
    fill(page, "@BLOCKS@", blocks);
    fill(page, "@PROPERTIES@", makeProperties(session, report.state));
    return done();
}
