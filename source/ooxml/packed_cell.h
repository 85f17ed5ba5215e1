// A worksheet cell in 32 bytes, since a sheet holds millions of them. `packed_cell` is everything that does not depend
// on the schema module; `cell_of` adds the formula, the inline string and the extension list of one module and makes
// the class c_CT_Cell of `sheet` and of `strict`. Rows own their cells; a cell belongs to one thread at a time.
//
//   offset  0  vtable
//           8  word: bits 0 to 20 row (zero-based), 27 `s` present, 28 reference present, 29 to 31 `t`
//          12  style index `s`
//          16  column (zero-based)
//          18  form of the value, see value_form
//          19  13 bytes: the value's text, or its characters at four bits each, the lower half first, when all occur in
//              numbers; or, from 24 on, the address of longer texts or of what few cells have
//
// A formula without attributes is kept as the text that it is, beside the value (packed_texts.h), and becomes an object
// when somebody asks for one. Formulas with attributes, inline strings, `cm`, `vm`, `ph` and extension lists stand in a
// record of their own, which then has the texts too.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "lmx/descriptor.h"
#include "source/ooxml/packed_texts.h"

namespace rubrica::ooxml {

// The `t` of a cell, by the number that stands in its word. Dates exist in the strict module only.
enum class cell_type : std::uint8_t { none, boolean, number, error, shared, text, inline_text, date };

// The token of a type: "b", "n", "e", "s", "str", "inlineStr", "d"; none gives "n", the schema's default.
std::string_view cellTypeToken(cell_type type);

class packed_cell : public lmx::object {
 public:
  // Long enough for every value that is kept at four bits a character.
  using value_buffer = std::array<char, 32>;

  void* field_base() override { return this; }

  std::uint32_t row() const { return _word & kRowMask; }
  std::uint16_t column() const { return _column; }
  void set_position(std::uint32_t row, std::uint16_t column) {
    _word = (_word & ~kRowMask) | (row & kRowMask) | kHasReference;
    _column = column;
  }

  // The reference as text. set_r answers false and leaves the cell without a reference when the text is no address.
  std::string get_r() const;
  bool set_r(std::string_view address);
  void unset_r() { _word &= ~(kHasReference | kRowMask); }
  bool isset_r() const { return (_word & kHasReference) != 0; }

  std::uint32_t get_s() const { return _style; }
  void set_s(std::uint32_t style) {
    _style = style;
    _word |= kHasStyle;
  }
  void unset_s();
  bool isset_s() const { return (_word & kHasStyle) != 0; }

  cell_type type() const { return static_cast<cell_type>(_word >> kTypeShift); }
  void set_type(cell_type type) {
    constexpr std::uint32_t kBelowType = (1U << kTypeShift) - 1;
    _word = (_word & kBelowType) | static_cast<std::uint32_t>(type) << kTypeShift;
  }
  std::string_view get_t() const { return cellTypeToken(type()); }
  bool set_t(std::string_view token);  // false, with nothing changed, for a text that is no token
  void unset_t() { set_type(cell_type::none); }
  bool isset_t() const { return type() != cell_type::none; }

  std::string get_v() const;
  // The value without a copy where that can be: the view is into the cell or into the buffer.
  std::string_view view_v(value_buffer& buffer) const;
  // Writes the value to `out`, where there is room for a value_buffer, and answers its end; null when the cell isn't
  // plain. `is_numeric` tells that it consists of characters of numbers alone; false says nothing.
  char* put_v(char* out, bool& is_numeric) const;
  void set_v(std::string_view text);
  void unset_v();
  // Whether the value is kept as what numbers are made of; false says nothing.
  bool is_numeric() const { return is_plain() && _form > 1 + kShort; }
  bool isset_v() const { return is_plain() ? _form != kNoValue : find_texts() && find_texts()->value(); }

  // The formula, as long as it is text alone; nothing when it is an object, or there is none.
  optional_text view_f() const { return find_texts() ? find_texts()->formula() : std::nullopt; }
  // Makes this text the formula, with no attributes.
  void set_f(std::string_view text);

  // Leaves the reference and the style, and nothing else.
  void unset_content() {
    unset_t();
    drop_beside();
  }
  // Whether there is nothing but attributes `r`, `s` and `t` and a short value.
  bool is_plain() const { return _form < kTexts; }
  // Whether there is nothing but these attributes, a value and a formula that is text alone.
  bool is_text() const { return _form <= kTexts; }

