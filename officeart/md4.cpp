#include "officeart/md4.h"

namespace rubrica::officeart {
namespace {

constexpr std::size_t kBlock = 64;
using State = std::array<std::uint32_t, 4>;

// One round: 16 steps, each over the word at `order` with the shift of its place in a group of four.
template <class Mix>
void round(State& s, const std::array<std::uint32_t, 16>& words, const std::array<std::uint8_t, 16>& order,
           const std::array<int, 4>& shifts, std::uint32_t constant, Mix mix) {
  for (std::size_t i = 0; i < 16; ++i) {
    const std::uint32_t sum = s[0] + mix(s[1], s[2], s[3]) + words[order[i]] + constant;
    s = {s[3], std::rotl(sum, shifts[i % 4]), s[1], s[2]};
  }
}

void digestBlock(State& state, const std::byte* block) {
  std::array<std::uint32_t, 16> words;
  std::memcpy(words.data(), block, kBlock);
  using Word = std::uint32_t;
  State s = state;
  round(s, words, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}, {3, 7, 11, 19}, 0,
        [](Word x, Word y, Word z) { return (x & y) | (~x & z); });
  round(s, words, {0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15}, {3, 5, 9, 13}, 0x5A827999,
        [](Word x, Word y, Word z) { return (x & y) | (x & z) | (y & z); });
  round(s, words, {0, 8, 4, 12, 2, 10, 6, 14, 1, 9, 5, 13, 3, 11, 7, 15}, {3, 9, 11, 15}, 0x6ED9EBA1,
        [](Word x, Word y, Word z) { return x ^ y ^ z; });
  for (std::size_t i = 0; i < state.size(); ++i) state[i] += s[i];
}

}  // namespace

std::array<std::byte, 16> md4(ByteView bytes) {
  State state = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476};
  const std::uint64_t bits = std::uint64_t{bytes.size()} * 8;
  for (; bytes.size() >= kBlock; bytes = bytes.subspan(kBlock)) digestBlock(state, bytes.data());
  // A set bit, zeros, and the length in bits fill one block or two.
  std::array<std::byte, 2 * kBlock> end{};
  if (!bytes.empty()) std::memcpy(end.data(), bytes.data(), bytes.size());
  end[bytes.size()] = std::byte{0x80};
  const std::size_t size = bytes.size() + 1 + sizeof(bits) <= kBlock ? kBlock : 2 * kBlock;
  std::memcpy(end.data() + size - sizeof(bits), &bits, sizeof(bits));
  for (std::size_t at = 0; at < size; at += kBlock) digestBlock(state, end.data() + at);
  return std::bit_cast<std::array<std::byte, 16>>(state);
}

}  // namespace rubrica::officeart
