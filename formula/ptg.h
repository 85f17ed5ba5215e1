// The first bytes of the tokens ("Ptg") in a parsed expression, and the values that stand inside tokens. Used by
// everything that reads or writes formula bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "engine/address.h"

namespace rubrica::formula {

namespace ptg {

// Operand and function tokens are named by their reference class form; value and array forms lie 0x20 and 0x40 higher.
enum : std::uint8_t {
  Exp = 0x01,
  Tbl = 0x02,
  Add = 0x03,
  Sub = 0x04,
  Mul = 0x05,
  Div = 0x06,
  Power = 0x07,
  Concat = 0x08,
  Lt = 0x09,
  Le = 0x0A,
  Eq = 0x0B,
  Ge = 0x0C,
  Gt = 0x0D,
  Ne = 0x0E,
  Isect = 0x0F,
  Union = 0x10,
  Range = 0x11,
  Uplus = 0x12,
  Uminus = 0x13,
  Percent = 0x14,
  Paren = 0x15,
  MissArg = 0x16,
  Str = 0x17,
  Extended = 0x18,
  Attr = 0x19,
  Err = 0x1C,
  Bool = 0x1D,
  Int = 0x1E,
  Num = 0x1F,
  Array = 0x20,
  Func = 0x21,
  FuncVar = 0x22,
  Name = 0x23,
  Ref = 0x24,
  Area = 0x25,
  MemArea = 0x26,
  MemErr = 0x27,
  MemNoMem = 0x28,
  MemFunc = 0x29,
  RefErr = 0x2A,
  AreaErr = 0x2B,
  RefN = 0x2C,
  AreaN = 0x2D,
  NameX = 0x39,
  Ref3d = 0x3A,
  Area3d = 0x3B,
  RefErr3d = 0x3C,
  AreaErr3d = 0x3D,
};

}  // namespace ptg

// What is added to the reference class form of an operand or function token.
inline constexpr std::uint8_t kValueClass = 0x20;
inline constexpr std::uint8_t kArrayClass = 0x40;

// First bytes from here on begin no token.
inline constexpr std::uint8_t kFirstByteEnd = 126;

// The token's name among the constants above, whatever its class.
constexpr std::uint8_t baseToken(std::uint8_t first) {
  return first < 0x20 ? first : static_cast<std::uint8_t>((first & 0x1F) | 0x20);
}

// Options of PtgAttr.
namespace attr {

enum : std::uint8_t {
  Volatile = 0x01,
  If = 0x02,
  Choose = 0x04,
  Goto = 0x08,
  Sum = 0x10,
  Assign = 0x20,
  AssignVolatile = 0x21,
  Space = 0x40,
  SpaceVolatile = 0x41,
};

}  // namespace attr

// The column word of a reference: the column and, set where a part is relative, two flags.
inline constexpr std::uint16_t kColumnBits = 0x3FFF;
inline constexpr std::uint16_t kColumnRelative = 0x4000;
inline constexpr std::uint16_t kRowRelative = 0x8000;

constexpr std::uint16_t columnWord(const CellAddress& address) {
  return static_cast<std::uint16_t>((address.col & kColumnBits) | (address.colRelative ? kColumnRelative : 0) |
                                    (address.rowRelative ? kRowRelative : 0));
}
CellAddress addressFromWords(std::uint16_t row, std::uint16_t columnWord);

// "#N/A" and its like. An unknown code or text gives nothing.
std::optional<std::u16string_view> errorText(std::uint8_t code);
std::optional<std::uint8_t> errorCode(std::u16string_view text);

// The code of a formula that begins with an error constant: such a formula's cached value is that error.
std::optional<std::uint8_t> leadingErrorCode(std::span<const std::uint8_t> tokens);

// What stands for a reference that leads nowhere.
inline constexpr std::u16string_view kRefErrorText = u"#REF!";

}  // namespace rubrica::formula
