#include "source/ooxml/packed_cell.h"

#include <algorithm>
#include <cstring>
#include <tuple>

#include "source/ooxml/cell_address.h"

namespace rubrica::ooxml {

namespace {

constexpr std::array<std::string_view, 8> kTypeTokens = {"n", "b", "n", "e", "s", "str", "inlineStr", "d"};

// The characters that numbers are made of, by their four-bit codes.
constexpr std::string_view kNumberCharacters = "0123456789.-+Ee";
constexpr std::uint8_t kNoCode = 0xF0;  // any bit of the upper half

constexpr std::array<std::uint8_t, 256> makeNumberCodes() {
  std::array<std::uint8_t, 256> codes{};
  codes.fill(kNoCode);
  for (std::size_t i = 0; i < kNumberCharacters.size(); ++i) {
    codes[static_cast<unsigned char>(kNumberCharacters[i])] = static_cast<std::uint8_t>(i);
  }
  return codes;
}

constexpr std::array<std::uint8_t, 256> kNumberCodes = makeNumberCodes();

using Pair = std::array<char, 2>;

constexpr std::array<Pair, 256> makeNumberPairs() {
  std::array<Pair, 256> pairs{};
  for (unsigned i = 0; i < pairs.size(); ++i) {
    const auto character = [](unsigned code) {
      return code < kNumberCharacters.size() ? kNumberCharacters[code] : '0';
    };
    pairs[i] = {character(i & 0x0FU), character(i >> 4U)};
  }
  return pairs;
}

constexpr std::array<Pair, 256> kNumberPairs = makeNumberPairs();

unsigned numberCode(char c) {
  return kNumberCodes[static_cast<unsigned char>(c)];
}

}  // namespace

static_assert(sizeof(void*) != 8 || sizeof(packed_cell) == 32);

std::string_view cellTypeToken(cell_type type) {
  return kTypeTokens[static_cast<std::size_t>(type)];
}

packed_cell::extra::extra(const extra& other)
    : f(other.f),
      is(other.is),
      extLst(other.extLst),
      texts(other.texts ? other.texts->clone() : nullptr),
      cm(other.cm),
      vm(other.vm),
      has_cm(other.has_cm),
      has_vm(other.has_vm),
      has_ph(other.has_ph),
      ph(other.ph) {}

packed_cell::packed_cell(const packed_cell& other)
    : lmx::object(other),
      _word(other._word),
      _style(other._style),
      _column(other._column),
      _form(other.is_plain() ? other._form : kNoValue),
      _text(other._text) {
  if (other._form == kTexts) hold(kTexts, other.beside<packed_texts>()->clone());
  if (other._form == kExtra) hold(kExtra, std::make_unique<extra>(*other.find_extra()));
}

packed_cell& packed_cell::operator=(const packed_cell& other) {
  if (this == &other) return *this;
  auto texts = other._form == kTexts ? other.beside<packed_texts>()->clone() : nullptr;
  auto rest = other._form == kExtra ? std::make_unique<extra>(*other.find_extra()) : nullptr;
  drop_beside();
  _word = other._word;
  _style = other._style;
  _column = other._column;
  _text = other._text;
  if (other.is_plain()) _form = other._form;
  if (texts) hold(kTexts, std::move(texts));
  if (rest) hold(kExtra, std::move(rest));
  return *this;
}

packed_cell::extra& packed_cell::need_extra() {
  if (_form == kExtra) return *find_extra();
  auto made = std::make_unique<extra>();
  value_buffer buffer;
  if (_form == kTexts) {
    made->texts = take_texts();
  } else if (isset_v()) {
    made->texts = packed_texts::make(view_v(buffer), std::nullopt);
  }
  hold(kExtra, std::move(made));
  return *find_extra();
}

std::string packed_cell::get_r() const {
  std::string address;
  if (isset_r()) appendCellAddress(address, row(), column());
  return address;
}

bool packed_cell::set_r(std::string_view address) {
  std::uint32_t row = 0;
  std::uint16_t column = 0;
  if (!parseCellAddress(address, row, column)) {
    unset_r();
    return false;
  }
  set_position(row, column);
  return true;
}

void packed_cell::unset_s() {
  _style = 0;
  _word &= ~kHasStyle;
}

bool packed_cell::set_t(std::string_view token) {
  const auto found = std::find(kTypeTokens.begin() + 1, kTypeTokens.end(), token);
  if (found == kTypeTokens.end()) return false;
  set_type(static_cast<cell_type>(found - kTypeTokens.begin()));
  return true;
}

std::string packed_cell::get_v() const {
  value_buffer buffer;
  return std::string(view_v(buffer));
}

std::string_view packed_cell::view_v(value_buffer& buffer) const {
  if (_form == kNoValue) return {};
  if (!is_plain()) return find_texts() ? find_texts()->value().value_or("") : "";
  const auto size = static_cast<std::size_t>(_form - 1);
  if (!is_numeric()) return {_text.data(), size};
  bool numeric = false;
  put_v(buffer.data(), numeric);
  return {buffer.data(), size};
}

// Copies all that there may be, since a known count is faster than the right one.
char* packed_cell::put_v(char* out, bool& is_numeric) const {
  static_assert(std::tuple_size_v<value_buffer> >= kMostPacked);
  if (!is_plain()) return nullptr;
  is_numeric = this->is_numeric();
  if (!is_numeric) {
    std::memcpy(out, _text.data(), kShort);
    return _form == kNoValue ? out : out + (_form - 1);
  }
  for (std::size_t i = 0; i < kShort; ++i) {
    std::memcpy(out + 2 * i, kNumberPairs[static_cast<unsigned char>(_text[i])].data(), sizeof(Pair));
  }
  return out + (_form - 1);
}

void packed_cell::set_v(std::string_view text) {
  if (is_plain()) {
    if (!set_short(text) && !set_numeric(text)) put_texts(text, std::nullopt);
    return;
  }
  if (!is_text() || view_f()) return put_texts(text, view_f());
  const std::unique_ptr<packed_texts> old = take_texts();  // stays as long as the text, which may be a piece of it
  set_v(text);
}

void packed_cell::set_f(std::string_view text) {
  value_buffer buffer;
  put_texts(isset_v() ? optional_text(view_v(buffer)) : std::nullopt, text);
  if (extra* const rest = find_extra()) rest->f.reset();
}

// The texts may be pieces of those that the cell has.
void packed_cell::put_texts(optional_text value, optional_text formula) {
  std::unique_ptr<packed_texts> made = packed_texts::make(value, formula);
  if (extra* const rest = find_extra()) {
    rest->texts = std::move(made);
    return;
  }
  drop_beside();
  hold(kTexts, std::move(made));
}

void packed_cell::destroy_beside() {
  if (_form == kTexts) {
    delete beside<packed_texts>();
  } else {
    delete beside<extra>();
  }
}

std::unique_ptr<packed_texts> packed_cell::take_texts() {
  std::unique_ptr<packed_texts> taken(beside<packed_texts>());
  _form = kNoValue;
  return taken;
}

void packed_cell::drop_f_text() {
  if (!view_f()) return;
  if (!is_text()) {
    find_texts()->drop_formula();
    return;
  }
  const std::unique_ptr<packed_texts> old = take_texts();
  if (const optional_text value = old->value()) set_v(*value);
}

bool packed_cell::set_short(std::string_view text) {
  if (text.size() > kShort) return false;
  std::array<char, kShort> copied{};  // the text may be a view of this cell's own value
  std::copy(text.begin(), text.end(), copied.begin());
  _text = copied;
  _form = static_cast<std::uint8_t>(1 + text.size());
  return true;
}

bool packed_cell::set_numeric(std::string_view text) {
  if (text.size() > kMostPacked) return false;
  std::array<char, kShort> packed;
  packed.fill(static_cast<char>(0xFF));
  unsigned seen = 0;
  const std::size_t pairs = text.size() / 2;
  for (std::size_t i = 0; i < pairs; ++i) {
    const unsigned low = numberCode(text[2 * i]);
    const unsigned high = numberCode(text[2 * i + 1]);
    seen |= low | high;
    packed[i] = static_cast<char>(low | high << 4U);
  }
  if (text.size() % 2 != 0) {
    const unsigned last = numberCode(text.back());
    seen |= last;
    packed[pairs] = static_cast<char>(last | 0xF0U);
  }
  if ((seen & kNoCode) != 0) return false;
  _text = packed;
  _form = static_cast<std::uint8_t>(1 + text.size());
  return true;
}

void packed_cell::unset_v() {
  if (view_f()) return put_texts(std::nullopt, view_f());
  if (extra* const rest = find_extra()) {
    rest->texts.reset();
  } else {
    drop_beside();
  }
}

void packed_cell::set_cm(std::uint32_t index) {
  need_extra().cm = index;
  need_extra().has_cm = true;
}

void packed_cell::unset_cm() {
  if (find_extra() == nullptr) return;
  find_extra()->cm = 0;
  find_extra()->has_cm = false;
}

void packed_cell::set_vm(std::uint32_t index) {
  need_extra().vm = index;
  need_extra().has_vm = true;
}

void packed_cell::unset_vm() {
  if (find_extra() == nullptr) return;
  find_extra()->vm = 0;
  find_extra()->has_vm = false;
}

void packed_cell::set_ph(bool shown) {
  need_extra().ph = shown;
  need_extra().has_ph = true;
}

void packed_cell::unset_ph() {
  if (find_extra() == nullptr) return;
  find_extra()->ph = false;
  find_extra()->has_ph = false;
}

}  // namespace rubrica::ooxml
