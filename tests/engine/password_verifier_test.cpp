#include "engine/password_verifier.h"

#include <gtest/gtest.h>

namespace rubrica {
namespace {

TEST(Passwords, AreKeptAsTheirVerifier) {
  EXPECT_EQ(passwordVerifier(u""), 0xCE4B);
  EXPECT_EQ(passwordVerifier(u"a"), 0xCE88);
  // The published example: the verifier of "abcdefghij" is 0xFEF1.
  EXPECT_EQ(passwordVerifier(u"abcdefghij"), 0xFEF1);
}

}  // namespace
}  // namespace rubrica
