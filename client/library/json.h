// Writes JSON, a value after the other. Commas and nesting are taken care of; a name goes in front
// of each value inside an object and of none elsewhere.

#ifndef ZYL_CLIENT_LIBRARY_JSON_H
#define ZYL_CLIENT_LIBRARY_JSON_H

#include <string>

class Json {
  public:
    Json& open(char bracket);  // '{' or '['
    Json& close();             // what was opened last
    Json& name(const std::string& name);
    Json& text(const std::string& text);
    // Already valid: a number, true, false or null.
    Json& literal(const std::string& literal);
    Json& number(double number);
    Json& boolean(bool value);

    const std::string& str() const { return mText; }

  private:
    void separate();
    void quote(const std::string& text);

    std::string mText;
    std::string mOpen;  // the brackets that will close what is open
    bool mFirst = true;
};

#endif  // ZYL_CLIENT_LIBRARY_JSON_H
