#include "simhost/files.h"

#include <cerrno>
#include <cstdio>
#include <memory>
#include <utility>

namespace rubrica::simhost {

namespace {

struct Closer {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, Closer>;

int lastError() {
  return errno == 0 ? EIO : errno;
}

// Takes the fields of one record off the text.
std::vector<std::string> takeRecord(std::string_view& text, char separator) {
  std::vector<std::string> fields(1);
  bool quoted = false;
  std::size_t at = 0;
  for (; at < text.size(); ++at) {
    const char c = text[at];
    if (quoted) {
      if (c != '"') {
        fields.back().push_back(c);
      } else if (at + 1 < text.size() && text[at + 1] == '"') {
        fields.back().push_back('"');
        ++at;
      } else {
        quoted = false;
      }
    } else if (c == '"' && fields.back().empty()) {
      quoted = true;
    } else if (c == separator) {
      fields.emplace_back();
    } else if (c == '\n') {
      break;
    } else if (c != '\r') {
      fields.back().push_back(c);
    }
  }
  text.remove_prefix(std::min(at + 1, text.size()));
  return fields;
}

void addField(std::string& record, std::string_view field, char separator) {
  if (field.find_first_of(std::string("\"\r\n") + separator) == std::string_view::npos) {
    record += field;
    return;
  }
  record += '"';
  for (const char c : field) {
    if (c == '"') record += '"';
    record += c;
  }
  record += '"';
}

}  // namespace

int readFile(const std::string& path, Bytes& bytes) {
  errno = 0;
  const File file(std::fopen(path.c_str(), "rb"));
  if (file == nullptr) return lastError();
  bytes.clear();
  constexpr std::size_t blockSize = 65536;
  for (std::size_t got = blockSize; got == blockSize;) {
    const std::size_t used = bytes.size();
    bytes.resize(used + blockSize);
    got = std::fread(bytes.data() + used, 1, blockSize, file.get());
    bytes.resize(used + got);
  }
  return std::ferror(file.get()) != 0 ? lastError() : 0;
}

int writeFile(const std::string& path, const Bytes& bytes) {
  errno = 0;
  File file(std::fopen(path.c_str(), "wb"));
  if (file == nullptr) return lastError();
  if (std::fwrite(bytes.data(), 1, bytes.size(), file.get()) != bytes.size()) return lastError();
  return std::fclose(file.release()) != 0 ? lastError() : 0;
}

void readCsv(std::string_view text, bool header, char separator, List& list) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
  bool first = true;
  while (!text.empty()) {
    const std::vector<std::string> fields = takeRecord(text, separator);
    if (fields.size() == 1 && fields[0].empty()) continue;
    if (first && list.columnCount() == 0) {
      for (std::size_t i = 0; i < fields.size(); ++i) {
        const std::string name = header ? fields[i] : "C" + std::to_string(i + 1);
        if (!list.addColumn({textFromUtf8(name), Kind::Character, 0, 0})) break;
      }
    }
    if (!std::exchange(first, false) || !header) {
      const std::size_t line = list.addLine();
      if (line == 0) return;
      for (std::size_t i = 0; i < std::min(fields.size(), list.columnCount()); ++i) {
        list.set(line, i + 1, Value::utf8(fields[i]));
      }
    }
  }
}

std::string writeCsv(const List& list, bool header, char separator) {
  std::string text;
  const auto addLine = [&](auto&& fieldOf) {
    for (std::size_t i = 1; i <= list.columnCount(); ++i) {
      if (i > 1) text += separator;
      addField(text, fieldOf(i), separator);
    }
    text += '\n';
  };
  if (header) addLine([&](std::size_t i) { return utf8FromText(list.column(i).name); });
  for (std::size_t line = 1; line <= list.lineCount(); ++line) {
    addLine([&](std::size_t i) { return list.at(line, i).toUtf8(); });
  }
  return text;
}

}  // namespace rubrica::simhost
