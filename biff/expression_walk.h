// Walks the tokens of a stored expression and rewrites what in them depends on the book: indexes of names and of
// ExternSheet entries. Used when names or sheets are added, copied or removed; owns nothing.
//
// Lengths are those of the published format, where every option of PtgAttr has two bytes and "choose" a table of 16-bit
// distances behind them. The printer's cutter reads PtgAttr by narrower rules and throws; this walk has to come through
// whatever a file holds, and stops where it meets bytes that are no token.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "formula/token_walk.h"

namespace rubrica {

class LinkTable;

class ExpressionWalk {
 public:
  explicit ExpressionWalk(std::span<const std::uint8_t> tokens) : _tokens(tokens) {}

  // Sets `token` to the next one; false at the end and before bytes that begin no whole token.
  bool next(formula::Token& token);
  // Whether nothing is left.
  bool atEnd() const { return _position == _tokens.size(); }

 private:
  std::span<const std::uint8_t> _tokens;
  std::size_t _position = 0;
};

inline constexpr std::uint32_t kNoName = 0xFFFFFFFF;
// By the old 0-based index of a name the new one, kNoName for a name that went.
using NameMapping = std::vector<std::uint32_t>;

// Gives the PtgName tokens, and the PtgNameX tokens over this book itself, their new indexes. A reference to a name
// that went becomes the error reference of the same length. Whether anything changed.
bool renumberNames(std::span<std::uint8_t> tokens, const NameMapping& mapping, const LinkTable& links);

// Gives the tokens with an ExternSheet index the one that `target` answers for it. Whether anything changed.
bool redirectSheets(std::span<std::uint8_t> tokens, const std::function<std::uint16_t(std::uint16_t)>& target);

}  // namespace rubrica
