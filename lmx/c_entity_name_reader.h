// The places an entity reference may stand in, behind one small interface: the stream of characters, the buffered value
// of an attribute, the text of another entity, a plain string.
#pragma once

#include <cstddef>
#include <string_view>

namespace rubrica::lmx {

class c_entity_name_reader {
 public:
  virtual int get() = 0;  // -1 at the end
  virtual void unget(int c) = 0;
  virtual ~c_entity_name_reader() = default;

  // Whether the expansion may be pushed on the entity stack, to be read as part of the stream. Elsewhere it is
  // expanded in place.
  bool may_push() const { return _may_push; }

 protected:
  explicit c_entity_name_reader(bool may_push) : _may_push(may_push) {}

 private:
  bool _may_push;
};

class c_entity_name_reader_for_c_str : public c_entity_name_reader {
 public:
  explicit c_entity_name_reader_for_c_str(std::string_view text) : c_entity_name_reader(false), _text(text) {}
  int get() override { return _position == _text.size() ? -1 : static_cast<unsigned char>(_text[_position++]); }
  void unget(int) override { --_position; }

 private:
  std::string_view _text;
  std::size_t _position = 0;
};

// Text of these two kinds reads like any other string.
using c_entity_name_reader_for_attribute_data = c_entity_name_reader_for_c_str;
using c_entity_name_reader_for_entity = c_entity_name_reader_for_c_str;

}  // namespace rubrica::lmx
