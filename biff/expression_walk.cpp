#include "biff/expression_walk.h"

#include <array>
#include <cstring>

#include "biff/link_table.h"
#include "formula/ptg.h"

namespace rubrica {
namespace {

namespace ptg = formula::ptg;

// Bytes of every base token whose length is fixed, first byte included; 0 where there is none.
constexpr auto kLengths = [] {
  std::array<std::uint8_t, 0x40> length{};
  for (std::size_t plain = ptg::Add; plain <= ptg::MissArg; ++plain) length[plain] = 1;
  length[ptg::Exp] = length[ptg::Tbl] = 5;
  length[ptg::Extended] = 6;
  length[ptg::Err] = length[ptg::Bool] = 2;
  length[ptg::Int] = 3;
  length[ptg::Num] = 9;
  length[ptg::Array] = 8;
  length[ptg::Func] = 3;
  length[ptg::FuncVar] = 4;
  length[ptg::Name] = 5;
  length[ptg::Ref] = length[ptg::RefErr] = length[ptg::RefN] = 5;
  length[ptg::Area] = length[ptg::AreaErr] = length[ptg::AreaN] = 9;
  length[ptg::MemArea] = length[ptg::MemErr] = length[ptg::MemNoMem] = 7;
  length[ptg::MemFunc] = 3;
  length[ptg::NameX] = 7;
  length[ptg::Ref3d] = length[ptg::RefErr3d] = 7;
  length[ptg::Area3d] = length[ptg::AreaErr3d] = 11;
  return length;
}();

std::uint16_t wordAt(std::span<const std::uint8_t> bytes, std::size_t offset) {
  return static_cast<std::uint16_t>(bytes[offset] | bytes[offset + 1] << 8);
}

void putWord(std::span<std::uint8_t> bytes, std::size_t offset, std::uint32_t value) {
  bytes[offset] = static_cast<std::uint8_t>(value);
  bytes[offset + 1] = static_cast<std::uint8_t>(value >> 8);
}

// 0 for bytes that begin no token or end before it does.
std::size_t publishedLength(std::span<const std::uint8_t> rest) {
  std::size_t length = 0;
  if (rest[0] == ptg::Str) {
    constexpr std::size_t kHead = 3;
    if (rest.size() < kHead) return 0;
    length = kHead + rest[1] * ((rest[2] & 1) != 0 ? 2u : 1u);
  } else if (rest[0] == ptg::Attr) {
    constexpr std::size_t kHead = 4;
    if (rest.size() < kHead) return 0;
    const bool choose = (rest[1] & formula::attr::Choose) != 0;
    length = kHead + (choose ? 2 * (std::size_t{wordAt(rest, 2)} + 1) : 0);
  } else if (rest[0] < formula::kFirstByteEnd) {
    length = kLengths[formula::baseToken(rest[0])];
  }
  return length <= rest.size() ? length : 0;
}

// The same token as an error of its length and class.
void makeError(std::span<std::uint8_t> token, std::uint8_t base) {
  token[0] = static_cast<std::uint8_t>((token[0] & 0x60) | (base & 0x1F));
  std::memset(token.data() + 1, 0, token.size() - 1);
}

constexpr std::size_t kSheetWord = 1;  // offset of the ExternSheet index in the tokens that have one

bool renumberName(std::span<std::uint8_t> token, const NameMapping& mapping) {
  const std::uint32_t index = wordAt(token, 1) | std::uint32_t{wordAt(token, 3)} << 16;
  if (index == 0 || index > mapping.size() || mapping[index - 1] == index - 1) return false;
  const std::uint32_t renumbered = mapping[index - 1];
  if (renumbered == kNoName) {
    makeError(token, ptg::RefErr);
  } else {
    putWord(token, 1, renumbered + 1);
    putWord(token, 3, (renumbered + 1) >> 16);
  }
  return true;
}

bool renumberNameX(std::span<std::uint8_t> token, const NameMapping& mapping, const LinkTable& links) {
  constexpr std::size_t kNameWord = 3;
  const std::uint16_t index = wordAt(token, kNameWord);
  if (!links.isOwn(wordAt(token, kSheetWord)) || index == 0 || index > mapping.size()) return false;
  const std::uint32_t renumbered = mapping[index - 1u];
  if (renumbered + 1 == index) return false;
  if (renumbered == kNoName) {
    makeError(token, ptg::RefErr3d);
  } else {
    putWord(token, kNameWord, renumbered + 1);
  }
  return true;
}

}  // namespace

bool ExpressionWalk::next(formula::Token& token) {
  const auto rest = _tokens.subspan(_position);
  if (rest.empty()) return false;
  const std::size_t length = publishedLength(rest);
  if (length == 0) return false;
  token.offset = _position;
  token.bytes = rest.first(length);
  _position += length;
  return true;
}

bool renumberNames(std::span<std::uint8_t> tokens, const NameMapping& mapping, const LinkTable& links) {
  bool changed = false;
  ExpressionWalk walk(tokens);
  for (formula::Token token; walk.next(token);) {
    const auto bytes = tokens.subspan(token.offset, token.bytes.size());
    const std::uint8_t base = formula::baseToken(token.first());
    if (base == ptg::Name) changed = renumberName(bytes, mapping) || changed;
    if (base == ptg::NameX) changed = renumberNameX(bytes, mapping, links) || changed;
  }
  return changed;
}

bool redirectSheets(std::span<std::uint8_t> tokens, const std::function<std::uint16_t(std::uint16_t)>& target) {
  bool changed = false;
  ExpressionWalk walk(tokens);
  for (formula::Token token; walk.next(token);) {
    const std::uint8_t base = formula::baseToken(token.first());
    if (base != ptg::Ref3d && base != ptg::Area3d && base != ptg::RefErr3d && base != ptg::AreaErr3d) continue;
    const std::uint16_t present = wordAt(token.bytes, kSheetWord);
    const std::uint16_t wanted = target(present);
    if (wanted == present) continue;
    putWord(tokens, token.offset + kSheetWord, wanted);
    changed = true;
  }
  return changed;
}

}  // namespace rubrica
