#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/compound/compound_builder.h"

namespace rubrica::compound_test {
namespace {

TEST(XlsWriting, ALargeStreamComesBackAsItWasWritten) {
  const Bytes content = pattern(100'000);
  const Bytes file = writtenFile(content);
  Xls xls;
  xls.read(file);
  Bytes back(content.size());
  EXPECT_EQ(xls.read(back.data(), back.size()), back.size());
  EXPECT_EQ(back, content);
  EXPECT_FALSE(xls.isEnd());
}

}  // namespace
}  // namespace rubrica::compound_test