  std::uint32_t get_cm() const { return find_extra() ? find_extra()->cm : 0; }
  void set_cm(std::uint32_t index);
  void unset_cm();
  bool isset_cm() const { return find_extra() && find_extra()->has_cm; }
  std::uint32_t get_vm() const { return find_extra() ? find_extra()->vm : 0; }
  void set_vm(std::uint32_t index);
  void unset_vm();
  bool isset_vm() const { return find_extra() && find_extra()->has_vm; }
  bool get_ph() const { return find_extra() && find_extra()->ph; }
  void set_ph(bool shown);
  void unset_ph();
  bool isset_ph() const { return find_extra() && find_extra()->has_ph; }

 protected:
  // What few cells have.
  struct extra {
    extra() = default;
    extra(const extra& other);

    lmx::owned f;
    lmx::owned is;
    lmx::owned extLst;
    std::unique_ptr<packed_texts> texts;
    std::uint32_t cm = 0;
    std::uint32_t vm = 0;
    bool has_cm = false;
    bool has_vm = false;
    bool has_ph = false;
    bool ph = false;
  };

  packed_cell() = default;
  packed_cell(const packed_cell& other);
  packed_cell& operator=(const packed_cell& other);
  packed_cell(packed_cell&& other) noexcept : lmx::object(other) { take(other); }
  packed_cell& operator=(packed_cell&& other) noexcept {
    if (this == &other) return *this;
    drop_beside();
    take(other);
    return *this;
  }
  ~packed_cell() override { drop_beside(); }

  extra* find_extra() const { return _form == kExtra ? beside<extra>() : nullptr; }
  extra& need_extra();
  // A formula that is text alone goes; an object stays.
  void drop_f_text();

 private:
  static constexpr std::uint32_t kRowMask = (1U << 21U) - 1;
  static constexpr std::uint32_t kHasStyle = 1U << 27U;
  static constexpr std::uint32_t kHasReference = 1U << 28U;
  static constexpr unsigned kTypeShift = 29;

  // How the value stands in the cell: kNoValue, 1 + length for text of up to kShort bytes, the same for what is packed
  // because it is longer than that; or what stands beside the cell: kTexts or kExtra.
  static constexpr std::size_t kShort = 13;
  static constexpr std::size_t kMostPacked = 2 * kShort;
  static constexpr std::uint8_t kNoValue = 0;
  static constexpr std::uint8_t kTexts = 1 + kMostPacked + 1;
  static constexpr std::uint8_t kExtra = kTexts + 1;
  static constexpr std::size_t kAddressSize = sizeof(std::uintptr_t);
  static constexpr std::size_t kAddressAt = kShort - kAddressSize;  // aligned, as tools that look for leaks expect it

  template <class T>
  T* beside() const {
    T* address = nullptr;
    std::memcpy(&address, _text.data() + kAddressAt, kAddressSize);
    return address;
  }
  template <class T>
  void hold(std::uint8_t form, std::unique_ptr<T> held) {
    T* const address = held.release();
    std::memcpy(_text.data() + kAddressAt, &address, kAddressSize);
    _form = form;
  }
  packed_texts* find_texts() const {
    if (is_plain()) return nullptr;
    return _form == kTexts ? beside<packed_texts>() : beside<extra>()->texts.get();
  }
  // What stands beside the cell as texts alone, which the cell then has no longer.
  std::unique_ptr<packed_texts> take_texts();
  void put_texts(optional_text value, optional_text formula);
  bool set_short(std::string_view text);
  bool set_numeric(std::string_view text);
  // Leaves no value either.
  void drop_beside() {
    if (!is_plain()) destroy_beside();
    _form = kNoValue;
  }
  void destroy_beside();
  // Everything of the other one, which is left without value and extra.
  void take(packed_cell& other) noexcept {
    _word = other._word;
    _style = other._style;
    _column = other._column;
    _text = other._text;
    _form = std::exchange(other._form, kNoValue);
  }

