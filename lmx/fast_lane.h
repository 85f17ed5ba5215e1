// The fast lane of the reader: tags and text read where they stand in a block of UTF-8. It knows only what is plain;
// at anything rare it answers kRare without having moved, and the character layers read that event.
//
// Rare are: references and document types, comments, CDATA sections and instructions, carriage returns inside tags and
// text, the characters that count as line ends beyond LF, malformed UTF-8, and everything that is an error.
#pragma once

#include <string_view>
#include <vector>

#include "lmx/c_get_for_xml.h"

namespace rubrica::lmx {

class fast_lane {
 public:
  static constexpr int kRare = -1;

  void set_block(const char* begin, const char* end) {
    _position = begin;
    _end = end;
  }
  // Stands at `position`, from where line feeds are counted.
  void enter(const char* position) {
    _position = position;
    _counted = position;
    _lines = 0;
  }
  const char* position() const { return _position; }
  std::string_view rest() const { return {_position, static_cast<std::size_t>(_end - _position)}; }
  // Line feeds passed since enter().
  int passed_lines() const;

  void set_position(const char* position) { _position = position; }

  // The next start tag (7) with its name, attributes, declarations and end (4 or 6), end tag (6) with its name, or
  // text (5), before whose first character that is no white space it stops; kRare for all else.
  int next_event(std::string_view& name, std::vector<raw_attribute>& attributes,
                 std::vector<raw_attribute>& declarations, int& tag_end);
  bool at_end_tag() const { return _end - _position > 2 && _position[0] == '<' && _position[1] == '/'; }
  // With an end tag right here: its name if it is this one, else empty and nothing is passed.
  std::string_view pass_end_tag(std::string_view name) {
    const auto left = static_cast<std::size_t>(_end - _position);
    if (left < name.size() + 3) return {};
    const std::string_view found(_position + 2, name.size());
    if (found.data()[name.size()] != '>' || !same_name(found, name)) return {};
    _position += name.size() + 3;
    return found;
  }
  // The text up to the next tag, as it stands; false for what is rare. `has_reference` tells of an '&' in it, `plain`
  // that there is neither that nor white space.
  bool next_text(std::string_view& text, bool& has_reference, bool& plain);

 private:
  int read_start_tag(const char* p, std::string_view& name, std::vector<raw_attribute>& attributes,
                     std::vector<raw_attribute>& declarations, int& tag_end);
  int read_end_tag(const char* p, std::string_view& name);
  const char* skip_space(const char* p) const;
  const char* scan_name(const char* p) const;
  const char* scan_attribute(const char* p, raw_attribute& attribute) const;
  const char* scan_value(const char* p, raw_attribute& attribute) const;

  const char* _position = nullptr;
  const char* _end = nullptr;
  mutable const char* _counted = nullptr;  // line feeds before it are in _lines
  mutable int _lines = 0;
};

}  // namespace rubrica::lmx
