#include "client/library/json.h"

#include <cmath>

#include "client/library/parse.h"

void Json::separate() {
    if (!mFirst) mText += ',';
    mFirst = false;
}

void Json::quote(const std::string& text) {
    mText += '"';
    for (char c : text) {
        if (c == '"' || c == '\\') mText += '\\';
        // '<' too: a page's script may hold the text.
        if (static_cast<unsigned char>(c) < ' ' || c == '<') {
            mText += format("\\u%04x", static_cast<unsigned>(c));
        } else {
            mText += c;
        }
    }
    mText += '"';
}

Json& Json::open(char bracket) {
    separate();
    mText += bracket;
    mOpen += bracket == '{' ? '}' : ']';
    mFirst = true;
    return *this;
}

Json& Json::close() {
    mText += mOpen.back();
    mOpen.pop_back();
    mFirst = false;
    return *this;
}

Json& Json::name(const std::string& name) {
    separate();
    quote(name);
    mText += ':';
    mFirst = true;
    return *this;
}

Json& Json::text(const std::string& text) {
    separate();
    quote(text);
    return *this;
}

Json& Json::literal(const std::string& literal) {
    separate();
    mText += literal;
    return *this;
}

Json& Json::number(double number) {
    constexpr double kLargestWritten = 1e15;
    const bool whole = std::fabs(number) < kLargestWritten && number == std::floor(number);
    return literal(whole ? format("%.0f", number) : formatReal(number));
}

Json& Json::boolean(bool value) {
    return literal(value ? "true" : "false");
}
