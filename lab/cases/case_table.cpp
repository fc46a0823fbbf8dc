#include "lab/cases/case_table.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>

#include "lab/cases/protocol.h"
#include "lab/cases/story.h"

using android::Parcel;

// Apart by blanks that are not part of a text; what is repeated is written out.
std::vector<std::string> wordsOf(const std::string& line) {
    std::vector<std::string> words;
    char quote = 0;
    std::string word;
    for (char c : line + ' ') {
        if (c == quote) {
            quote = 0;
        } else if (quote == 0 && (c == '"' || c == '\'')) {
            quote = c;
        }
        if (c != ' ' || quote != 0) {
            word += c;
            continue;
        }
        const bool text = word[0] == '"' || word[0] == '\'';
        const size_t star = text ? std::string::npos : word.find('*');
        const int times = star == std::string::npos ? 1 : atoi(&word[star + 1]);
        if (!word.empty())
            words.insert(words.end(), static_cast<size_t>(times), word.substr(0, star));
        word.clear();
    }
    return words;
}

// A quoted text's bytes.
std::string bytesOfText(const std::string& word) {
    std::string bytes;
    for (size_t i = 1; i + 1 < word.size(); ++i) {
        const bool escaped = word[i] == '\\';
        if (escaped) ++i;
        bytes += !escaped ? word[i] : word[i] == '0' ? '\0' : word[i] == 'n' ? '\n' : word[i];
    }
    if (word[0] == '"') bytes += '\0';
    return bytes;
}

namespace {

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
    return text;
}

void writeBlob(const std::string& bytes, Parcel* data) {
    data->writeInt32(static_cast<int32_t>(bytes.size()));
    data->write(bytes.data(), bytes.size());
}

int32_t numberOf(const std::string& word) {
    return static_cast<int32_t>(strtoll(word.c_str(), nullptr, 0));
}

void writeArgument(char kind, const std::string& word, Parcel* data) {
    if (word[0] == '"' || word[0] == '\'') {
        writeBlob(bytesOfText(word), data);
    } else if (word[0] == '/') {
        const int fd = open(word.c_str(), O_RDWR | O_CLOEXEC);
        data->writeDupFileDescriptor(fd);
        close(fd);
    } else if (word[0] == '#') {
        data->writeInt32(numberOf(word.substr(1)));
    } else if (kind == 'B') {
        writeBlob(std::string(static_cast<size_t>(numberOf(word)), '\0'), data);
    } else if (kind == 'f') {
        data->writeFloat(strtof(word.c_str(), nullptr));
    } else {
        data->writeInt32(numberOf(word));
    }
}

std::string hexWords(const Parcel& reply) {
    std::string text;
    reply.setDataPosition(0);
    while (reply.dataAvail() > 0) {
        char word[16];
        snprintf(word, sizeof(word), "%08x", reply.readUint32());
        text += (text.empty() ? "" : " ") + std::string(word);
    }
    return text.empty() ? "empty" : text;
}

std::string quoted(const char* text) {
    return text == nullptr ? "" : '"' + std::string(text) + '"';
}

// One part of a reply; nothing where there is no such part.
std::string partText(char kind, const Parcel& reply) {
    if (reply.dataAvail() == 0) return "";
    char text[32];
    switch (kind) {
        case 'r': return resultName(reply.readInt32());
        case 'w': return std::to_string(reply.readInt32());
        case 's': return quoted(reply.readCString());
        case 'n': return reply.readInt32() == 37 ? quoted(reply.readCString()) : "";
        case 'f':
            snprintf(text, sizeof(text), "%.9g", static_cast<double>(reply.readFloat()));
            return text;
        default: return "";
    }
}

}  // namespace

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
        if (line.empty() || line[0] == '#') continue;
        std::istringstream fields(line);
        Case row;
        std::getline(fields, row.call, '|');
        std::getline(fields, row.reply, '|');
        std::getline(fields, row.story);
        row.story.erase(0, row.story.find('|') == 0 ? 1 : 0);
        row.call = joined(wordsOf(row.call));
        row.reply = joined(wordsOf(row.reply));
        row.story = writtenOut(row.story);
        row.failing = failingRequest(row.story);
        table.cases.push_back(row);
    }
    return table;
}

uint32_t fillCall(const std::string& call, Parcel* data) {
    const std::vector<std::string> words = wordsOf(call);
    const Shape* named = shapeNamed(words.at(0));
    const uint32_t code =
            named != nullptr ? named->code : static_cast<uint32_t>(numberOf(words[0]));
    const std::string kinds = named != nullptr ? named->arguments : "";
    data->writeInterfaceToken(android::String16(kDescriptor));
    for (size_t i = 1; i < words.size(); ++i) {
        writeArgument(i <= kinds.size() ? kinds[i - 1] : 'x', words[i], data);
    }
    return code;
}

std::string replyText(uint32_t code, android::status_t status, const Parcel& reply) {
    if (status != android::NO_ERROR) return statusName(status);
    const Shape* shape = shapeOf(code);
    std::string text;
    std::string kinds = shape == nullptr ? "" : shape->reply;
    if (!kinds.empty() && kinds[0] == '?') kinds.erase(0, 1);
    reply.setDataPosition(0);
    for (char kind : kinds) {
        const std::string part = partText(kind, reply);
        if (part.empty()) return hexWords(reply);
        text += (text.empty() ? "" : " ") + part;
    }
    return text.empty() || reply.dataAvail() > 0 ? hexWords(reply) : text;
}
