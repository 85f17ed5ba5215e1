#include "tools/bench_workloads.h"

#include <charconv>
#include <random>
#include <string_view>

namespace rubrica::tools {
namespace {

// A text around a number, as the interfaces want it, in one reused buffer: what is measured is the engine, not printf.
class WideBuffer {
 public:
  const char16_t* text(std::u16string_view before, int number, std::u16string_view behind = {}, std::size_t width = 0) {
    char digits[16];
    const char* end = std::to_chars(digits, digits + sizeof(digits), number).ptr;
    const auto count = static_cast<std::size_t>(end - digits);
    _text = before;
    if (count < width) _text.append(width - count, u'0');
    for (const char* digit = digits; digit != end; ++digit) _text.push_back(static_cast<char16_t>(*digit));
    _text += behind;
    return _text.c_str();
  }

 private:
  std::u16string _text;
};

constexpr int kTextKinds = 50000, kItemKinds = 1000, kDateSpan = 10000, kFirstDate = 40000;

bool fillNumbers(Sheet& sheet, const Shape& shape) {
  for (int r = 0; r < shape.rows; ++r) {
    for (int c = 0; c < shape.cols; ++c) {
      if (!sheet.writeNum(r, c, (r * 10 + c) * 1.1 + 0.5)) return false;
    }
  }
  return true;
}

bool fillRandom(Sheet& sheet, const Shape& shape) {
  std::mt19937_64 random(1);
  std::uniform_real_distribution<double> values(0.0, 1e6);
  for (int r = 0; r < shape.rows; ++r) {
    for (int c = 0; c < shape.cols; ++c) {
      if (!sheet.writeNum(r, c, values(random))) return false;
    }
  }
  return true;
}

bool fillStrings(Sheet& sheet, const Shape& shape) {
  WideBuffer text;
  for (int r = 0; r < shape.rows; ++r) {
    for (int c = 0; c < shape.cols; ++c) {
      if (!sheet.writeStr(r, c, text.text(u"text-", (r * 10 + c) % kTextKinds))) return false;
    }
  }
  return true;
}

bool fillMixed(Book& book, Sheet& sheet, const Shape& shape) {
  Format* date = book.addFormat();
  Format* twoPlaces = book.addFormat();
  Format* bold = book.addFormat();
  Font* boldFont = book.addFont();
  if (date == nullptr || twoPlaces == nullptr || bold == nullptr || boldFont == nullptr) return false;
  date->setNumFormat(book.addCustomNumFormat(u"yyyy-mm-dd"));
  twoPlaces->setNumFormat(numformat::numberD2);
  boldFont->setBold(true);
  bold->setFont(boldFont);
  WideBuffer text;
  for (int r = 0; r < shape.rows; ++r) {
    const bool written = sheet.writeNum(r, 0, r) && sheet.writeNum(r, 1, r * 1.1 + 0.5) &&
                         sheet.writeStr(r, 2, text.text(u"item-", r % kItemKinds)) &&
                         sheet.writeStr(r, 3, text.text(u"unique-long-string-", r, u"-abcdefghij", 10)) &&
                         sheet.writeBool(r, 4, r % 2 == 0) && sheet.writeNum(r, 5, kFirstDate + r % kDateSpan, date) &&
                         sheet.writeFormulaNum(r, 6, text.text(u"A", r + 1, u"*2"), r * 2.0) &&
                         sheet.writeBlank(r, 7, bold) && sheet.writeNum(r, 8, (r * 7 % kDateSpan) / 100.0, twoPlaces) &&
                         sheet.writeStr(r, 9, text.text(u"text-", r % kTextKinds));
    if (!written) return false;
  }
  return true;
}

}  // namespace

bool knowsWorkload(const std::string& form, const std::string& workload) {
  if (workload.size() != 1 || (form != "xls" && form != "xlsx")) return false;
  return std::string_view(form == "xls" ? "NSMR" : "NSMRB").find(workload[0]) != std::string_view::npos;
}

Shape shapeOf(const std::string& form, const std::string& workload) {
  if (workload == "B") return {1000000, 10};
  if (form == "xlsx") return {100000, 10};
  return workload == "M" ? Shape{62500, 10} : Shape{62500, 16};
}

bool fill(Book& book, Sheet& sheet, const std::string& workload, const Shape& shape) {
  if (workload == "S") return fillStrings(sheet, shape);
  if (workload == "M") return fillMixed(book, sheet, shape);
  if (workload == "R") return fillRandom(sheet, shape);
  return fillNumbers(sheet, shape);
}

}  // namespace rubrica::tools
