#include "compound/write_buffer.h"

#include <gtest/gtest.h>

#include "tests/compound/compound_builder.h"

namespace rubrica::compound_test {
namespace {

constexpr const char* kStreamError = "stream error, perhaps it's too small writing buffer";

TEST(WriteBuffer, WritesOfAllSizesComeOutInOrder) {
  const Bytes content = pattern(3 * WriteBuffer::kCapacity + 77);
  for (const std::size_t piece :
       {std::size_t{1000}, WriteBuffer::kCapacity - 1, WriteBuffer::kCapacity, WriteBuffer::kCapacity + 1}) {
    platform::MemoryOutput output;
    WriteBuffer buffer;
    buffer.attach(&output, 0);
    for (std::size_t at = 0; at < content.size(); at += piece) {
      buffer.write(content.data() + at, std::min(piece, content.size() - at));
    }
    EXPECT_EQ(buffer.position(), content.size());
    buffer.flush();
    EXPECT_EQ(output.bytes(), content);
  }
}

TEST(WriteBuffer, PatchesReachBytesThatAreOutAndBytesThatAreNot) {
  Bytes content = pattern(WriteBuffer::kCapacity + 1000);
  platform::MemoryOutput output;
  WriteBuffer buffer;
  buffer.attach(&output, 0);
  buffer.write(content.data(), content.size());
  buffer.write("tail", 4);
  const std::uint64_t end = buffer.position();
  for (const std::size_t place : {std::size_t{5}, WriteBuffer::kCapacity, content.size() - 2, content.size() + 1}) {
    buffer.seek(place);
    buffer.write("##", 2);
    EXPECT_EQ(buffer.end(), end);
  }
  buffer.seek(end);
  buffer.write("!", 1);
  buffer.flush();
  for (const char c : {'t', 'a', 'i', 'l', '!'}) content.push_back(static_cast<std::byte>(c));
  for (const std::size_t place : {std::size_t{5}, WriteBuffer::kCapacity, std::size_t{WriteBuffer::kCapacity + 998},
                                  std::size_t{WriteBuffer::kCapacity + 1001}}) {
    content[place] = content[place + 1] = std::byte{'#'};
  }
  EXPECT_EQ(output.bytes(), content);
}

TEST(WriteBuffer, WithoutAnOutputEveryByteIsAnError) {
  WriteBuffer buffer;
  EXPECT_EQ(messageOf([&] { buffer.write("a", 1); }), kStreamError);
  EXPECT_EQ(messageOf([&] { buffer.flush(); }), "no failure");
}

}  // namespace
}  // namespace rubrica::compound_test
