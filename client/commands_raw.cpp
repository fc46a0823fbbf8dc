// Any transaction by its number, and the page that shows all.

#include <binder/Parcel.h>
#include <fcntl.h>
#include <unistd.h>
#include <utils/Errors.h>

#include <cstring>

#include "client/command.h"
#include "client/console.h"
#include "client/help.h"
#include "client/library/files.h"
#include "client/library/parse.h"
#include "client/report_page.h"

namespace {

using android::Parcel;

Outcome addDescriptor(Parcel& data, const std::string& name) {
    const int fd = open(name.c_str(), O_RDWR | O_CLOEXEC);
    if (fd < 0) return refusal(name, "cannot be opened for reading and writing");
    // The parcel's from here on.
    data.writeFileDescriptor(fd, true);
    return done();
}

Outcome addBlob(Parcel& data, const std::string& name) {
    Bytes bytes;
    Outcome outcome = readFile(name, &bytes);
    if (!outcome.ok()) return outcome;
    data.writeInt32(static_cast<int32_t>(bytes.size()));
    if (!bytes.empty()) data.write(bytes.data(), bytes.size());
    return done();
}

Outcome addArgument(Parcel& data, const std::string& type, const std::string& text) {
    if (type == "i32") {
        int32_t number = 0;
        if (!parseNumber(text, &number)) return wrongUsage("raw", text, "a 32-bit number");
        data.writeInt32(number);
        return done();
    }
    if (type == "f") {
        double number = 0;
        if (!parseReal(text, &number)) return wrongUsage("raw", text, "a number");
        data.writeFloat(static_cast<float>(number));
        return done();
    }
    if (type == "blob") return addBlob(data, text);
    if (type == "fd") return addDescriptor(data, text);
    return wrongUsage("raw", type, "i32, f, blob or fd");
}

// The platform's own names where it has some; other errors are the kernel's, negated.
std::string describe(android::status_t status) {
    switch (status) {
        case android::UNKNOWN_TRANSACTION: return "UNKNOWN_TRANSACTION";
        case android::FAILED_TRANSACTION: return "FAILED_TRANSACTION";
        case android::BAD_TYPE: return "BAD_TYPE";
        case android::PERMISSION_DENIED: return "PERMISSION_DENIED";
        default: return format("%s (%d)", strerror(-status), status);
    }
}

void printReply(const Session& session, const Parcel& reply) {
    Json json;
    json.open('{').name("words").open('[');
    size_t offset = 0;
    for (; reply.dataAvail() >= sizeof(int32_t); offset += sizeof(int32_t)) {
        const int32_t word = reply.readInt32();
        json.number(word);
        if (session.options.json) continue;
        char text[sizeof(word) + 1] = {};
        for (size_t i = 0; i < sizeof(word); ++i) {
            const auto byte = static_cast<uint8_t>(static_cast<uint32_t>(word) >> (8 * i));
            text[i] = byte >= ' ' && byte < 0x7f ? static_cast<char>(byte) : '.';
        }
        printf("%5zu  0x%08x  %11d  %s\n", offset, static_cast<uint32_t>(word), word, text);
    }
    json.close().close();
    if (session.options.json) print(json);
    if (!session.options.json && offset == 0) printf("an empty reply\n");
}

Outcome raw(Session& session, const Arguments& arguments) {
    int32_t code = 0;
    if (!parseNumber(arguments[0], &code) || code < 1) {
        return wrongUsage("raw", arguments[0], "a transaction's code");
    }
    if (arguments.size() % 2 == 0) {
        return wrongUsage("raw", arguments.back(), "a pair of type and value");
    }
    Parcel data;
    data.writeInterfaceToken(Izyl_kwo_service::descriptor);
    for (size_t i = 1; i < arguments.size(); i += 2) {
        Outcome status = addArgument(data, arguments[i], arguments[i + 1]);
        if (!status.ok()) return status;
    }
    Parcel reply;
    const android::status_t sent = android::IInterface::asBinder(&session.service())
                                           ->transact(static_cast<uint32_t>(code), data, &reply);
    if (sent == android::DEAD_OBJECT) return resultOf("raw", kZylKwoServiceGone);
    if (sent != android::NO_ERROR) {
        return refusal("raw", "the service did not take it: " + describe(sent));
    }
    printReply(session, reply);
    return done();
}

Outcome report(Session& session, const Arguments& arguments) {
    std::string page;
    Outcome status = makeReportPage(session, &page);
    if (status.ok()) status = writeFile(arguments[0], page.data(), page.size());
    if (!status.ok()) return status;
    if (session.options.json && !isStandardStream(arguments[0])) {
        Json json;
        print(json.open('{').name("report").text(arguments[0]).close());
    } else {
        printAbout(arguments[0], "report         to " + arguments[0]);
    }
    return done();
}

Outcome help(Session&, const Arguments& arguments) {
    if (arguments.empty()) {
        printHelp(stdout);
        return done();
    }
    const Command* command = findCommand(arguments[0]);
    if (command == nullptr) {
        const std::string nearest = nearestCommand(arguments[0]);
        return wrongUsage("help", arguments[0],
                          "a command; " + (nearest.empty() ? "see kwoctl help"
                                                           : "did you mean " + nearest + "?"));
    }
    printHelp(*command);
    return done();
}

constexpr char kRawDetails[] =
        "Sends the transaction with these arguments and shows the reply's 32-bit words: offset, "
        "in\n"
        "hexadecimal, signed, and as text. FILE of blob may be -; fd passes a file itself.\n"
        "    kwoctl raw 5 i32 3\n";
constexpr char kReportDetails[] =
        "One page that needs nothing else: the equaliser's curve, all properties, and the blocks\n"
        "with what differs from what they should hold.\n";

}  // namespace

const CommandTable& otherCommands() {
    static const CommandTable table = {
            command("raw", "CODE [TYPE VALUE]...",
                    "send any transaction; TYPE is i32, f, blob or fd", raw)
                    .takes(1, kAnyNumberOfArguments)
                    .explained(kRawDetails),
            command("report", "FILE", "write a page (HTML) that shows everything", report)
                    .takes(1, 1)
                    .explained(kReportDetails),
            command("help", "[COMMAND]", "show this help, or that of a command", help)
                    .takes(0, 1)
                    .withoutService(),
    };
    return table;
}
