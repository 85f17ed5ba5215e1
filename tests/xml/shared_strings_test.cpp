#include "xml/shared_strings.h"

#include "engine/xlerror.h"
#include "tests/xml/flavours.h"

namespace rubrica {
namespace {

template <class Tag>
class SharedStringsOf : public ::testing::Test {
 protected:
  using Strings = SharedStrings<Tag>;

  static Strings parse(std::string_view items) {
    const std::string text = partText<Tag>("sst", items);
    return Strings(text.data(), text.size());
  }
  static std::u16string textAt(const Strings& strings, std::size_t index) {
    std::u16string text;
    strings.get(index, text);
    return text;
  }
  static std::string saved(Strings& strings) {
    std::string text;
    strings.save(text);
    return text;
  }
};
TYPED_TEST_SUITE(SharedStringsOf, Flavours, FlavourNames);

TYPED_TEST(SharedStringsOf, EqualTextsShareAnItemAndCaseMatters) {
  SharedStrings<TypeParam> strings;
  EXPECT_EQ(strings.add(u"x"), 0u);
  EXPECT_EQ(strings.add(u"X"), 1u);
  EXPECT_EQ(strings.add(u"x"), 0u);
  EXPECT_EQ(strings.add(u""), 2u);
  EXPECT_EQ(strings.add(u""), 2u);
  EXPECT_EQ(strings.count(), 3u);
  EXPECT_EQ(this->textAt(strings, 1), u"X");
  EXPECT_EQ(this->textAt(strings, 2), u"");
}

TYPED_TEST(SharedStringsOf, RichTextReadsJoinedAndIsNeverFound) {
  auto strings = this->parse("<si><r><rPr><b/></rPr><t>a</t></r><r><t>b</t></r></si>");
  EXPECT_EQ(this->textAt(strings, 0), u"ab");
  EXPECT_EQ(strings.add(u"ab"), 1u);
  EXPECT_EQ(this->textAt(strings, 1), u"ab");
  EXPECT_NE(this->saved(strings).find("<r><t>b</t></r></si><si><t>ab</t></si>"), std::string::npos)
      << this->saved(strings);
}

TYPED_TEST(SharedStringsOf, PlainTextIsReadBeforeRuns) {
  const auto strings = this->parse("<si><t>plain</t><r><t>run</t></r></si><si/>");
  EXPECT_EQ(this->textAt(strings, 0), u"plain");
  EXPECT_EQ(this->textAt(strings, 1), u"");
}

TYPED_TEST(SharedStringsOf, DuplicatesOfAFileStayAndTheLastIsFound) {
  auto strings = this->parse("<si><t>a</t></si><si><t>b</t></si><si><t>a</t></si>");
  EXPECT_EQ(strings.count(), 3u);
  EXPECT_EQ(strings.add(u"a"), 2u);
  EXPECT_EQ(strings.add(u"b"), 1u);
  EXPECT_EQ(strings.add(u"c"), 3u);
  EXPECT_EQ(this->textAt(strings, 0), u"a");
}

TYPED_TEST(SharedStringsOf, TextsHaveAtMost32767Characters) {
  SharedStrings<TypeParam> strings;
  EXPECT_EQ(strings.add(std::u16string(32767, u'\u20AC')), 0u);
  EXPECT_THROW(strings.add(std::u16string(32768, u'a')), xlerror);
  try {
    strings.add(std::u16string(32768, u'a'));
  } catch (const xlerror& error) {
    EXPECT_STREQ(error.what(), "string is too long");
  }
  EXPECT_EQ(strings.count(), 1u);
}

TYPED_TEST(SharedStringsOf, AnEmptyTableBeginsAtPositionZero) {
  auto strings = this->parse("");
  EXPECT_EQ(strings.count(), 0u);
  EXPECT_EQ(strings.add(u"first"), 0u);
}

TYPED_TEST(SharedStringsOf, PositionsPastTheEndFail) {
  auto strings = this->parse("<si><t>a</t></si>");
  std::u16string text;
  for (const std::size_t index : {std::size_t{1}, std::size_t{4000000000}}) {
    try {
      strings.get(index, text);
      FAIL() << index;
    } catch (const xlerror& error) {
      EXPECT_STREQ(error.what(), "index is out of range or no value");
    }
  }
}

TYPED_TEST(SharedStringsOf, CountsAreRightAtSave) {
  auto strings = this->parse("<si><t>a</t></si>");
  strings.set_uniqueCount(17);
  strings.add(u"b");
  strings.setReferenceCount(5);
  EXPECT_NE(this->saved(strings).find("count=\"5\" uniqueCount=\"2\""), std::string::npos) << this->saved(strings);
}

TYPED_TEST(SharedStringsOf, OuterWhiteSpaceSurvivesASave) {
  SharedStrings<TypeParam> strings;
  for (const char16_t* text : {u" a", u"a\n", u"a b", u"\t", u"a\rb\x02", u"<&\">"}) strings.add(text);
  const std::string text = this->saved(strings);
  if (std::is_same_v<TypeParam, excelNormal_tag>) {
    EXPECT_NE(text.find("<t xml:space=\"preserve\"> a</t>"), std::string::npos) << text;
    EXPECT_NE(text.find("<t>a b</t>"), std::string::npos) << text;
  }
  const SharedStrings<TypeParam> again(text.data(), text.size());
  EXPECT_EQ(this->textAt(again, 0), u" a");
  EXPECT_EQ(this->textAt(again, 1), u"a\n");
  EXPECT_EQ(this->textAt(again, 3), u"\t");
  EXPECT_EQ(this->textAt(again, 4), u"a\rb\x02");
  EXPECT_EQ(this->textAt(again, 5), u"<&\">");
}

TYPED_TEST(SharedStringsOf, PhoneticTextAndExtensionsAreCarried) {
  auto strings = this->parse(
      "<si><t>a</t><rPh sb=\"0\" eb=\"1\"><t>ah</t></rPh><phoneticPr fontId=\"1\"/></si>"
      "<extLst><ext uri=\"{1}\"><x:y xmlns:x=\"urn:x\"/></ext></extLst>");
  const std::string text = this->saved(strings);
  EXPECT_NE(text.find("<t>ah</t>"), std::string::npos) << text;
  EXPECT_NE(text.find("phoneticPr fontId=\"1\""), std::string::npos) << text;
  EXPECT_NE(text.find("xmlns:x=\"urn:x\""), std::string::npos) << text;
}

TYPED_TEST(SharedStringsOf, ItemsAreCopiedToAnotherTableRunsAndAll) {
  auto source = this->parse("<si><r><rPr><b/></rPr><t>a</t></r></si><si><t>b</t></si>");
  SharedStrings<TypeParam> target;
  target.add(u"b");
  EXPECT_EQ(source.addCopyTo(target, 1), 0u);
  EXPECT_EQ(source.addCopyTo(target, 0), 1u);
  EXPECT_EQ(this->textAt(target, 1), u"a");
  EXPECT_EQ(target.add(u"a"), 2u) << "rich text is not found";
  EXPECT_THROW(source.addCopyTo(target, 2), xlerror);
}

TYPED_TEST(SharedStringsOf, ManyTextsKeepTheirPositions) {
  SharedStrings<TypeParam> strings;
  for (int round = 0; round < 2; ++round) {
    for (unsigned i = 0; i < 20000; ++i) ASSERT_EQ(strings.add(wide("text-" + std::to_string(i))), i);
  }
}

TYPED_TEST(SharedStringsOf, BytesThatAreNoPartFail) {
  EXPECT_THROW(SharedStrings<TypeParam>(nullptr, 0), xlerror);
  const std::string other = partText<TypeParam>("worksheet", "");
  EXPECT_THROW(SharedStrings<TypeParam>(other.data(), other.size()), xlerror);
}

}  // namespace
}  // namespace rubrica
