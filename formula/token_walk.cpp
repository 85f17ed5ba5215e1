#include "formula/token_walk.h"

#include <array>

#include "engine/xlerror.h"
#include "formula/ptg.h"

namespace rubrica::formula {
namespace {

constexpr std::int8_t unknown = -1;

// Payload bytes of every base token whose length is fixed.
constexpr auto payloadLengths = [] {
  std::array<std::int8_t, 0x40> length{};
  for (std::int8_t& value : length) value = unknown;
  for (std::size_t plain = ptg::Add; plain <= ptg::MissArg; ++plain) length[plain] = 0;
  length[ptg::Exp] = length[ptg::Tbl] = 4;
  length[ptg::Err] = length[ptg::Bool] = 1;
  length[ptg::Int] = 2;
  length[ptg::Num] = 8;
  length[ptg::Array] = 7;
  length[ptg::Func] = 2;
  length[ptg::FuncVar] = 3;
  length[ptg::Name] = 4;
  length[ptg::Ref] = length[ptg::RefErr] = length[ptg::RefN] = 4;
  length[ptg::Area] = length[ptg::AreaErr] = length[ptg::AreaN] = 8;
  length[ptg::MemArea] = length[ptg::MemErr] = length[ptg::MemNoMem] = 6;
  length[ptg::MemFunc] = 2;
  length[ptg::NameX] = 6;
  length[ptg::Ref3d] = length[ptg::RefErr3d] = 6;
  length[ptg::Area3d] = length[ptg::AreaErr3d] = 10;
  return length;
}();

std::size_t checked(std::span<const std::uint8_t> rest, std::size_t length) {
  if (rest.size() < length) throw xlerror("GetFormula move1 error");
  return length;
}

std::size_t stringLength(std::span<const std::uint8_t> rest) {
  constexpr std::size_t header = 3;
  checked(rest, header);
  const std::size_t count = rest[1];
  const bool wide = (rest[2] & 1) != 0;
  return checked(rest, header + (wide ? 2 * count : count));
}

std::size_t extendedLength(std::span<const std::uint8_t> rest) {
  checked(rest, 2);
  switch (rest[1]) {
    case 1:
    case 2:
    case 3:
    case 6:
    case 7:
    case 10:
    case 11:
    case 13:
    case 15:
    case 16:
    case 29:
      return checked(rest, 7);
    default:
      throw xlerror("unknown Ptg 0x18");
  }
}

// The jump table of "choose" is read with one byte and a 16-bit count before it and one byte an entry: a stream that
// has the published table, of two-byte entries, doesn't come through whole.
std::size_t attrLength(std::span<const std::uint8_t> rest) {
  checked(rest, 2);
  switch (rest[1]) {
    case attr::Volatile:
    case attr::If:
    case attr::Goto:
    case attr::Sum:
    case attr::Space:
      return checked(rest, 4);
    case attr::Choose: {
      constexpr std::size_t header = 5;
      checked(rest, header);
      const std::size_t count = rest[3] | static_cast<std::size_t>(rest[4]) << 8;
      return checked(rest, header + count + 1);
    }
    case attr::Assign:
    case attr::AssignVolatile:
    case attr::SpaceVolatile:
      return checked(rest, 5);
    default:
      throw xlerror("unknown Ptg 0x19");
  }
}

}  // namespace

std::size_t tokenLength(std::span<const std::uint8_t> rest) {
  const std::uint8_t first = rest[0];
  if (first == ptg::Str) return stringLength(rest);
  if (first == ptg::Extended) return extendedLength(rest);
  if (first == ptg::Attr) return attrLength(rest);
  const std::int8_t payload = first < kFirstByteEnd ? payloadLengths[baseToken(first)] : unknown;
  if (payload == unknown) throw xlerror("can't recognize formula block: unknown ptg");
  return checked(rest, 1 + static_cast<std::size_t>(payload));
}

bool TokenWalk::next(Token& token) {
  const auto rest = _tokens.subspan(_position);
  if (rest.empty()) return false;
  token.offset = _position;
  token.bytes = rest.first(tokenLength(rest));
  _position += token.bytes.size();
  return true;
}

void FormulaBlock::takeFrom(ByteStream& stream) {
  _bytes.clear();
  if (!stream.empty()) stream.moveTo(_bytes, tokenLength(stream.bytes()));
}

}  // namespace rubrica::formula
