// Compiling and printing against each other, over the whole function table, generated formulas and arbitrary bytes.
#include <random>

#include <gtest/gtest.h>

#include "engine/address.h"
#include "formula/function_table.h"
#include "formula/token_walk.h"
#include "tests/formula/fake_book.h"

namespace rubrica::formula {
namespace {

std::u16string decimal(std::size_t value) {
  const std::string digits = std::to_string(value);
  return {digits.begin(), digits.end()};
}

TEST(RoundTrip, EveryFunctionCompilesAndPrintsBackWithAnyCountUpToNine) {
  for (const FunctionRow& row : functionRows()) {
    std::u16string arguments;
    for (std::size_t count = 0; count < 10; ++count) {
      if (count > 0) arguments += (count > 1 ? u"," : u"") + decimal(count);
      const std::u16string text = std::u16string(row.name) + u"(" + arguments + u")";
      const bool isCutName = row.name == u"ATAN" && count == 2;
      const bool isNamedByArgument = row.number == kUserDefinedFunction && count > 0;
      const bool losesArguments = row.name == u"TODAY" && count > 0;
      if (isCutName || isNamedByArgument || losesArguments) continue;
      const Bytes tokens = compiled(text);
      EXPECT_EQ(printed(tokens), text);
      const std::uint16_t number = static_cast<std::uint16_t>(tokens[tokens.size() - 2] | tokens.back() << 8);
      EXPECT_EQ(number, row.number);
    }
  }
}

TEST(RoundTrip, EveryFunctionTakesReferencesWhereItsMaskSays) {
  for (const FunctionRow& row : functionRows()) {
    if (row.name == u"TODAY") continue;
    std::u16string text = std::u16string(row.name) + u"(A1";
    for (int i = 1; i < 9; ++i) text += u",A1";
    const Bytes tokens = compiled(text + u")");
    ASSERT_EQ(tokens.size(), 9u * 5 + 4);
    for (std::size_t i = 0; i < 9; ++i) {
      const bool byReference = (row.referenceMask >> i & 1) != 0;
      EXPECT_EQ(tokens[i * 5], byReference ? 0x24 : 0x44) << row.number << " argument " << i;
    }
  }
}

// Makes formulas in the form that the printer gives: no blanks, "," between arguments, parentheses only where written,
// numbers in their shortest form.
class FormulaGenerator {
 public:
  explicit FormulaGenerator(unsigned seed) : _random(seed) {}

  std::u16string formula(int depth) {
    std::u16string text = operand(depth);
    for (int i = below(3); i > 0; --i) text += pick(operators) + operand(depth);
    return text;
  }

 private:
  static constexpr std::u16string_view operators[] = {u"+", u"-", u"*",  u"/",  u"^", u"&",
                                                      u"=", u"<", u"<>", u"<=", u">", u">="};

  int below(int end) { return std::uniform_int_distribution(0, end - 1)(_random); }

  template <std::size_t size>
  std::u16string pick(const std::u16string_view (&texts)[size]) {
    return std::u16string(texts[static_cast<std::size_t>(below(static_cast<int>(size)))]);
  }

  std::u16string cell() {
    std::u16string text = below(2) ? u"$" : u"";
    text += columnLetters(below(256));
    text += below(2) ? u"$" : u"";
    return text + decimal(static_cast<std::size_t>(1 + below(65536)));
  }

  std::u16string constant() {
    static constexpr std::u16string_view texts[] = {u"0",       u"1",   u"65535",      u"65536", u"0.5",    u"0.0001",
                                                    u"1234.25", u"0.1", u"9999999999", u"#REF!", u"#NAME?", u"#VALUE!"};
    return pick(texts);
  }

  std::u16string string() {
    static constexpr std::u16string_view texts[] = {u"\"\"",       u"\"a b\"", u"\"1+(2\"", u"\"'it's a\"",
                                                    u"\"q\"\"q\"", u"\"%;,\"", u"\"Größe\""};
    return pick(texts);
  }

  std::u16string reference() {
    static constexpr std::u16string_view sheets[] = {u"Sheet1!", u"Sheet2!", u"'My Sheet'!", u"'O''Brien'!", u"'a!b'!"};
    switch (below(5)) {
      case 0:
        return cell();
      case 1:
        return cell() + u":" + cell();
      case 2:
        return pick(sheets) + cell();
      case 3:
        return pick(sheets) + cell() + u":" + cell();
      default:
        return pick(sheets) + cell() + u":" + pick(sheets) + cell();
    }
  }

  std::u16string call(int depth) {
    const auto rows = functionRows();
    const FunctionRow* row = &rows[static_cast<std::size_t>(below(static_cast<int>(rows.size())))];
    if (row->name == u"TODAY") return u"TODAY()";
    if (row->number == kUserDefinedFunction) return u"USERDEFINED()";
    int count = below(4);
    if (row->name == u"ATAN") count = 1;
    std::u16string text = std::u16string(row->name) + u"(";
    for (int i = 0; i < count; ++i) text += (i > 0 ? u"," : u"") + formula(depth - 1);
    return text + u")";
  }

