// Cuts the bytes of a parsed expression into tokens by the length rules of the format. Used by the printer and by
// whoever looks for references in formulas; owns nothing, the bytes must outlive the walk.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "formula/byte_stream.h"

namespace rubrica::formula {

struct Token {
  std::size_t offset = 0;               // of the first byte, from the beginning of the expression
  std::span<const std::uint8_t> bytes;  // first byte included

  std::uint8_t first() const { return bytes[0]; }
  std::span<const std::uint8_t> payload() const { return bytes.subspan(1); }
};

// The length of the token at the front of `rest`, which isn't empty, first byte included. It is never more than what
// `rest` holds. Throws xlerror "can't recognize formula block: unknown ptg", "unknown Ptg 0x18", "unknown Ptg 0x19", or
// "GetFormula move1 error" when the token is cut off.
std::size_t tokenLength(std::span<const std::uint8_t> rest);

class TokenWalk {
 public:
  explicit TokenWalk(std::span<const std::uint8_t> tokens) : _tokens(tokens) {}

  // Sets `token` to the next one, or answers false at the end. Throws as tokenLength does.
  bool next(Token& token);

 private:
  std::span<const std::uint8_t> _tokens;
  std::size_t _position = 0;
};

// The bytes of one token as a queue, from which its fields are popped.
class FormulaBlock {
 public:
  // Moves the token at the front of `stream` here in place of what was here; an empty stream leaves an empty block.
  // Throws as tokenLength does.
  void takeFrom(ByteStream& stream);

  ByteStream& bytes() { return _bytes; }
  bool empty() const { return _bytes.empty(); }

 private:
  ByteStream _bytes;
};

}  // namespace rubrica::formula