  std::uint32_t _word = 0;
  std::uint32_t _style = 0;
  std::uint16_t _column = 0;
  std::uint8_t _form = kNoValue;
  std::array<char, kShort> _text = {};
};

// Self is the module's c_CT_Cell. The other types may be incomplete here; whoever uses a member that returns one
// includes the module's header.
template <class Self, class Worker, class Formula, class Rst, class Extensions>
class cell_of : public packed_cell {
 public:
  using c_f = Formula;

  lmx::object* clone() const override { return new Self(static_cast<const Self&>(*this)); }

  using packed_cell::set_f;
  Formula& get_f();
  // The formula's object; null for a formula that is text alone (view_f) as well as for none.
  Formula* find_full_f() { return find_extra() ? find_extra()->f.template as<Formula>() : nullptr; }
  const Formula* find_full_f() const { return find_extra() ? find_extra()->f.template as<Formula>() : nullptr; }
  bool isset_f() const { return !is_plain() && (find_full_f() || view_f()); }
  void set_f(const Formula& formula) {
    need_extra().f.reset(formula.clone());
    drop_f_text();
  }
  void unset_f() {
    if (find_extra()) find_extra()->f.reset();
    drop_f_text();
  }

  Rst& get_is() { return need_extra().is.template need<Rst>(); }
  Rst* find_is() { return find_extra() ? find_extra()->is.template as<Rst>() : nullptr; }
  const Rst* find_is() const { return find_extra() ? find_extra()->is.template as<Rst>() : nullptr; }
  bool isset_is() const { return find_extra() && find_extra()->is; }
  void set_is(const Rst& text) { need_extra().is.reset(text.clone()); }
  void unset_is() {
    if (find_extra()) find_extra()->is.reset();
  }

  Extensions& get_extLst() { return need_extra().extLst.template need<Extensions>(); }
  Extensions* find_extLst() { return find_extra() ? find_extra()->extLst.template as<Extensions>() : nullptr; }
  const Extensions* find_extLst() const {
    return find_extra() ? find_extra()->extLst.template as<Extensions>() : nullptr;
  }
  bool isset_extLst() const { return find_extra() && find_extra()->extLst; }
  void unset_extLst() {
    if (find_extra()) find_extra()->extLst.reset();
  }

  // From the described form of the type and back. A reference that is no address is dropped.
  void pack(const Worker& worker);
  void unpack(Worker& worker) const;
};

template <class Self, class Worker, class Formula, class Rst, class Extensions>
Formula& cell_of<Self, Worker, Formula, Rst, Extensions>::get_f() {
  if (const optional_text text = view_f()) {
    Formula full;
    full.set_value(std::string(*text));
    set_f(full);
  }
  return need_extra().f.template need<Formula>();
}

template <class Self, class Worker, class Formula, class Rst, class Extensions>
void cell_of<Self, Worker, Formula, Rst, Extensions>::pack(const Worker& worker) {
  if (worker.isset_r()) set_r(worker.get_r());
  if (worker.isset_s()) set_s(worker.get_s());
  if (worker.isset_t()) set_t(worker.get_t());
  if (worker.isset_cm()) set_cm(worker.get_cm());
  if (worker.isset_vm()) set_vm(worker.get_vm());
  if (worker.isset_ph()) set_ph(worker.get_ph());
  if (worker.isset_v()) set_v(worker.get_v());
  if (worker.isset_f()) set_f(*worker.find_f());
  if (worker.isset_is()) set_is(*worker.find_is());
  if (worker.isset_extLst()) need_extra().extLst.reset(worker.find_extLst()->clone());
}

template <class Self, class Worker, class Formula, class Rst, class Extensions>
void cell_of<Self, Worker, Formula, Rst, Extensions>::unpack(Worker& worker) const {
  if (isset_r()) worker.set_r(get_r());
  if (isset_s()) worker.set_s(get_s());
  if (isset_t()) worker.set_t(std::string(get_t()));
  if (isset_cm()) worker.set_cm(get_cm());
  if (isset_vm()) worker.set_vm(get_vm());
  if (isset_ph()) worker.set_ph(get_ph());
  if (isset_v()) worker.set_v(get_v());
  if (const optional_text formula = view_f()) worker.get_f().set_value(std::string(*formula));
  if (const Formula* formula = find_full_f()) worker.set_f(*formula);
  if (isset_is()) worker.set_is(*find_is());
  if (isset_extLst()) worker.set_extLst(*find_extLst());
}

}  // namespace rubrica::ooxml
