// The middle character layer: expands entities and character references, and normalises the white space of values.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "lmx/c_entity_name_reader.h"
#include "lmx/c_get_as_utf8.h"
#include "lmx/c_repository.h"
#include "lmx/descriptor.h"

namespace rubrica::lmx {

// Appends characters to a value under a white-space mode. Collapsed white space becomes one blank before the next
// character that is none, so that nothing leads or trails.
class value_builder {
 public:
  void begin(std::string& out, white_space mode) {
    _out = &out;
    _mode = mode;
    _pending_space = false;
    out.clear();
  }
  void put(char c);
  // A character that is no white space, in all its bytes.
  void put_bytes(std::string_view bytes);

 private:
  std::string* _out = nullptr;
  white_space _mode = white_space::keep;
  bool _pending_space = false;
};

class c_get_with_entities : public c_get_as_utf8 {
 public:
  c_get_with_entities(c_read& source, c_error& errors, bool normalise_references)
      : c_get_as_utf8(source, errors), _normalise_references(normalise_references) {}

  // One byte of text, from the innermost entity or the source; -1 at the end.
  int get();
  void unget(int c);

  void define_general(std::string_view name, std::string value) { _general.enter(name, std::move(value)); }
  void define_parameter(std::string_view name, std::string value) { _parameter.enter(name, std::move(value)); }

  bool entities_open() const { return !_frames.empty(); }

  // A value out of raw text that stands outside the stream, such as an attribute's. False when a reference in it fails;
  // what could be made of it is in `value` all the same.
  bool expand_value(std::string_view raw, white_space mode, std::string& value);

 protected:
  // The reference behind an '&' of the stream, for the value under construction. False when it fails.
  bool read_stream_reference();
  // The number of a character reference behind "&#"; -1 when it is refused.
  long read_character_reference(c_entity_name_reader& in);
  // The expansion of %name; behind the '%': null, with a problem reported, when it is not known.
  const std::string* find_parameter(std::string_view name);
  // Makes an entity's text the next to be read. False on recursion and beyond the limits.
  bool push_entity(std::string_view name, const std::string& value, bool parameter);
  // Books `bytes` of expansion; false when the document has had enough.
  bool charge_expansion(std::size_t bytes);
  const std::string* find_general(std::string_view name) const { return _general.find(name); }

  value_builder& value() { return _value; }

 private:
  struct frame {
    std::string name;
    bool parameter;
    std::string text;
    std::size_t position = 0;
    push_back_stack push_back;
  };

  bool read_reference(c_entity_name_reader& in, std::size_t depth);
  bool expand_in_place(std::string_view name, const std::string& text, std::size_t depth);
  void put_referenced(std::uint32_t code_point);

  std::vector<frame> _frames;
  c_repository<std::string> _general;
  c_repository<std::string> _parameter;
  value_builder _value;
  std::size_t _expanded = 0;
  bool _normalise_references;
};

class c_entity_name_reader_for_c_get final : public c_entity_name_reader {
 public:
  explicit c_entity_name_reader_for_c_get(c_get_with_entities& stream) : c_entity_name_reader(true), _stream(stream) {}
  int get() override { return _stream.get(); }
  void unget(int c) override { _stream.unget(c); }

 private:
  c_get_with_entities& _stream;
};

// The character that a built-in entity names (lt, gt, amp, apos, quot); 0 for any other name.
char builtin_entity(std::string_view name);

}  // namespace rubrica::lmx
