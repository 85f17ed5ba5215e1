// JSON text for the tools' line-by-line output: one object a line, written as it is built. Numbers print in the
// shortest form that reads back exactly; text is UTF-8.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace rubrica::tools {

class JsonWriter {
 public:
  JsonWriter& beginObject();
  JsonWriter& endObject();
  JsonWriter& beginArray();
  JsonWriter& endArray();
  JsonWriter& key(std::string_view name);
  JsonWriter& value(std::string_view text);
  JsonWriter& value(const char* text) { return value(std::string_view(text)); }
  JsonWriter& value(std::u16string_view text);
  JsonWriter& value(bool flag);
  JsonWriter& value(int number) { return value(std::int64_t{number}); }
  JsonWriter& value(std::int64_t number);
  JsonWriter& value(double number);  // null when it is not finite
  template <class T>
  JsonWriter& member(std::string_view name, const T& content) {
    return key(name).value(content);
  }

  const std::string& text() const { return _text; }
  void clear();

 private:
  void separate();
  std::string _text;
  bool _needsComma = false;
};

}  // namespace rubrica::tools
