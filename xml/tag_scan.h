// The tags of XML text, one after the other, with where they stand: for parts that are kept as text and changed at a
// few places. Nothing is checked and no tag has to be closed, since VML isn't always well-formed. Used by carried_moves
// and by the tools that look into packages; endOfTag by all that walk a part as text.
#pragma once

#include <cstddef>
#include <string_view>

namespace rubrica {

struct ScannedTag {
  enum class Kind { start, end, empty };  // <a>, </a>, <a/>

  Kind kind = Kind::start;
  std::size_t begin = 0, end = 0;     // of the whole tag in the text
  std::string_view name, attributes;  // the name with its prefix; all between it and the end of the tag

  std::string_view local() const { return name.substr(name.find(':') + 1); }
  // The value as it is written, of the first attribute of that name; null when there is none.
  const char* findAttribute(std::string_view attribute, std::size_t& size) const;
  // The same, empty where there is none.
  std::string_view attribute(std::string_view wanted) const;
};

// One past the ">" that ends the tag in which `position` stands, outside of quotes; npos where none does.
std::size_t endOfTag(std::string_view text, std::size_t position);

class TagScan {
 public:
  explicit TagScan(std::string_view text) : _text(text) {}
  // The next tag; comments, CDATA sections, instructions and document types are passed over. False at the end, or at a
  // tag that doesn't end.
  bool next(ScannedTag& tag);

 private:
  bool passOther(std::size_t begin);

  std::string_view _text;
  std::size_t _position = 0;
};

}  // namespace rubrica
