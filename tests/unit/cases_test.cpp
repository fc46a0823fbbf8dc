// The tables of tests/cases, which run on the phone too, under the sanitizers: what each call
// replies and what it makes the DSP, the audio system and the conversion library do.

#include <fstream>
#include <sstream>

#include "tests/support/phone.h"

using android::sp;

namespace {

// SKIP|CALL|REPLY|STORY, as on the phone.
struct Case {
    std::string skip;
    std::string call;
    std::string reply;
    std::string story;
};

struct Table {
    std::string name;
    std::string generation;
    std::vector<Case> cases;
};

void PrintTo(const Table& table, std::ostream* out) {
    *out << table.name;
}

Table readTable(const std::string& path) {
    Table table;
    table.name = path.substr(path.rfind('/') + 1);
    table.name.resize(table.name.find('.'));
    std::ifstream file(path);
    std::string line;
    const std::string generation = "# generation: ";
    while (std::getline(file, line)) {
        if (line.compare(0, generation.size(), generation) == 0) {
            table.generation = line.substr(generation.size());
        }
        if (line[0] == '#') continue;
        std::istringstream fields(line);
        Case row;
        std::getline(fields, row.skip, '|');
        std::getline(fields, row.call, '|');
        std::getline(fields, row.reply, '|');
        std::getline(fields, row.story, '|');
        table.cases.push_back(row);
    }
    return table;
}

std::vector<Table> readTables() {
    std::vector<Table> tables;
    for (const char* name : {"clients", "equaliser", "faults", "maldor", "none", "torvane"}) {
        tables.push_back(readTable(std::string(ZYL_CASES "/") + name + ".cases"));
    }
    return tables;
}

std::string hexWords(const android::Parcel& reply) {
    std::string text;
    for (size_t at = 0; at < reply.dataSize(); at += 4) {
        char word[16];
        snprintf(word, sizeof(word), "%s%08x", at == 0 ? "" : " ",
                 static_cast<unsigned>(reply.readInt32()));
        text += word;
    }
    return text;
}

// A call as `service call` would make it, and its reply as it would show it.
std::string call(android::IBinder& service, const std::string& text) {
    std::istringstream words(text);
    uint32_t code = 0;
    words >> code;
    android::Parcel data;
    data.writeInterfaceToken(Izyl_kwo_service::descriptor);
    std::string type;
    while (words >> type) {
        double value = 0;
        words >> value;
        if (type == "f") {
            data.writeFloat(static_cast<float>(value));
        } else {
            data.writeInt32(static_cast<int32_t>(value));
        }
    }
    android::Parcel reply;
    const android::status_t status = service.transact(code, data, &reply);
    if (status == android::NO_ERROR) return hexWords(reply);
    char error[16];
    snprintf(error, sizeof(error), "0x%08x", static_cast<unsigned>(status));
    return error;
}

class Cases : public testing::TestWithParam<Table> {};

}  // namespace

TEST_P(Cases, ReplyAndActAsTheTableSays) {
    Phone phone;
    if (GetParam().generation == "torvane") Phone::installTorvane();
    if (GetParam().generation == "maldor") Phone::installMaldor();
    const sp<zyl_kwo_service> service = phone.start();
    for (const Case& row : GetParam().cases) {
        SCOPED_TRACE(row.skip + "|" + row.call);
        if (!row.skip.empty()) {
            deviceCalls().model->fail(static_cast<unsigned>(std::stoul(row.skip)), 1);
        }
        EXPECT_EQ(call(*service, row.call), row.reply);
        EXPECT_EQ(phone.story(), row.story);
        deviceCalls().model->reset();
    }
}

INSTANTIATE_TEST_SUITE_P(AllTables, Cases, testing::ValuesIn(readTables()),
                         [](const auto& info) { return info.param.name; });
