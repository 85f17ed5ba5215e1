#include "tools/json_writer.h"

#include <charconv>
#include <cmath>

#include "platform/text.h"

namespace rubrica::tools {

void JsonWriter::separate() {
  if (_needsComma) _text += ", ";
  _needsComma = true;
}

JsonWriter& JsonWriter::beginObject() {
  separate();
  _text += '{';
  _needsComma = false;
  return *this;
}

JsonWriter& JsonWriter::endObject() {
  _text += '}';
  _needsComma = true;
  return *this;
}

JsonWriter& JsonWriter::beginArray() {
  separate();
  _text += '[';
  _needsComma = false;
  return *this;
}

JsonWriter& JsonWriter::endArray() {
  _text += ']';
  _needsComma = true;
  return *this;
}

JsonWriter& JsonWriter::key(std::string_view name) {
  value(name);
  _text += ": ";
  _needsComma = false;
  return *this;
}

JsonWriter& JsonWriter::value(std::string_view text) {
  constexpr char kHex[] = "0123456789abcdef";
  separate();
  _text += '"';
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      _text += '\\';
      _text += c;
    } else if (byte < 0x20) {
      _text += "\\u00";
      _text += kHex[byte >> 4];
      _text += kHex[byte & 15];
    } else {
      _text += c;
    }
  }
  _text += '"';
  return *this;
}

JsonWriter& JsonWriter::value(std::u16string_view text) {
  return value(platform::utf8FromUtf16Lossy(text));
}

JsonWriter& JsonWriter::value(bool flag) {
  separate();
  _text += flag ? "true" : "false";
  return *this;
}

JsonWriter& JsonWriter::value(std::int64_t number) {
  separate();
  _text += std::to_string(number);
  return *this;
}

JsonWriter& JsonWriter::value(double number) {
  separate();
  if (!std::isfinite(number)) {
    _text += "null";
    return *this;
  }
  char buffer[32];
  const auto end = std::to_chars(buffer, buffer + sizeof(buffer), number).ptr;
  _text.append(buffer, end);
  return *this;
}

void JsonWriter::clear() {
  _text.clear();
  _needsComma = false;
}

}  // namespace rubrica::tools
