// The operations of formats and fonts, each on the format of a cell.
#include "tests/forms/operation_text.h"
#include "tests/forms/operations.h"

namespace rubrica::test {
namespace {

Operation ofFormat(std::string names, std::string about, std::function<void(Format&)> set,
                   std::function<std::string(Format&)> read, std::string xls, std::string xlsx) {
  return {std::move(names),
          std::move(about),
          [set](B b) {
            Format* format = b.book->addFormat();
            set(*format);
            b.sheet->writeNum(0, 0, 1, format);
          },
          [read](B b) { return read(*b.sheet->cellFormat(0, 0)); },
          std::move(xls),
          std::move(xlsx)};
}

// A pair of setter and getter of one value.
template <class Value>
Operation ofFormat(const std::string& setter, const std::string& getter, void (Format::*set)(Value),
                   Value (Format::*get)() const, Value value) {
  const std::string text = join(static_cast<int>(value));
  return ofFormat(
      setter + ' ' + getter, "formats: " + getter, [set, value](Format& format) { (format.*set)(value); },
      [get](Format& format) { return join(static_cast<int>((format.*get)())); }, text, text);
}

Operation ofFont(std::string names, std::string about, std::function<void(Font&)> set,
                 std::function<std::string(Font&)> read, std::string xls, std::string xlsx) {
  return {std::move(names),
          std::move(about),
          [set](B b) {
            Font* font = b.book->addFont();
            set(*font);
            Format* format = b.book->addFormat();
            format->setFont(font);
            b.sheet->writeNum(0, 0, 1, format);
          },
          [read](B b) { return read(*b.sheet->cellFormat(0, 0)->font()); },
          std::move(xls),
          std::move(xlsx)};
}

template <class Value>
Operation ofFont(const std::string& setter, const std::string& getter, void (Font::*set)(Value),
                 Value (Font::*get)() const, Value value) {
  const std::string text = join(static_cast<int>(value));
  return ofFont(
      setter + ' ' + getter, "fonts: " + getter, [set, value](Font& font) { (font.*set)(value); },
      [get](Font& font) { return join(static_cast<int>((font.*get)())); }, text, text);
}

#define FORMAT(setter, getter, value) ofFormat(#setter, #getter, &Format::setter, &Format::getter, value)
#define FONT(setter, getter, value) ofFont(#setter, #getter, &Font::setter, &Font::getter, value)

std::vector<Operation> formatOperations() {
  return {
      FORMAT(setNumFormat, numFormat, 9),
      FORMAT(setAlignH, alignH, AlignH::distributed),
      FORMAT(setAlignV, alignV, AlignV::center),
      FORMAT(setWrap, wrap, true),
      FORMAT(setIndent, indent, 3),
      FORMAT(setShrinkToFit, shrinkToFit, true),
      FORMAT(setBorderLeft, borderLeft, BorderStyle::hair),
      FORMAT(setBorderRight, borderRight, BorderStyle::slantDashDot),
      FORMAT(setBorderTop, borderTop, BorderStyle::doubleLine),
      FORMAT(setBorderBottom, borderBottom, BorderStyle::thick),
      FORMAT(setBorderLeftColor, borderLeftColor, Color{color::red}),
      FORMAT(setBorderRightColor, borderRightColor, Color{color::blue}),
      FORMAT(setBorderTopColor, borderTopColor, Color{color::green}),
      FORMAT(setBorderBottomColor, borderBottomColor, Color{color::violet}),
      FORMAT(setBorderDiagonal, borderDiagonal, BorderDiagonal::up),
      FORMAT(setBorderDiagonalStyle, borderDiagonalStyle, BorderStyle::dashed),
      FORMAT(setBorderDiagonalColor, borderDiagonalColor, Color{color::teal}),
      FORMAT(setFillPattern, fillPattern, FillPattern::thinHorStripe),
      FORMAT(setPatternForegroundColor, patternForegroundColor, Color{color::yellow}),
      FORMAT(setPatternBackgroundColor, patternBackgroundColor, Color{color::pink}),
      FORMAT(setLocked, locked, false),
      FORMAT(setHidden, hidden, true),
      ofFormat(
          "rotation setRotation", "rotation in degrees; 255 is upright letters one below the other",
          [](Format& format) { format.setRotation(135); },
          [](Format& format) {
            const int kept = format.rotation();
            const bool isRefused = !format.setRotation(181);
            format.setRotation(255);
            return join(kept, isRefused, format.rotation());
          },
          "135 1 255", "135 1 255"),
      ofFormat(
          "setBorder setBorderColor", "all sides of a border at once",
          [](Format& format) {
            format.setBorder(BorderStyle::dotted);
            format.setBorderColor(color::red);
          },
          [](Format& format) {
            return join(format.borderLeft(), format.borderRight(), format.borderTop(), format.borderBottom(),
                        format.borderLeftColor(), format.borderBottomColor(), format.borderDiagonal());
          },
          "4 4 4 4 10 10 0", "4 4 4 4 10 10 0"),
      ofFormat(
          "borderLeftColor borderDiagonalColor patternForegroundColor patternBackgroundColor",
          "colours that nobody set", [](Format&) {},
          [](Format& format) {
            return join(format.borderLeftColor(), format.borderDiagonalColor(), format.patternForegroundColor(),
                        format.patternBackgroundColor());
          },
          "64 0 64 65", "-1 -1 -1 -1"),
      {"font setFont", "a font of another book",
       [](B b) {
         FormBook other(*b.form);
         Format* format = b.book->addFormat();
         const bool isTaken = format->setFont(other.book->addFont());
         b.sheet->writeBool(0, 0, isTaken, format);
       },
       [](B b) { return join(b.sheet->readBool(0, 0), b.sheet->cellFormat(0, 0)->font() != nullptr); }, "0 1", "0 1"},
  };
}

std::vector<Operation> fontOperations() {
  return {
      FONT(setSize, size, 17),
      FONT(setItalic, italic, true),
      FONT(setStrikeOut, strikeOut, true),
      FONT(setColor, color, Color{color::red}),
      FONT(setBold, bold, true),
      FONT(setScript, script, Script::subscript),
      FONT(setUnderline, underline, Underline::doubleAccounting),
      ofFont(
          "name setName", "fonts: name", [](Font& font) { font.setName(u"Courier New"); },
          [](Font& font) { return shown(font.name()); }, "Courier New", "Courier New"),
      ofFont(
          "name size color", "a new font that nobody set anything of", [](Font&) {},
          [](Font& font) { return join(shown(font.name()), font.size(), font.color()); }, "Arial 10 32767",
          "<none> 11 32767"),
  };
}

}  // namespace

std::vector<Operation> styleOperations() {
  std::vector<Operation> all = formatOperations();
  for (Operation& operation : fontOperations()) all.push_back(std::move(operation));
  return all;
}

}  // namespace rubrica::test
