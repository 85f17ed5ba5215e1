// The first stage of the compiler against the same grammar written out step by step on plain strings, each step with a
// pass of its own: slow, but with nothing to get wrong in fusing the passes. And the whole compiler against its second
// stage alone, which gets its operands as text and not as the first stage has read them.
#include <random>

#include <gtest/gtest.h>

#include "formula/characters.h"
#include "formula/compile.h"
#include "formula/function_table.h"
#include "formula/infix.h"
#include "formula/postfix.h"
#include "formula/ptg.h"
#include "formula/reference_text.h"
#include "tests/formula/fake_book.h"

namespace rubrica::formula {
namespace {

using Text = std::u16string;

struct Quotes {
  bool inText = false, inName = false;
  bool outside() const { return !inText && !inName; }
  void pass(char16_t c) {
    if (c == u'"' && !inName) inText = !inText;
    if (c == u'\'' && !inText) inName = !inName;
  }
};

Text takeToken(Text& rest) {
  Text token;
  Quotes quotes;
  while (!rest.empty()) {
    const char16_t c = rest[0];
    if (quotes.outside() && Text(u"+-*/()^<>=;&%,").find(c) != Text::npos) {
      if (!token.empty()) return token;
      const Text two = rest.substr(0, 2);
      const std::size_t length = two == u"<=" || two == u">=" || two == u"<>" ? 2 : 1;
      token = rest.substr(0, length);
      rest.erase(0, length);
      return token;
    }
    rest.erase(0, 1);
    if (c == u' ' && quotes.outside()) continue;
    quotes.pass(c);
    token += c;
  }
  return token;
}

bool isCall(const Text& token, const Text& rest) {
  if (token == u"TRUE" || token == u"FALSE") return rest.empty() || rest[0] == u'(';
  return findFunction(token) != nullptr;
}

struct Context {
  std::uint32_t mask = 0;
  unsigned argument = 0;
  int parentheses = 0;
};

Text withMarks(Text rest) {
  Text result;
  std::vector<Context> contexts;
  for (Text token = takeToken(rest); !token.empty(); token = takeToken(rest)) {
    result += token;
    // Blanks that are left in front of a parenthesis are gone in the result.
    const Text behind = rest.substr(std::min(rest.find_first_not_of(u' '), rest.size()));
    if (isCall(token, behind)) {
      contexts.push_back({findFunction(token)->referenceMask});
    } else if (!contexts.empty()) {
      Context& context = contexts.back();
      if (token == u"(")
        ++context.parentheses;
      else if (token == u")" && --context.parentheses <= 0)
        contexts.pop_back();
      else if ((token == u";" || token == u",") && context.parentheses == 1)
        ++context.argument;
      else if ((context.mask >> (context.argument % 32) & 1) != 0 && hasReferenceForm(token))
        result += u'R';
    }
  }
  return result;
}

unsigned countArguments(const Text& behindName) {
  if (behindName.empty()) throw xlerror("error: function parentheses not found");
  if (behindName[0] != u'(') throw xlerror("error: function name without open parenthesis");
  unsigned count = 0;
  int depth = 0;
  Quotes quotes;
  for (const char16_t c : behindName.substr(1)) {
    const bool outside = quotes.outside();
    quotes.pass(c);
    if (!outside) continue;
    if (c == u')' && depth == 0) return count;
    if (depth == 0 && (c == u',' || c == u';'))
      ++count;
    else if (depth == 0 && count == 0)
      count = 1;
    if (c == u'(') ++depth;
    if (c == u')') --depth;
  }
  throw xlerror("error: function parentheses not found");
}

int precedence(const Text& item) {
  const std::vector<std::vector<Text>> levels = {
      {u"("},       {u";", u","}, {u"&"}, {u"=", u"<>"}, {u"<", u">", u"<=", u">="},
      {u"+", u"-"}, {u"*", u"/"}, {u"^"}, {u"%"},        {u"uMinus", u"uPlus"}};
  for (std::size_t level = 0; level < levels.size(); ++level) {
    for (const Text& text : levels[level]) {
      if (text == item) return static_cast<int>(level);
    }
  }
  return -1;
}

Text postfixBySteps(const Text& text) {
  if (errorCode(text)) return text;
  Text output, rest = withMarks(normalisedFormula(text));
  std::vector<Text> stack;
  std::vector<int> kinds;
  int operands = 0;
  bool callSeen = false;
  const auto put = [&](const Text& item) { output += item + u' '; };
  const auto pop = [&] {
    put(stack.back());
    stack.pop_back();
  };
  for (Text token = takeToken(rest); !token.empty(); token = takeToken(rest)) {
    const bool isSeparator = token == u";" || token == u",";
    if (isCall(token, rest)) {
      Text item = token;
      appendDecimal(item, countArguments(rest));
      stack.push_back(item + u'F');
      kinds.push_back(0);
      callSeen = true;
      operands = 0;
    } else if (token == u"%") {
      put(u"uPercent");
    } else if (token == u"(") {
      stack.push_back(token);
      if (!callSeen) kinds.push_back(1);
      callSeen = false;
    } else if (token == u")") {
      while (!stack.empty() && stack.back() != u"(") pop();
      if (stack.empty() || kinds.empty()) throw xlerror("error in formula");
      if (kinds.back() == 1) put(u"(");
      kinds.pop_back();
      stack.pop_back();
      if (!stack.empty() && precedence(stack.back()) == -1) {
        pop();
        ++operands;
      }
    } else if (precedence(token) > 0 && token != u"uMinus" && token != u"uPlus") {
      while ((operands > 0 || isSeparator) && !stack.empty() && precedence(stack.back()) >= precedence(token)) pop();
      if (operands == 0 && token == u"-") token = u"uMinus";
      if (operands == 0 && token == u"+") token = u"uPlus";
      if (!isSeparator) stack.push_back(token);
      operands = 0;
    } else {
      put(token);
      ++operands;
    }
  }
  while (!stack.empty()) pop();
  if (!output.empty()) output.pop_back();
  return output;
}

template <typename Operation>
Text resultOf(Operation operation) {
  Text result;
  const std::string message = messageOf([&] { result = operation(); });
  return message == "nothing thrown" ? result : Text(message.begin(), message.end());
}

constexpr std::u16string_view pieces[] = {
    u"+",      u"-",    u"*",   u"^",        u"&",           u"=",         u"<",      u">",
    u"<=",     u"%",    u",",   u";",        u"(",           u")",         u"(",      u")",
    u"(",      u")",    u"A1",  u"$B2",      u"A1:C3",       u"Sheet1!A1", u"SUM",    u"SUM(",
    u"COUNT(", u"ROW(", u"IF(", u"VLOOKUP(", u"TRUE",        u"1",         u"Name",   u"'My Sheet'!A1:B2",
    u" ",      u"\"a",  u"\"",  u"'",        u"\"it's, (\"", u"#REF!",     u"LOG10(", u"PI()",
    u"FALSE",  u"A1R"};

Text randomFormula(std::mt19937& random, std::size_t mostPieces) {
  Text text;
  for (std::size_t count = 1 + random() % mostPieces; count > 0; --count) text += pieces[random() % std::size(pieces)];
  return text;
}

TEST(PostfixBySteps, GivesTheSameTextOrMessageForRandomFormulas) {
  std::mt19937 random(99);
  int compiledCount = 0, failedCount = 0;
  for (int i = 0; i < 60'000; ++i) {
    const Text text = randomFormula(random, i % 2 ? 30 : 8);
    const Text expected = resultOf([&] { return postfixBySteps(text); });
    ASSERT_EQ(resultOf([&] { return postfixFromInfix(text); }), expected) << ::testing::PrintToString(text);
    (expected.find(u"err") == Text::npos ? compiledCount : failedCount) += 1;
  }
  EXPECT_GT(compiledCount, 5000);
  EXPECT_GT(failedCount, 5000);
}

// What the compiler gives or says, and what its two stages do one after the other.
void expectStagesAgree(const Text& text, int& compiledCount) {
  FakeBook whole, staged;
  std::string compiled, expected;
  const std::string message = messageOf([&] { compiled = hex(compileFormula(text, whole, 0, 0)); });
  const std::string expectedMessage =
      messageOf([&] { expected = hex(tokensFromPostfix(postfixFromInfix(text), staged, 0, 0)); });
  ASSERT_EQ(message, expectedMessage) << ::testing::PrintToString(text);
  ASSERT_EQ(compiled, expected) << ::testing::PrintToString(text);
  if (!compiled.empty()) ++compiledCount;
}

TEST(CompilerByStages, GivesTheSameTokensOrMessageForRandomFormulas) {
  std::mt19937 random(7);
  int compiledCount = 0;
  for (int i = 0; i < 30'000; ++i) expectStagesAgree(randomFormula(random, i % 2 ? 30 : 6), compiledCount);
  EXPECT_GT(compiledCount, 2000);
}

// All that two letters, digits and signs can be made to look like.
TEST(CompilerByStages, ReadsEveryShortOperandTheSameWay) {
  static constexpr std::u16string_view parts[] = {u"A",     u"IV", u"IW", u"b", u"$", u"0", u"1", u"65536",
                                                  u"65537", u":",  u"R",  u"!", u".", u"F", u"Z9"};
  int compiledCount = 0;
  std::mt19937 random(11);
  for (const Text frame : {u"@", u"ROW(@)", u"SUM(1,@)", u"SUMPRODUCT(@,A1:B2)", u"@%", u"-@*2"}) {
    for (int i = 0; i < 6000; ++i) {
      Text operand;
      for (std::size_t count = 1 + random() % 6; count > 0; --count) operand += parts[random() % std::size(parts)];
      Text text = frame;
      text.replace(text.find(u'@'), 1, operand);
      expectStagesAgree(text, compiledCount);
    }
  }
  EXPECT_GT(compiledCount, 2000);
}

TEST(FunctionTable, NoNameHasTheFormOfACellOrANumber) {
  for (const FunctionRow& row : functionRows()) {
    std::u16string_view rest = row.name;
    EXPECT_FALSE(takePlainCell(rest).found && rest.empty()) << ::testing::PrintToString(row.name);
    EXPECT_FALSE(isDigit(row.name[0])) << ::testing::PrintToString(row.name);
  }
}

TEST(FunctionItems, OnlyLogAndAtanCanTakeTheirArgumentCountForAPartOfTheName) {
  std::vector<std::u16string_view> names;
  for (const FunctionRow& row : functionRows()) {
    if (!readsBackAsItself(row)) {
      names.push_back(row.name);
      continue;
    }
    for (unsigned count = 0; count <= 255; ++count) {
      Text item;
      appendFunctionItem(item, row, count);
      const auto read = functionItem(item);
      ASSERT_TRUE(read) << ::testing::PrintToString(item);
      EXPECT_EQ(read->name, row.name);
      EXPECT_EQ(read->count, static_cast<int>(count)) << ::testing::PrintToString(item);
    }
  }
  EXPECT_EQ(names, (std::vector<std::u16string_view>{u"ATAN", u"LOG"}));
}

}  // namespace
}  // namespace rubrica::formula
