#include "formula/byte_stream.h"

#include <gtest/gtest.h>

#include "tests/formula/fake_book.h"

namespace rubrica::formula {
namespace {

TEST(ByteStream, PushesLowByteFirst) {
  ByteStream stream;
  stream.pushByte(0xAB);
  stream.pushInt16(0x1234);
  stream.pushInt32(0x89ABCDEF);
  stream.pushDouble(1.0);
  EXPECT_EQ(hex(stream.bytes()), "AB 34 12 EF CD AB 89 00 00 00 00 00 00 F0 3F");
}

TEST(ByteStream, PopsWhatWasPushedFromTheFront) {
  ByteStream stream;
  stream.pushByte(7);
  stream.pushInt16(65535);
  stream.pushInt32(4000000000u);
  stream.pushDouble(-0.1);
  EXPECT_EQ(stream.size(), 15u);
  EXPECT_EQ(stream.popByte(), 7);
  EXPECT_EQ(stream.popInt16(), 65535);
  EXPECT_EQ(stream.popInt32(), 4000000000u);
  EXPECT_EQ(stream.popDouble(), -0.1);
  EXPECT_TRUE(stream.empty());
}

TEST(ByteStream, APopOfTooFewBytesSaysWhichAndTakesNothing) {
  const Bytes seven(7, 1);
  ByteStream stream(seven);
  EXPECT_EQ(messageOf([&] { stream.popDouble(); }), "ByteStream::popDouble() error");
  EXPECT_EQ(stream.size(), 7u);
  stream.popInt32();
  EXPECT_EQ(messageOf([&] { stream.popInt32(); }), "ByteStream::popInt32() error");
  stream.popInt16();
  EXPECT_EQ(messageOf([&] { stream.popInt16(); }), "GetFormula move1 error");
  stream.popByte();
  EXPECT_EQ(messageOf([&] { stream.popByte(); }), "GetFormula move1 error");
}

TEST(ByteStream, MovesBytesFromFrontToBack) {
  const Bytes source = {1, 2, 3, 4};
  ByteStream from(source), to;
  to.pushByte(9);
  from.moveTo(to, 3);
  EXPECT_EQ(hex(to.bytes()), "09 01 02 03");
  EXPECT_EQ(hex(from.bytes()), "04");
  EXPECT_EQ(messageOf([&] { from.moveTo(to, 2); }), "GetFormula move1 error");
  EXPECT_EQ(hex(from.bytes()), "04");
}

TEST(ByteStream, PositionsCountFromTheFront) {
  const Bytes source = {1, 2, 3};
  ByteStream stream(source);
  stream.popByte();
  stream[1] = 30;
  EXPECT_EQ(std::as_const(stream)[0], 2);
  EXPECT_EQ(std::as_const(stream)[1], 30);
  EXPECT_EQ(messageOf([&] { stream[2] = 0; }), "invalid deque<T> subscript");
  EXPECT_EQ(messageOf([&] { static_cast<void>(std::as_const(stream)[2]); }), "invalid deque<T> subscript");
}

TEST(ByteStream, StaysAQueueThroughManyPushesAndPops) {
  ByteStream stream;
  std::uint32_t pushed = 0, popped = 0;
  for (int round = 0; round < 2000; ++round) {
    for (int i = 0; i < round % 7; ++i) stream.pushInt32(pushed++);
    for (int i = 0; i < round % 5 && !stream.empty(); ++i) ASSERT_EQ(stream.popInt32(), popped++);
  }
  EXPECT_EQ(stream.size(), 4 * (pushed - popped));
  while (!stream.empty()) ASSERT_EQ(stream.popInt32(), popped++);
  EXPECT_EQ(pushed, popped);
}

}  // namespace
}  // namespace rubrica::formula
