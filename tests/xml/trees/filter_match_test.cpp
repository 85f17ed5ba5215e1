#include "xml/filter_match.h"

#include <gtest/gtest.h>

namespace rubrica {
namespace {

const FilterValue kBlank;

FilterValue text(const char16_t* value) {
  return FilterValue::of(std::u16string(value));
}

bool passes(FilterOperator op, const char16_t* wanted, const FilterValue& value) {
  return FilterRule::custom({{op, wanted}}, false).lets(value);
}

TEST(FilterRules, ListsLetTheirValuesThrough) {
  const FilterRule rule = FilterRule::list({u"Zürich", u"1.5", u"TRUE"}, false);
  EXPECT_TRUE(rule.lets(text(u"ZÜRICH")));
  EXPECT_FALSE(rule.lets(text(u"Zürich West")));
  EXPECT_TRUE(rule.lets(FilterValue::of(1.5)));
  EXPECT_FALSE(rule.lets(FilterValue::of(15)));
  EXPECT_TRUE(rule.lets(text(u"TRUE")));
  EXPECT_FALSE(rule.lets(kBlank));
  EXPECT_TRUE(FilterRule::list({}, true).lets(kBlank));
  EXPECT_FALSE(FilterRule::list({}, false).lets(text(u"a")));
  EXPECT_TRUE(FilterRule::list({u"1E1"}, false).lets(FilterValue::of(10)));
}

TEST(FilterRules, NumbersCompareAsNumbers) {
  EXPECT_TRUE(passes(FilterOperator::greaterThan, u"9", FilterValue::of(10)));
  EXPECT_FALSE(passes(FilterOperator::greaterThan, u"10", FilterValue::of(10)));
  EXPECT_TRUE(passes(FilterOperator::greaterThanOrEqual, u"10", FilterValue::of(10)));
  EXPECT_TRUE(passes(FilterOperator::lessThan, u"-1", FilterValue::of(-1.5)));
  EXPECT_TRUE(passes(FilterOperator::lessThanOrEqual, u"-1", FilterValue::of(-1)));
  EXPECT_TRUE(passes(FilterOperator::notEqual, u"5", FilterValue::of(6)));
  EXPECT_FALSE(passes(FilterOperator::greaterThan, u"9", text(u"abc"))) << "a text is no number";
  EXPECT_FALSE(passes(FilterOperator::greaterThan, u"9", kBlank));
  EXPECT_TRUE(passes(FilterOperator::notEqual, u"9", kBlank));
}

TEST(FilterRules, TextsCompareByTheirLetters) {
  EXPECT_TRUE(passes(FilterOperator::lessThan, u"banana", text(u"Apple")));
  EXPECT_FALSE(passes(FilterOperator::lessThan, u"apple", text(u"Apple")));
  EXPECT_TRUE(passes(FilterOperator::greaterThan, u"app", text(u"Apple")));
  EXPECT_FALSE(passes(FilterOperator::greaterThan, u"app", FilterValue::of(5)));
}

TEST(FilterRules, EqualityKnowsWildcards) {
  EXPECT_TRUE(passes(FilterOperator::equal, u"a*", text(u"Apple")));
  EXPECT_FALSE(passes(FilterOperator::notEqual, u"a*", text(u"Apple")));
  EXPECT_TRUE(passes(FilterOperator::equal, u"*ppl?", text(u"Apple")));
  EXPECT_FALSE(passes(FilterOperator::equal, u"a?e", text(u"Apple")));
  EXPECT_TRUE(passes(FilterOperator::equal, u"1*", FilterValue::of(125)));
}

TEST(FilterRules, AnEmptyValueMeansBlanks) {
  for (const char16_t* empty : {u"", u" "}) {
    EXPECT_TRUE(passes(FilterOperator::equal, empty, kBlank));
    EXPECT_FALSE(passes(FilterOperator::equal, empty, text(u"a")));
    EXPECT_TRUE(passes(FilterOperator::notEqual, empty, text(u"a")));
    EXPECT_FALSE(passes(FilterOperator::notEqual, empty, kBlank));
  }
}

TEST(FilterRules, TwoComparisonsAreJoined) {
  const std::vector<FilterRule::Comparison> both = {{FilterOperator::greaterThan, u"2"},
                                                    {FilterOperator::lessThan, u"5"}};
  EXPECT_TRUE(FilterRule::custom(both, true).lets(FilterValue::of(3)));
  EXPECT_FALSE(FilterRule::custom(both, true).lets(FilterValue::of(7)));
  EXPECT_TRUE(FilterRule::custom(both, false).lets(FilterValue::of(7)));
}

TEST(FilterRules, TheFirstAndTheLastAreCountedAmongNumbers) {
  std::vector<FilterValue> column = {text(u"x"), kBlank};
  for (int i = 1; i <= 10; ++i) column.push_back(FilterValue::of(i));
  const FilterRule first = FilterRule::top(3, true, false, column);
  EXPECT_TRUE(first.lets(FilterValue::of(8)));
  EXPECT_FALSE(first.lets(FilterValue::of(7)));
  EXPECT_FALSE(first.lets(text(u"x")));
  EXPECT_FALSE(first.lets(kBlank));
  const FilterRule last = FilterRule::top(20, false, true, column);
  EXPECT_TRUE(last.lets(FilterValue::of(2)));
  EXPECT_FALSE(last.lets(FilterValue::of(3)));
  EXPECT_TRUE(FilterRule::top(1, true, true, column).lets(FilterValue::of(10))) << "at least one";
  EXPECT_TRUE(FilterRule::top(500, true, false, column).lets(FilterValue::of(1)));
  EXPECT_FALSE(FilterRule::top(5, true, false, {}).lets(FilterValue::of(1)));
  column.push_back(FilterValue::of(8));
  EXPECT_TRUE(FilterRule::top(3, true, false, column).lets(FilterValue::of(8))) << "equal ones come together";
}

TEST(Patterns, MatchWholeTexts) {
  EXPECT_TRUE(matchesPattern(u"", u""));
  EXPECT_TRUE(matchesPattern(u"", u"*"));
  EXPECT_FALSE(matchesPattern(u"", u"?"));
  EXPECT_TRUE(matchesPattern(u"aXbXc", u"a*b*c"));
  EXPECT_FALSE(matchesPattern(u"abcd", u"a*c"));
  EXPECT_TRUE(matchesPattern(u"what?", u"what~?"));
  EXPECT_FALSE(matchesPattern(u"whatx", u"what~?"));
  EXPECT_TRUE(matchesPattern(u"a*b", u"a~*b"));
  EXPECT_TRUE(matchesPattern(u"a~", u"a~"));
  EXPECT_TRUE(matchesPattern(u"~b", u"~~b"));
  const std::u16string longText(20000, u'a'), hard = u"*a*a*a*a*a*a*a*a*b";
  EXPECT_FALSE(matchesPattern(longText, hard));
}

}  // namespace
}  // namespace rubrica
