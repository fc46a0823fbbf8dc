// The DSP's blocks: to and from files, decoded, and compared with what they should be.

#include "client/command.h"
#include "client/console.h"
#include "client/expected.h"
#include "client/library/parse.h"

namespace {

constexpr char kBlockNames[] = "a block: 0 to 2, or the name of its route";

Outcome printCopied(const Session& session, int32_t number, size_t size, const std::string& file,
                    const char* direction, FILE* out) {
    if (session.options.json) {
        Json json;
        json.open('{').name("block").text(kRouteNames[number]);
        json.name("size").number(static_cast<double>(size)).name("file").text(file);
        print(json.close(), out);
    } else {
        fprintf(out, "block          %d, %zu bytes %s %s\n", number, size, direction, file.c_str());
    }
    return done();
}

Outcome fetch(Session& session, int32_t number, const std::string& name) {
    Bytes bytes;
    Outcome outcome = resultOf("block fetch", session.fetchBlock(number, &bytes));
    if (outcome.ok()) outcome = writeFile(name, bytes.data(), bytes.size());
    if (!outcome.ok()) return outcome;
    return printCopied(session, number, bytes.size(), name, "to",
                       isStandardStream(name) ? stderr : stdout);
}

Outcome readBlock(const std::string& name, Bytes* bytes) {
    Outcome outcome = readFile(name, bytes);
    if (!outcome.ok() || bytes->size() == blockSize()) return outcome;
    return refusal(name, format("a block has %zu bytes, this file has %s", blockSize(),
                                bytes->size() > blockSize() ? "more" : "fewer"));
}

Outcome push(Session& session, int32_t number, const std::string& name) {
    Bytes bytes;
    Outcome outcome = readBlock(name, &bytes);
    if (outcome.ok()) outcome = resultOf("block push", session.pushBlock(number, bytes));
    if (!outcome.ok()) return outcome;
    return printCopied(session, number, bytes.size(), name, "from", stdout);
}

void printRow(size_t row, const Parameter& parameter, uint32_t word) {
    printf("%3zu  %-14s  0x%08x  %6zu  %4zu  %u (0x%x)\n", row, parameter.name.c_str(),
           parameter.id, parameter.offset, parameter.size, word, word);
}

Outcome showBlock(Session& session, const std::string& source) {
    Bytes bytes;
    int32_t number = 0;
    Outcome outcome;
    if (parseKnownRoute(source, &number)) {
        outcome = session.connect(session.options.waitSeconds);
        if (outcome.ok()) outcome = resultOf("block show", session.fetchBlock(number, &bytes));
    } else {
        outcome = readBlock(source, &bytes);
    }
    if (!outcome.ok()) return outcome;
    Json json;
    json.open('[');
    if (!session.options.json) printf("row  name            id          offset  size  value\n");
    for (size_t row = 0; row < parameters().size(); ++row) {
        const Parameter& parameter = parameters()[row];
        if (!parameter.within(bytes)) continue;
        const uint32_t word = wordAt(bytes, parameter.offset, parameter.size);
        if (!session.options.json) printRow(row, parameter, word);
        json.open('{').name("row").number(static_cast<double>(row));
        json.name("name").text(parameter.name).name("id").number(parameter.id);
        json.name("offset").number(static_cast<double>(parameter.offset));
        json.name("size").number(static_cast<double>(parameter.size));
        json.name("value").number(word).close();
    }
    if (session.options.json) print(json.close());
    return done();
}

Outcome block(Session& session, const Arguments& arguments) {
    const std::string verb = lowerCase(arguments[0]);
    if (verb == "show" && arguments.size() == 2) return showBlock(session, arguments[1]);
    if ((verb != "fetch" && verb != "push") || arguments.size() != 3) {
        return wrongUsage("block", joinWords(arguments),
                          "fetch N FILE, push N FILE or show N|FILE");
    }
    int32_t number = 0;
    // The service has an answer for other blocks too, but never one that anyone wants.
    if (!parseKnownRoute(arguments[1], &number)) {
        return wrongUsage("block", arguments[1], kBlockNames);
    }
    Outcome connected = session.connect(session.options.waitSeconds);
    if (!connected.ok()) return connected;
    return (verb == "fetch" ? fetch : push)(session, number, arguments[2]);
}

std::string summaryOf(const Verdict& verdict) {
    const size_t count = verdict.differences.size();
    const std::string rest = count == 0 ? "as it should be"
                                        : format("%zu difference%s", count, count == 1 ? "" : "s");
    if (!verdict.forced) return rest + ", from " + verdict.expected.file;
    return "forced mode, to end it: kwoctl reload off; else " + rest + ", from " +
           verdict.expected.file;
}

void printVerdict(const Verdict& verdict) {
    printf("block %d %-10s %s\n", verdict.number, kRouteNames[verdict.number],
           summaryOf(verdict).c_str());
    printDifferences(verdict.differences, "expected", "found");
    if (!verdict.expected.unknown.empty()) printf("  %s\n", verdict.expected.unknown.c_str());
}

void addVerdict(Json& json, const Verdict& verdict, const Outcome& examined) {
    json.open('{').name("block").text(kRouteNames[verdict.number]);
    if (!examined.ok()) {
        addToJson(json, examined);
        json.close();
        return;
    }
    json.name("file").text(verdict.expected.file).name("forced").boolean(verdict.forced);
    json.name("unchecked").text(verdict.expected.unknown).name("differences");
    addToJson(json, verdict.differences, "expected", "found");
    json.close();
}

Outcome verify(Session& session, const Arguments& arguments) {
    int32_t first = 0;
    int32_t last = kKnownRoutes - 1;
    if (!arguments.empty()) {
        if (!parseKnownRoute(arguments[0], &first)) {
            return wrongUsage("verify", arguments[0], kBlockNames);
        }
        last = first;
    }
    bool right = true;
    Json json;
    json.open('[');
    for (int32_t number = first; number <= last; ++number) {
        Verdict verdict;
        Outcome examined = examineBlock(session, number, &verdict);
        if (examined.status == kNoService) return examined;
        right = right && examined.ok() && verdict.differences.empty() && !verdict.forced;
        addVerdict(json, verdict, examined);
        if (session.options.json) continue;
        if (examined.ok()) printVerdict(verdict);
        complain(session.options, examined);
    }
    if (session.options.json) print(json.close());
    return right ? done() : differs();
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

const CommandTable& blockCommands() {
    static const CommandTable table = {
            command("block", "show N|FILE", "list the parameters of a block", block)
                    .takes(2, 3)
                    .withoutService()
                    .explained(kBlockDetails),
            also("fetch|push N FILE", "copy a block of the DSP to or from a file"),
            command("verify", "[BLOCK]", "compare the DSP's blocks with what they should be",
                    verify)
                    .takes(0, 1)
                    .explained(kVerifyDetails),
    };
    return table;
}
