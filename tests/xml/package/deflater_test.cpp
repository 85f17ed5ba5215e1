// Texts that are compressed in pieces: one stream, whatever the number and the size of the pieces.
#include "xml/deflater.h"

#include <algorithm>
#include <ostream>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace rubrica {
namespace {

constexpr std::size_t kPiece = Deflater::kPiece;

std::string cellsOf(std::size_t size) {
  std::string text;
  text.reserve(size + 64);
  for (std::size_t i = 0; text.size() < size; ++i) {
    text += "<c r=\"A" + std::to_string(i) + "\"><v>" + std::to_string(i * 7919) + "</v></c>";
  }
  text.resize(size);
  return text;
}

std::string noiseOf(std::size_t size) {
  std::mt19937 random(7);
  std::string text(size, '\0');
  for (char& c : text) c = static_cast<char>(random());
  return text;
}

DeflatedText deflated(Deflater& deflater, const std::string& text, std::size_t step) {
  std::ostream stream(&deflater);
  for (std::size_t at = 0; at < text.size(); at += step) {
    stream.write(text.data() + at, static_cast<std::streamsize>(std::min(step, text.size() - at)));
  }
  EXPECT_TRUE(stream.good());
  return deflater.finish();
}

std::string streamOf(const DeflatedText& text) {
  std::string stream;
  for (const ByteBlock& piece : text.pieces) stream += piece.view();
  return stream;
}

void expectWhole(const std::string& text, const DeflatedText& compressed, std::size_t pieces) {
  EXPECT_EQ(compressed.pieces.size(), pieces) << text.size();
  EXPECT_EQ(compressed.size, text.size());
  EXPECT_EQ(compressed.crc, crc32Of(text));
  const std::string stream = streamOf(compressed);
  EXPECT_EQ(compressed.compressedSize, stream.size());
  std::string back(text.size(), '?');
  EXPECT_TRUE(Inflater().expand(stream, {back.data(), back.size()})) << text.size();
  EXPECT_TRUE(back == text) << text.size();
}

std::string zerosOf(std::size_t size) {
  return std::string(size, '\0');
}

struct TextKind {
  const char* name;
  std::string (*ofSize)(std::size_t size);
};
// What compresses well ends in blocks of codes, what doesn't in stored ones.
constexpr TextKind kTextKinds[] = {{"Cells", &cellsOf}, {"Noise", &noiseOf}, {"Zeros", &zerosOf}};

class DeflatedTexts : public testing::TestWithParam<TextKind> {};

TEST_P(DeflatedTexts, InflateToWhatWasWrittenWhereverTheyEnd) {
  Deflater deflater;
  const struct {
    std::size_t size, pieces;
  } cases[] = {{0, 1},          {1, 1},          {kPiece - 1, 1},     {kPiece, 1},
               {kPiece + 1, 2}, {2 * kPiece, 2}, {2 * kPiece + 1, 3}, {7 * kPiece + 12345, 8}};
  for (const auto& [size, pieces] : cases) {
    const std::string text = GetParam().ofSize(size);
    expectWhole(text, deflated(deflater, text, text.size() + 1), pieces);
  }
}

TEST_P(DeflatedTexts, AreTheSameHoweverTheyAreWritten) {
  Deflater deflater;
  const std::string text = GetParam().ofSize(2 * kPiece + 4321);
  const std::string whole = streamOf(deflated(deflater, text, text.size()));
  for (const std::size_t step : {std::size_t{997}, std::size_t{65536}, kPiece, kPiece + 1}) {
    EXPECT_TRUE(streamOf(deflated(deflater, text, step)) == whole) << step;
  }
}

INSTANTIATE_TEST_SUITE_P(Texts, DeflatedTexts, testing::ValuesIn(kTextKinds),
                         [](const auto& kind) { return std::string(kind.param.name); });

// The last block of a piece may end at any bit of its last byte.
TEST(Deflater, JoinsPiecesThatEndAtAnyBit) {
  Deflater deflater;
  for (std::size_t i = 0; i < 40; ++i) {
    std::string text = std::string(kPiece - 3000, ' ') + noiseOf(100 + i) + cellsOf(3000);
    expectWhole(text, deflated(deflater, text, text.size()), 2);
  }
}

TEST(Deflater, MarksNoBlockButTheLastAsTheLast) {
  Deflater deflater;
  const std::string text = cellsOf(3 * kPiece);
  const DeflatedText compressed = deflated(deflater, text, text.size());
  std::string back(text.size(), '?');
  std::string stream = streamOf(compressed);
  stream.resize(stream.size() - compressed.pieces.back().size);
  EXPECT_FALSE(Inflater().expand(stream, {back.data(), 2 * kPiece})) << "a stream ends before its last piece";
}

TEST(Deflater, MakesTextsInPiecesHardlyLonger) {
  Deflater deflater;
  const std::string text = cellsOf(4 * kPiece);
  const std::size_t inPieces = streamOf(deflated(deflater, text, text.size())).size();
  EXPECT_LT(inPieces, 4 * streamOf(deflated(deflater, cellsOf(kPiece), kPiece)).size() * 102 / 100);
}

}  // namespace
}  // namespace rubrica
