// A string item in 24 bytes, since a table holds them by the hundred thousand and nearly all are one text and nothing
// else: that is kept as the text that it is, and becomes the described form of the type when somebody asks for that.
// `packed_string` is what does not depend on the schema module; `string_of` makes the class c_CT_Rst of
// `sharedStringTable`. The table owns its items; an item belongs to one thread at a time.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "lmx/descriptor.h"
#include "source/ooxml/packed_texts.h"

namespace rubrica::ooxml {

class packed_string : public lmx::object {
 public:
  void* field_base() override { return this; }

  // The text, as long as the item is text alone; nothing when it is in its described form, or empty.
  optional_text view_t() const { return _text ? _text->value() : std::nullopt; }
  // Makes this text, without attributes, all that the item has.
  void set_t(std::string_view text) {
    _text = packed_texts::make(text, std::nullopt);
    _full.reset();
  }

 protected:
  packed_string() = default;
  packed_string(const packed_string& other)
      : lmx::object(other), _text(other._text ? other._text->clone() : nullptr), _full(other._full) {}
  packed_string(packed_string&& other) noexcept = default;
  packed_string& operator=(const packed_string& other) {
    auto text = other._text ? other._text->clone() : nullptr;
    _full = other._full;
    _text = std::move(text);
    return *this;
  }
  packed_string& operator=(packed_string&& other) noexcept = default;
  ~packed_string() override = default;

  lmx::object* full() const { return _full.get(); }
  void set_full(std::unique_ptr<lmx::object> made) {
    _full.reset(made.release());
    _text.reset();
  }

 private:
  // One of the two, or neither.
  std::unique_ptr<packed_texts> _text;
  lmx::owned _full;
};

// Self is the module's c_CT_Rst, Worker the class generated from the type. The other types may be incomplete here.
template <class Self, class Worker, class Text, class Run>
class string_of : public packed_string {
 public:
  lmx::object* clone() const override { return new Self(static_cast<const Self&>(*this)); }

  // The described form, which has all members of the type. It is made when there is none yet.
  Worker& get_full() {
    if (full() == nullptr) set_full(std::make_unique<Worker>(unpacked()));
    return static_cast<Worker&>(*full());
  }
  const Worker* find_full() const { return static_cast<const Worker*>(full()); }

  using packed_string::set_t;
  Text& get_t() { return get_full().get_t(); }
  bool isset_t() const { return view_t() || (find_full() && find_full()->isset_t()); }

  std::size_t size_r() const { return find_full() ? find_full()->size_r() : 0; }
  Run& get_r(std::size_t index) { return get_full().get_r(index); }
  const Run& get_r(std::size_t index) const { return find_full()->get_r(index); }
  Run& append_r() { return get_full().append_r(); }

  // From the described form of the type and to it.
  void pack(Worker worker);
  Worker unpacked() const;
};

template <class Self, class Worker, class Text, class Run>
void string_of<Self, Worker, Text, Run>::pack(Worker worker) {
  const Text* const text = worker.find_t();
  const bool has_text = text != nullptr && text->isset_value() && !text->isset_xml_space();
  if (has_text && worker.size_r() == 0 && worker.size_rPh() == 0 && !worker.isset_phoneticPr()) {
    set_t(text->get_value());
  } else {
    set_full(std::make_unique<Worker>(std::move(worker)));
  }
}

template <class Self, class Worker, class Text, class Run>
Worker string_of<Self, Worker, Text, Run>::unpacked() const {
  if (find_full() != nullptr) return *find_full();
  Worker worker;
  if (view_t()) worker.get_t().set_value(std::string(*view_t()));
  return worker;
}

}  // namespace rubrica::ooxml
