// Whatever a sheet refuses leaves its message and nothing else: every part of the book stays as it was, to the byte.
#include <functional>
#include <limits>
#include <map>

#include "tests/xml/sheet/sheet_fixture.h"

namespace rubrica::test {
namespace {

constexpr int kRow = 1048576, kCol = 16384, kLow = std::numeric_limits<int>::min(),
              kHigh = std::numeric_limits<int>::max();
constexpr char kRowRange[] = "row must be in range 0-1048575", kColRange[] = "col must be in range 0-16383";
constexpr char kRowOrder[] = "rowLast must be greater than or equal to rowFirst";
constexpr char kColOrder[] = "colLast must be greater than or equal to colFirst";

template <class Tag>
class XmlRefusals : public XmlSheets<Tag> {
 protected:
  using Sheet = XMLSheetImplT<Tag>;

  std::map<std::string, std::string> partTexts() {
    std::map<std::string, std::string> texts;
    for (const auto& [name, entry] : this->book->parts()) texts[name] = this->part(name);
    return texts;
  }
  // Asks for each of the things and compares message and book.
  void expectRefused(const std::vector<std::pair<std::string, std::function<void(Sheet&)>>>& wrong) {
    const auto before = partTexts();
    std::size_t number = 0;
    for (const auto& [text, ask] : wrong) {
      ask(*this->sheet);
      EXPECT_EQ(this->message(), text) << "number " << number;
      EXPECT_EQ(partTexts(), before) << "number " << number << ": " << text;
      ++number;
    }
  }
  // A little of all that the operations could spoil.
  void fillSheet() {
    auto* s = this->sheet;
    s->writeNum(3, 3, 1, nullptr);
    s->setMerge(3, 4, 3, 4);
    s->addHyperlink(u"https://example.org", 0, 0, 0, 0);
    s->setHorzPageBreak(5, true);
    s->setVertPageBreak(5, true);
    s->setNamedRange(u"spot", 1, 2, 1, 2, -1, false);
    s->setPrintArea(0, 9, 0, 9);
    s->addIgnoredError(0, 0, 5, 5, 1);
    s->autoFilter()->setRef(0, 5, 0, 2);
    s->autoFilter()->column(1)->addFilter(u"x");
    s->groupRows(2, 4, false);
    s->groupCols(2, 4, false);
  }
};
TYPED_TEST_SUITE(XmlRefusals, Flavours, FlavourNames);

TYPED_TEST(XmlRefusals, PlacesOutsideTheSheet) {
  this->fillSheet();
  using S = XMLSheetImplT<TypeParam>;
  std::vector<std::pair<std::string, std::function<void(S&)>>> wrong;
  for (const int row : {-1, kRow, kLow, kHigh}) {
    wrong.insert(wrong.end(), {{kRowRange, [=](S& s) { s.rowHeight(row); }},
                               {kRowRange, [=](S& s) { s.setRow(row, 10, nullptr, true); }},
                               {kRowRange, [=](S& s) { s.rowHidden(row); }},
                               {kRowRange, [=](S& s) { s.setRowHidden(row, true); }},
                               {kRowRange, [=](S& s) { s.setHorzPageBreak(row, true); }},
                               {kRowRange, [=](S& s) { s.split(row, 1); }},
                               {kRowRange, [=](S& s) { s.setTopLeftView(row, 1); }},
                               {kRowRange, [=](S& s) { s.setMerge(std::min(row, 0), std::max(row, 0), 0, 1); }},
                               {kRowRange, [=](S& s) { s.setPrintRepeatRows(0, row); }},
                               {kRowRange, [=](S& s) { s.setPrintArea(0, row, 0, 1); }},
                               {kRowRange, [=](S& s) { s.setNamedRange(u"spot", 0, row, 0, 1, -1, false); }},
                               {kRowRange, [=](S& s) { s.addHyperlink(u"x", 0, row, 0, 0); }},
                               {kRowRange, [=](S& s) { s.addIgnoredError(0, 0, row, 0, 4); }},
                               {kRowRange, [=](S& s) { s.autoFilter()->setRef(0, row, 0, 1); }},
                               {kRowRange, [=](S& s) { s.clear(std::min(row, 0), std::max(row, 0), 0, 1); }},
                               {kRowRange, [=](S& s) { s.insertRow(std::min(row, 0), std::max(row, 0), true); }},
                               {kRowRange, [=](S& s) { s.removeRow(std::min(row, 0), std::max(row, 0), true); }},
                               {kRowRange, [=](S& s) { s.groupRows(std::min(row, 0), std::max(row, 0), true); }}});
  }
  for (const int col : {-1, kCol, kLow, kHigh}) {
    wrong.insert(wrong.end(), {{kColRange, [=](S& s) { s.colWidth(col); }},
                               {kColRange, [=](S& s) { s.setCol(col, col, 10, nullptr, true); }},
                               {kColRange, [=](S& s) { s.setCol(0, col, -1, nullptr, true); }},
                               {kColRange, [=](S& s) { s.colHidden(col); }},
                               {kColRange, [=](S& s) { s.setColHidden(col, true); }},
                               {kColRange, [=](S& s) { s.setVertPageBreak(col, true); }},
                               {kColRange, [=](S& s) { s.split(1, col); }},
                               {kColRange, [=](S& s) { s.setTopLeftView(1, col); }},
                               {kColRange, [=](S& s) { s.setPrintRepeatCols(0, col); }},
                               {kColRange, [=](S& s) { s.setPrintArea(0, 1, 0, col); }},
                               {kColRange, [=](S& s) { s.setNamedRange(u"spot", 0, 1, 0, col, -1, false); }},
                               {kColRange, [=](S& s) { s.addHyperlink(u"x", 0, 0, 0, col); }},
                               {kColRange, [=](S& s) { s.addIgnoredError(0, 0, 0, col, 4); }},
                               {kColRange, [=](S& s) { s.autoFilter()->setRef(0, 1, 0, col); }},
                               {kColRange, [=](S& s) { s.clear(0, 1, std::min(col, 0), std::max(col, 0)); }},
                               {kColRange, [=](S& s) { s.insertCol(std::min(col, 0), std::max(col, 0), true); }},
                               {kColRange, [=](S& s) { s.removeCol(std::min(col, 0), std::max(col, 0), true); }},
                               {kColRange, [=](S& s) { s.groupCols(std::min(col, 0), std::max(col, 0), true); }}});
  }
  wrong.insert(wrong.end(), {{"col must be less than 16384", [](S& s) { s.setMerge(0, 1, 0, kCol); }},
                             {kColRange, [](S& s) { s.setMerge(0, 1, -1, 1); }}});
  this->expectRefused(wrong);
}

TYPED_TEST(XmlRefusals, RangesInTheWrongOrder) {
  this->fillSheet();
  using S = XMLSheetImplT<TypeParam>;
  this->expectRefused({{kRowOrder, [](S& s) { s.setMerge(2, 1, 0, 0); }},
                       {kColOrder, [](S& s) { s.setMerge(0, 0, 2, 1); }},
                       {kRowOrder, [](S& s) { s.clear(2, 1, 0, 0); }},
                       {kColOrder, [](S& s) { s.clear(0, 0, 2, 1); }},
                       {kRowOrder, [](S& s) { s.insertRow(2, 1, true); }},
                       {kRowOrder, [](S& s) { s.removeRow(2, 1, true); }},
                       {kColOrder, [](S& s) { s.insertCol(2, 1, true); }},
                       {kColOrder, [](S& s) { s.removeCol(2, 1, true); }},
                       {kColOrder, [](S& s) { s.setCol(2, 1, 10, nullptr, false); }},
                       {"must be rowFirst <= rowLast", [](S& s) { s.groupRows(2, 1, true); }},
                       {"must be colFirst <= colLast", [](S& s) { s.groupCols(2, 1, true); }}});
}

TYPED_TEST(XmlRefusals, ThingsThatAreNotThere) {
  this->fillSheet();
  using S = XMLSheetImplT<TypeParam>;
  constexpr char kIndex[] = "index is out of range";
  std::vector<std::pair<std::string, std::function<void(S&)>>> wrong = {
      {"this cell isn't in merging block", [](S& s) { s.delMerge(9, 9); }},
      {"pagebreak not found", [](S& s) { s.setHorzPageBreak(6, false); }},
      {"pagebreak not found", [](S& s) { s.setVertPageBreak(6, false); }},
      {"pagebreak already exists", [](S& s) { s.setHorzPageBreak(5, true); }},
      {"named range not found", [](S& s) { s.delNamedRange(u"other", -1); }},
      {"named range is not found",
       [](S& s) { s.getNamedRange(u"other", nullptr, nullptr, nullptr, nullptr, -1, nullptr); }},
      {"ignored error already exists", [](S& s) { s.addIgnoredError(0, 0, 5, 5, 1); }},
      {"data validations are not found", [](S& s) { s.removeDataValidations(); }},
      {"worksheet is not splitted", [](S& s) { s.splitInfo(nullptr, nullptr); }},
      {"detect overlap", [](S& s) { s.groupRows(4, 6, true); }},
      {"detect overlap", [](S& s) { s.groupCols(0, 2, true); }},
      {"height is too big", [](S& s) { s.setRow(0, std::numeric_limits<double>::quiet_NaN(), nullptr, true); }},
      {"height is too big", [](S& s) { s.setRow(0, std::numeric_limits<double>::infinity(), nullptr, true); }},
      {"space symbol isn't allowed", [](S& s) { s.setNamedRange(u"a b", 0, 0, 0, 0, -1, false); }},
      {"a workbook must contain at least one visible worksheet", [](S& s) { s.setHidden(SheetState::hidden); }},
      {"hidden is out of range", [](S& s) { s.setHidden(static_cast<SheetState>(3)); }},
      {"not supported", [](S& s) { s.writeComment(0, 0, u"text", u"me", 1, 1); }},
      {"not supported", [](S& s) { s.removeComment(0, 0); }},
      {"error in readComment", [](S& s) { s.readComment(0, 0); }},
      {"setTop10: value is out of range", [](S& s) { s.autoFilter()->column(1)->setTop10(0.5, true, false); }},
      {"top10 filter is not found", [](S& s) { s.autoFilter()->column(1)->setTop10(5, true, false); }},
      {"columnIndex is out of range", [](S& s) { s.autoFilter()->setSort(3, true); }},
      {kIndex, [](S& s) { s.autoFilter()->column(3); }},
  };
  for (const int index : {-1, 1, kLow, kHigh}) {
    wrong.insert(
        wrong.end(),
        {{kIndex, [=](S& s) { s.delMergeByIndex(index); }},
         {kIndex, [=](S& s) { s.merge(index, nullptr, nullptr, nullptr, nullptr); }},
         {kIndex, [=](S& s) { s.delHyperlink(index); }},
         {kIndex, [=](S& s) { s.hyperlink(index, nullptr, nullptr, nullptr, nullptr); }},
         {kIndex, [=](S& s) { s.getHorzPageBreak(index); }},
         {kIndex, [=](S& s) { s.getVertPageBreak(index); }},
         {kIndex, [=](S& s) { s.autoFilter()->columnByIndex(index); }},
         {kIndex, [=](S& s) { s.table(index, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr); }},
         {"can't find drawing object",
          [=](S& s) { s.getPicture(index, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr); }},
         {"pictureId is out of range", [=](S& s) { s.setPicture(0, 0, index, 1, 0, 0, PicturePosition::moveAndSize); }},
         {"pictureId is out of range",
          [=](S& s) { s.setPicture2(0, 0, index, 1, 1, 0, 0, PicturePosition::moveAndSize); }}});
  }
  this->expectRefused(wrong);
}

TYPED_TEST(XmlRefusals, FormatsOfOtherBooks) {
  this->fillSheet();
  XMLBookImplT<TypeParam> other;
  auto* foreign = other.addFormat(nullptr);
  using S = XMLSheetImplT<TypeParam>;
  this->expectRefused({{"specified format not found", [=](S& s) { s.setRow(0, 10, foreign, false); }},
                       {"specified format not found", [=](S& s) { s.setCol(0, 0, 10, foreign, false); }}});
}

}  // namespace
}  // namespace rubrica::test