  std::u16string operand(int depth) {
    static constexpr std::u16string_view names[] = {u"Rate", u"My_Name", u"TAX_F2", u"Größe"};
    switch (below(depth > 0 ? 10 : 5)) {
      case 0:
        return constant();
      case 1:
        return string();
      case 2:
      case 3:
        return reference();
      case 4:
        return pick(names);
      case 5:
        return u"-" + operand(depth - 1);
      case 6:
        return operand(depth - 1) + u"%";
      case 7:
        return u"(" + formula(depth - 1) + u")";
      default:
        return call(depth);
    }
  }

  std::mt19937 _random;
};

// The generator's texts have an even number of apostrophes each: behind an odd one, blanks in sheet names are lost.
TEST(RoundTrip, GeneratedFormulasPrintAsTheyWereWritten) {
  FormulaGenerator generator(20240607);
  std::size_t characters = 0;
  for (int i = 0; i < 20'000; ++i) {
    const std::u16string text = generator.formula(1 + i % 5);
    FakeBook book;
    const Bytes tokens = compileFormula(text, book, 0, 0);
    const std::u16string back = printFormula(tokens, book, false, 0, 0);
    ASSERT_EQ(back, text);
    ASSERT_EQ(hex(compileFormula(back, book, 0, 0)), hex(tokens));
    characters += text.size();
  }
  EXPECT_GT(characters, 1'000'000u);
}

TEST(RoundTrip, BlanksSeparatorsAndTheEqualsSignAreNormalisedAway) {
  EXPECT_EQ(roundTrip(u" = SUM( A1 ; 2 ) * ( 3 + Rate ) "), u"SUM(A1,2)*(3+Rate)");
  EXPECT_EQ(roundTrip(u"a1+$b$2"), u"A1+$B$2");
  EXPECT_EQ(roundTrip(u"007"), u"7");
  EXPECT_EQ(roundTrip(u"1.50"), u"1.5");
  EXPECT_EQ(roundTrip(u"(1+2"), u"(1+2)");
  EXPECT_EQ(roundTrip(u"'Sheet1'!A1"), u"Sheet1!A1");
}

// Prints and, when that succeeds, expects some text. Any failure must be an xlerror.
void expectPrintAnswers(const Bytes& tokens, const FakeBook& book) {
  for (const bool relative : {false, true}) {
    try {
      ASSERT_FALSE(printFormula(tokens, book, relative, 65535, 255).empty()) << hex(tokens);
    } catch (const xlerror& error) {
      ASSERT_STRNE(error.what(), "") << hex(tokens);
    }
  }
}

TEST(Print, AnswersEveryInputOfOneOrTwoBytes) {
  FakeBook book;
  for (int first = 0; first < 256; ++first) {
    expectPrintAnswers({static_cast<std::uint8_t>(first)}, book);
    for (int second = 0; second < 256; ++second) {
      expectPrintAnswers({static_cast<std::uint8_t>(first), static_cast<std::uint8_t>(second)}, book);
    }
  }
}

TEST(Print, AnswersRandomBytes) {
  FakeBook book;
  book.externSheets = {{0, 0}, {2, 3}, {0, 1000}};
  std::mt19937 random(7);
  for (int i = 0; i < 100'000; ++i) {
    Bytes tokens(random() % 64);
    // Low values, of which most begin a token, are as frequent as all others together.
    for (std::uint8_t& byte : tokens) byte = static_cast<std::uint8_t>(random() % 2 ? random() % 126 : random());
    expectPrintAnswers(tokens, book);
  }
}

TEST(Print, AnswersRandomSequencesOfWholeTokens) {
  FakeBook book;
  book.externSheets = {{0, 0}, {2, 3}, {0, 1000}};
  std::mt19937 random(11);
  int printedCount = 0;
  for (int i = 0; i < 20'000; ++i) {
    Bytes tokens;
    for (std::size_t count = 1 + random() % 12; count > 0; --count) {
      Bytes token(300);
      for (std::uint8_t& byte : token) byte = static_cast<std::uint8_t>(random() % 8);
      token[0] = static_cast<std::uint8_t>(random() % 126);
      try {
        token.resize(tokenLength(token));
      } catch (const xlerror&) {
        continue;
      }
      tokens.insert(tokens.end(), token.begin(), token.end());
    }
    expectPrintAnswers(tokens, book);
    printedCount += messageOf([&] { printed(tokens, book); }) == "nothing thrown" ? 1 : 0;
  }
  EXPECT_GT(printedCount, 1000);
}

}  // namespace
}  // namespace rubrica::formula
