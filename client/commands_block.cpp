// The DSP's blocks: to and from files, decoded, and held against what they should be.

#include "client/command.h"
#include "client/expected.h"
#include "client/json.h"
#include "client/parse.h"

namespace {

void addDifferences(Json& json, const std::vector<Difference>& differences, const char* first,
                    const char* second) {
    json.open('[');
    for (const Difference& difference : differences) {
        json.open('{').name("name").text(difference.name);
        json.name("offset").number(static_cast<double>(difference.offset));
        json.name("size").number(static_cast<double>(difference.size));
        json.name(first).text(difference.first).name(second).text(difference.second).close();
    }
    json.close();
}

ExitStatus fetch(Session& session, int32_t number, const std::string& name) {
    Bytes bytes;
    ExitStatus status = reportResult("block fetch", session.fetchBlock(number, &bytes));
    if (status == kDone) status = writeFile(name, bytes.data(), bytes.size());
    if (status != kDone) return status;
    printAbout(name,
               format("block          %d, %zu bytes to %s", number, bytes.size(), name.c_str()));
    return kDone;
}

ExitStatus readBlock(const std::string& name, Bytes* bytes) {
    const ExitStatus status = readFile(name, bytes);
    if (status != kDone || bytes->size() == blockSize()) return status;
    return reportRefusal(name, format("a block has %zu bytes, this file has %s", blockSize(),
                                      bytes->size() > blockSize() ? "more" : "fewer"));
}

ExitStatus push(Session& session, int32_t number, const std::string& name) {
    Bytes bytes;
    ExitStatus status = readBlock(name, &bytes);
    if (status == kDone) status = reportResult("block push", session.pushBlock(number, bytes));
    if (status != kDone) return status;
    printf("block          %d, %zu bytes from %s\n", number, bytes.size(), name.c_str());
    return kDone;
}

ExitStatus showBlock(Session& session, const std::string& source) {
    Bytes bytes;
    int32_t number = 0;
    const bool live = parseKnownRoute(source, &number);
    if (live && !session.connect()) return kNoService;
    const ExitStatus status = live ? reportResult("block show", session.fetchBlock(number, &bytes))
                                   : readBlock(source, &bytes);
    if (status != kDone) return status;
    Json json;
    json.open('[');
    if (!session.options.json) printf("row  name            id          offset  size  value\n");
    for (size_t row = 0; row < parameters().size(); ++row) {
        const Parameter& parameter = parameters()[row];
        if (!parameter.within(bytes)) continue;
        const uint32_t word = wordAt(bytes, parameter.offset, parameter.size);
        if (session.options.json) {
            json.open('{').name("row").number(static_cast<double>(row));
            json.name("name").text(parameter.name).name("id").number(parameter.id);
            json.name("offset").number(static_cast<double>(parameter.offset));
            json.name("size").number(static_cast<double>(parameter.size));
            json.name("value").number(word).close();
        } else {
            printf("%3zu  %-14s  0x%08x  %6zu  %4zu  %u (0x%x)\n", row, parameter.name.c_str(),
                   parameter.id, parameter.offset, parameter.size, word, word);
        }
    }
    json.close();
    if (session.options.json) json.print();
    return kDone;
}

ExitStatus block(Session& session, const Arguments& arguments) {
    const std::string& verb = arguments[0];
    if (verb == "show" && arguments.size() == 2) return showBlock(session, arguments[1]);
    if ((verb != "fetch" && verb != "push") || arguments.size() != 3) {
        return reportUsage("block", verb, "fetch N FILE, push N FILE or show N|FILE");
    }
    int32_t number = 0;
    // The service has an answer for other blocks too, but never one that anyone wants.
    if (!parseKnownRoute(arguments[1], &number)) {
        return reportUsage("block", arguments[1], "a block: 0 to 2, or the name of its route");
    }
    if (!session.connect()) return kNoService;
    return (verb == "fetch" ? fetch : push)(session, number, arguments[2]);
}

struct Verdict {
    int32_t number;
    Expected expected;
    std::vector<Difference> differences;
    bool forced;
};

ExitStatus examine(Session& session, int32_t number, Verdict* verdict) {
    Bytes found;
    ExitStatus status = reportResult("verify", session.fetchBlock(number, &found));
    if (status != kDone) return status;
    if (found.size() != blockSize()) {
        return reportRefusal("verify", "the service's blocks are of another size than the layout");
    }
    status = expectBlock(session, number, found, &verdict->expected);
    if (status != kDone) return status;
    verdict->number = number;
    verdict->differences = compareBlocks(verdict->expected.block, found);
    verdict->forced = number != 0 && !verdict->differences.empty() && looksForced(found);
    return kDone;
}

void printVerdict(const Verdict& verdict) {
    const size_t count = verdict.differences.size();
    const std::string outcome = count == 0
                                        ? "as it should be"
                                        : format("%zu difference%s", count, count > 1 ? "s" : "");
    printf("block %d %-10s %s, from %s\n", verdict.number, kRouteNames[verdict.number],
           outcome.c_str(), verdict.expected.file.c_str());
    printDifferences(verdict.differences, "expected", "found");
    if (!verdict.expected.unknown.empty()) printf("  %s\n", verdict.expected.unknown.c_str());
    if (verdict.forced) printf("  forced mode seems to be on; to end it: kwoctl reload off\n");
}

ExitStatus verify(Session& session, const Arguments& arguments) {
    int32_t first = 0;
    int32_t last = kKnownRoutes - 1;
    if (!arguments.empty()) {
        if (!parseKnownRoute(arguments[0], &first)) {
            return reportUsage("verify", arguments[0], "a block: 0 to 2, or the name of its route");
        }
        last = first;
    }
    ExitStatus status = kDone;
    Json json;
    json.open('[');
    for (int32_t number = first; number <= last; ++number) {
        Verdict verdict;
        const ExitStatus examined = examine(session, number, &verdict);
        if (examined != kDone || !verdict.differences.empty()) status = kRefused;
        if (examined == kNoService) return examined;
        if (examined != kDone) continue;
        if (!session.options.json) printVerdict(verdict);
        json.open('{').name("block").text(kRouteNames[number]);
        json.name("file").text(verdict.expected.file).name("differences");
        addDifferences(json, verdict.differences, "expected", "found");
        json.close();
    }
    if (session.options.json) json.close().print();
    return status;
}

constexpr char kBlockDetails[] =
        "N is 0 to 2 or the name of its route, FILE a file or - for standard input or output. "
        "show\n"
        "lists a block's parameters; it needs no service to show a file.\n";
constexpr char kVerifyDetails[] =
        "Reads the DSP's blocks and compares them, parameter by parameter, with what tuning files\n"
        "and settings say they should be. Exit status 1 when they differ; to put it right: kwoctl\n"
        "reload.\n";

}  // namespace

const std::vector<Command> kBlockCommands = {
        {"block", "show N|FILE", "list the parameters of a block", kBlockDetails, 2, 3,
         Command::kNothing, "--json", block},
        {"", "fetch|push N FILE", "copy a block of the DSP to or from a file", "", 0, 0,
         Command::kNothing, "", nullptr},
        {"verify", "[BLOCK]", "compare the DSP's blocks with what they should be", kVerifyDetails,
         0, 1, Command::kService, "--json", verify},
};
