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
//              numbers; or, from 24 on, the address of what few cells have (formula, inline string, long text, `cm`,
//              `vm`, `ph`, extension list), where the value then stands too
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "lmx/descriptor.h"

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
  bool isset_v() const { return is_plain() ? _form != kNoValue : find_extra()->has_v; }

  // Leaves the reference and the style, and nothing else.
  void unset_content() {
    unset_t();
    drop_extra();
    _form = kNoValue;
  }
  // Whether there is nothing but attributes `r`, `s` and `t` and a short value.
  bool is_plain() const { return _form != kExtra; }

  std::uint32_t get_cm() const { return is_plain() ? 0 : find_extra()->cm; }
  void set_cm(std::uint32_t index);
  void unset_cm();
  bool isset_cm() const { return !is_plain() && find_extra()->has_cm; }
  std::uint32_t get_vm() const { return is_plain() ? 0 : find_extra()->vm; }
  void set_vm(std::uint32_t index);
  void unset_vm();
  bool isset_vm() const { return !is_plain() && find_extra()->has_vm; }
  bool get_ph() const { return !is_plain() && find_extra()->ph; }
  void set_ph(bool shown);
  void unset_ph();
  bool isset_ph() const { return !is_plain() && find_extra()->has_ph; }

 protected:
  // What few cells have.
  struct extra {
    lmx::owned f;
    lmx::owned is;
    lmx::owned extLst;
    std::string v;
    std::uint32_t cm = 0;
    std::uint32_t vm = 0;
    bool has_v = false;
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
    drop_extra();
    take(other);
    return *this;
  }
  ~packed_cell() override { drop_extra(); }

  extra* find_extra() const {
    extra* found = nullptr;
    if (_form == kExtra) std::memcpy(&found, _text.data() + kExtraAt, sizeof(found));
    return found;
  }
  extra& need_extra();

 private:
  static constexpr std::uint32_t kRowMask = (1U << 21U) - 1;
  static constexpr std::uint32_t kHasStyle = 1U << 27U;
  static constexpr std::uint32_t kHasReference = 1U << 28U;
  static constexpr unsigned kTypeShift = 29;

  // How the value stands in the cell: kNoValue, 1 + length for text of up to kShort bytes, the same for what is packed
  // because it is longer than that, or kExtra.
  static constexpr std::size_t kShort = 13;
  static constexpr std::size_t kMostPacked = 2 * kShort;
  static constexpr std::uint8_t kNoValue = 0;
  static constexpr std::uint8_t kExtra = 1 + kMostPacked + 1;
  static constexpr std::size_t kExtraAt = kShort - sizeof(void*);  // aligned, as tools that look for leaks expect it

  bool set_numeric(std::string_view text);
  void drop_extra() {
    if (_form == kExtra) delete find_extra();
  }
  void hold(std::unique_ptr<extra> held);
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

  Formula& get_f() { return need_extra().f.template need<Formula>(); }
  Formula* find_f() { return find_extra() ? find_extra()->f.template as<Formula>() : nullptr; }
  const Formula* find_f() const { return find_extra() ? find_extra()->f.template as<Formula>() : nullptr; }
  bool isset_f() const { return find_extra() && find_extra()->f; }
  void set_f(const Formula& formula) { need_extra().f.reset(formula.clone()); }
  void unset_f() {
    if (find_extra()) find_extra()->f.reset();
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
  if (isset_f()) worker.set_f(*find_f());
  if (isset_is()) worker.set_is(*find_is());
  if (isset_extLst()) worker.set_extLst(*find_extLst());
}

}  // namespace rubrica::ooxml
