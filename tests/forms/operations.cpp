#include "tests/forms/operations.h"

#include "tests/forms/operation_text.h"

namespace rubrica::test {
namespace {

// A pair of getter and setter that take and give the same thing.
template <class Value>
Operation pair(std::string names, std::string about, void (Sheet::*set)(Value), Value (Sheet::*get)(), Value value,
               std::string xls, std::string xlsx) {
  return {std::move(names),
          std::move(about),
          [=](B b) { (b.sheet->*set)(value); },
          [=](B b) { return join((b.sheet->*get)()); },
          std::move(xls),
          std::move(xlsx)};
}

template <class Value>
Operation pair(std::string names, std::string about, void (Sheet::*set)(Value), Value (Sheet::*get)(), Value value,
               const std::string& both) {
  return pair(std::move(names), std::move(about), set, get, value, both, both);
}

std::vector<Operation> cellOperations() {
  return {
      {"writeNum readNum cellType", "numbers", [](B b) { b.sheet->writeNum(2, 3, -1.25); },
       [](B b) { return join(b.sheet->readNum(2, 3), b.sheet->cellType(2, 3)); }, "-1.25 1", "-1.25 1"},
      {"writeStr readStr", "texts", [](B b) { b.sheet->writeStr(0, 0, u"Zürich & more"); },
       [](B b) { return shown(b.sheet->readStr(0, 0)); }, "Zürich & more", "Zürich & more"},
      {"writeBool readBool", "booleans", [](B b) { b.sheet->writeBool(0, 0, true); },
       [](B b) { return join(b.sheet->readBool(0, 0), b.sheet->cellType(0, 0)); }, "1 3", "1 3"},
      {"writeError readError", "error values", [](B b) { b.sheet->writeError(0, 0, ErrorType::divByZero); },
       [](B b) { return join(b.sheet->readError(0, 0)); }, "7", "7"},
      {"writeBlank readBlank", "blanks", [](B b) { b.sheet->writeBlank(0, 0, b.book->addFormat()); },
       [](B b) {
         Format* format = nullptr;
         const bool isBlank = b.sheet->readBlank(0, 0, &format);
         return join(isBlank, format != nullptr, b.sheet->cellType(0, 0));
       },
       "1 1 4", "1 1 4"},
      {"writeFormula readFormula isFormula", "formulas", [](B b) { b.sheet->writeFormula(0, 0, u"=SUM(B1;C1)*2"); },
       [](B b) { return join(b.sheet->isFormula(0, 0), shown(b.sheet->readFormula(0, 0))); }, "1 SUM(B1,C1)*2",
       "1 SUM(B1,C1)*2"},
      {"writeFormulaNum", "formulas with a number", [](B b) { b.sheet->writeFormulaNum(0, 0, u"1+1", 2); },
       [](B b) { return join(b.sheet->readNum(0, 0), b.sheet->cellType(0, 0)); }, "2.00 1", "2.00 1"},
      {"writeFormulaStr", "formulas with a text", [](B b) { b.sheet->writeFormulaStr(0, 0, u"A2", u"word"); },
       [](B b) { return join(shown(b.sheet->readStr(0, 0)), b.sheet->cellType(0, 0)); }, "word 2", "word 2"},
      {"writeFormulaBool", "formulas with a boolean", [](B b) { b.sheet->writeFormulaBool(0, 0, u"1=1", true); },
       [](B b) { return join(b.sheet->readBool(0, 0), b.sheet->cellType(0, 0)); }, "1 3", "1 3"},
      {"setCellFormat cellFormat", "the format of a cell",
       [](B b) {
         Format* format = b.book->addFormat();
         format->setNumFormat(numformat::percent);
         b.sheet->writeNum(1, 1, 0.5);
         b.sheet->setCellFormat(1, 1, format);
       },
       [](B b) { return join(b.sheet->cellFormat(1, 1)->numFormat()); }, "9", "9"},
      {"isDate", "dates",
       [](B b) {
         Format* format = b.book->addFormat();
         format->setNumFormat(numformat::date);
         b.sheet->writeNum(0, 0, b.book->datePack(2026, 11, 20), format);
       },
       [](B b) { return join(b.sheet->isDate(0, 0), b.sheet->isDate(1, 0)); }, "1 0", "1 0"},
      {"copyCell", "copies of cells",
       [](B b) {
         b.sheet->writeNum(0, 0, 5);
         b.sheet->copyCell(0, 0, 3, 3);
       },
       [](B b) { return join(b.sheet->readNum(3, 3)); }, "5.00", "5.00"},
      {"clear", "clearing cells",
       [](B b) {
         b.sheet->writeNum(0, 0, 1);
         b.sheet->writeNum(1, 1, 2);
         b.sheet->clear(0, 0, 0, 5);
       },
       [](B b) { return join(b.sheet->cellType(0, 0), b.sheet->cellType(1, 1)); }, "0 1", "0 1"},
      {"firstRow lastRow firstCol lastCol", "the range in use",
       [](B b) {
         b.sheet->writeNum(2, 3, 1);
         b.sheet->writeNum(7, 5, 1);
       },
       [](B b) { return join(b.sheet->firstRow(), b.sheet->lastRow(), b.sheet->firstCol(), b.sheet->lastCol()); },
       "2 8 3 6", "2 8 3 6"},
      {"writeNum", "the last row and column of the form", [](B b) { b.sheet->writeNum(1048575, 16383, 1); },
       [](B b) { return join(b.sheet->cellType(1048575, 16383)); }, "[row must be in range 0-65535] 0", "1"},
      {"addrToRowCol rowColToAddr", "addresses", [](B) {},
       [](B b) {
         int row = -1, col = -1;
         bool rowRelative = false, colRelative = false;
         b.sheet->addrToRowCol(u"$C5", &row, &col, &rowRelative, &colRelative);
         return join(row, col, rowRelative, colRelative, shown(b.sheet->rowColToAddr(9, 27, false, true)));
       },
       "4 2 1 0 AB$10", "4 2 1 0 AB$10"},
  };
}

std::vector<Operation> lineOperations() {
  return {
      {"setCol colWidth", "widths", [](B b) { b.sheet->setCol(1, 3, 12.5); },
       [](B b) { return join(b.sheet->colWidth(1) > 12.3 && b.sheet->colWidth(3) < 12.7); }, "1", "1"},
      {"colWidth", "the width of a column that nobody set", [](B) {},
       [](B b) { return join(b.sheet->colWidth(0) > 8.2 ? "a multiple of 8 pixels" : "8 characters"); }, "8 characters",
       "a multiple of 8 pixels"},
      {"setCol setAutoFitArea", "fitting a column to its cells",
       [](B b) {
         b.sheet->writeStr(0, 0, u"mmmmmmmmmmmmmmmmmmmm");
         b.sheet->writeStr(1, 0, u"m");
         b.sheet->setAutoFitArea(1, 0, 1, 0);
         b.sheet->setCol(0, 0, -1);
         b.sheet->setAutoFitArea();
         b.sheet->setCol(0, 0, -1);
       },
       [](B b) { return join(b.sheet->colWidth(0) > 15 && b.sheet->colWidth(0) < 60); }, "1", "1"},
      {"setRow rowHeight", "heights", [](B b) { b.sheet->setRow(4, 33); },
       [](B b) { return join(b.sheet->rowHeight(4), b.sheet->rowHidden(4)); }, "33.00 0", "33.00 0"},
      {"rowHeight", "the height of a row that nobody set; points", [](B) {},
       [](B b) { return join(b.sheet->rowHeight(0)); }, "12.75", "15.00"},
      {"setRowHidden rowHidden", "hidden rows", [](B b) { b.sheet->setRowHidden(2, true); },
       [](B b) { return join(b.sheet->rowHidden(1), b.sheet->rowHidden(2)); }, "0 1", "0 1"},
      {"setColHidden colHidden", "hidden columns", [](B b) { b.sheet->setColHidden(2, true); },
       [](B b) { return join(b.sheet->colHidden(1), b.sheet->colHidden(2), b.sheet->colWidth(2)); }, "0 1 0.00",
       "0 1 0.00"},
      {"groupRows", "groups of rows", [](B b) { b.sheet->groupRows(2, 4, true); },
       [](B b) {
         return join(b.sheet->rowHidden(1), b.sheet->rowHidden(2), b.sheet->rowHidden(4), b.sheet->rowHidden(5));
       },
       "0 1 1 0", "0 1 1 0"},
      {"groupRows", "groups that overlap others in part",
       [](B b) {
         b.sheet->groupRows(2, 4, false);
         b.sheet->groupRows(4, 6, true);
       },
       [](B b) { return join(b.sheet->rowHidden(6)); }, "[detect overlap] 0", "[detect overlap] 0"},
      {"groupCols", "groups of columns", [](B b) { b.sheet->groupCols(2, 4, true); },
       [](B b) {
         return join(b.sheet->colHidden(1), b.sheet->colHidden(2), b.sheet->colHidden(4), b.sheet->colHidden(5));
       },
       "0 1 1 0", "0 1 1 0"},
      {"groupCols", "groups of columns that overlap others in part",
       [](B b) {
         b.sheet->groupCols(2, 4, false);
         b.sheet->groupCols(4, 6, true);
       },
       [](B b) { return join(b.sheet->colHidden(6)); }, "1", "[detect overlap] 0"},
      {"groupRows", "an eighth group of rows around one another",
       [](B b) {
         for (int level = 0; level < 8; ++level) b.sheet->groupRows(1, 1, false);
       },
       [](B b) { return join(b.sheet->groupRows(1, 1, true)); }, "1", "[exceeded outline level] 0"},
      {"groupCols", "an eighth group of columns around one another",
       [](B b) {
         for (int level = 0; level < 8; ++level) b.sheet->groupCols(1, 1, false);
       },
       [](B b) { return join(b.sheet->groupCols(1, 1, true)); }, "[exceeded outline level] 0",
       "[exceeded outline level] 0"},
      pair<bool>("groupSummaryBelow setGroupSummaryBelow", "sums of rows", &Sheet::setGroupSummaryBelow,
                 &Sheet::groupSummaryBelow, false, "0"),
      pair<bool>("groupSummaryRight setGroupSummaryRight", "sums of columns", &Sheet::setGroupSummaryRight,
                 &Sheet::groupSummaryRight, false, "0"),
      {"setHorzPageBreak getHorzPageBreak getHorzPageBreakSize", "breaks of rows",
       [](B b) {
         for (const int row : {30, 10, 20}) b.sheet->setHorzPageBreak(row);
         b.sheet->setHorzPageBreak(20, false);
       },
       [](B b) {
         return join(b.sheet->getHorzPageBreakSize(), b.sheet->getHorzPageBreak(0), b.sheet->getHorzPageBreak(1));
       },
       "2 10 30", "2 10 30"},
      {"setVertPageBreak getVertPageBreak getVertPageBreakSize", "breaks of columns",
       [](B b) { b.sheet->setVertPageBreak(5); },
       [](B b) { return join(b.sheet->getVertPageBreakSize(), b.sheet->getVertPageBreak(0)); }, "1 5", "1 5"},
      {"split splitInfo", "panes", [](B b) { b.sheet->split(2, 1); },
       [](B b) {
         int row = -1, col = -1;
         const bool isSplit = b.sheet->splitInfo(&row, &col);
         return join(isSplit, row, col);
       },
       "1 2 1", "1 2 1"},
      {"setMerge getMerge delMerge mergeSize merge delMergeByIndex", "merges",
       [](B b) {
         b.sheet->setMerge(0, 1, 0, 2);
         b.sheet->setMerge(4, 4, 4, 5);
         b.sheet->setMerge(8, 9, 8, 9);
         b.sheet->delMerge(4, 5);
         b.sheet->delMergeByIndex(1);
       },
       [](B b) {
         Range at, listed;
         b.sheet->getMerge(1, 2, &at.r1, &at.r2, &at.c1, &at.c2);
         b.sheet->merge(0, &listed.r1, &listed.r2, &listed.c1, &listed.c2);
         return join(b.sheet->mergeSize(), at.text(), listed.text());
       },
       "1 0 1 0 2 0 1 0 2", "1 0 1 0 2 0 1 0 2"},
      {"setMerge", "cells of a merge that nobody wrote", [](B b) { b.sheet->setMerge(0, 1, 0, 2); },
       [](B b) { return join(b.sheet->cellType(1, 1)); }, "4", "0"},
      {"insertRow", "inserting rows into a merge",
       [](B b) {
         b.sheet->setMerge(0, 3, 0, 0);
         b.sheet->insertRow(2, 2);
       },
       [](B b) {
         Range range;
         b.sheet->merge(0, &range.r1, &range.r2, &range.c1, &range.c2);
         return join(b.sheet->mergeSize(), range.text());
       },
       "2 0 1 0 0", "1 0 4 0 0"},
      {"insertRow removeRow", "cells of moved rows",
       [](B b) {
         b.sheet->writeNum(5, 0, 5);
         b.sheet->setRow(5, 40);
         b.sheet->insertRow(1, 2);
         b.sheet->removeRow(0, 0);
       },
       [](B b) { return join(b.sheet->readNum(6, 0), b.sheet->rowHeight(6)); }, "5.00 40.00", "5.00 40.00"},
      {"insertCol removeCol", "cells of moved columns",
       [](B b) {
         b.sheet->writeNum(0, 5, 5);
         b.sheet->setCol(5, 5, 30);
         b.sheet->insertCol(1, 2);
         b.sheet->removeCol(0, 0);
       },
       [](B b) { return join(b.sheet->readNum(0, 6), b.sheet->colWidth(6) > 29, b.sheet->colWidth(5) > 29); },
       "5.00 1 0", "5.00 1 0"},
      {"insertCol setNamedRange getNamedRange", "names when columns are inserted",
       [](B b) {
         b.sheet->setNamedRange(u"spot", 1, 2, 3, 4);
         b.sheet->insertCol(0, 0);
       },
       [](B b) {
         Range range;
         b.sheet->getNamedRange(u"spot", &range.r1, &range.r2, &range.c1, &range.c2);
         return range.text();
       },
       "1 2 3 4", "1 2 4 5"},
      {"removeRow setNamedRange getNamedRange", "names when their rows are removed in part",
       [](B b) {
         b.sheet->setNamedRange(u"spot", 2, 5, 0, 0);
         b.sheet->removeRow(4, 8);
       },
       [](B b) {
         Range range;
         b.sheet->getNamedRange(u"spot", &range.r1, &range.r2, &range.c1, &range.c2);
         return range.text();
       },
       "2 0 0 0", "2 3 0 0"},
  };
}

std::vector<Operation> pageOperations() {
  return {
      pair<bool>("displayGridlines setDisplayGridlines", "gridlines", &Sheet::setDisplayGridlines,
                 &Sheet::displayGridlines, false, "0"),
      pair<bool>("printGridlines setPrintGridlines", "printed gridlines", &Sheet::setPrintGridlines,
                 &Sheet::printGridlines, true, "1"),
      pair<int>("zoom setZoom", "zoom", &Sheet::setZoom, &Sheet::zoom, 150, "150"),
      pair<int>("printZoom setPrintZoom", "scale of the print", &Sheet::setPrintZoom, &Sheet::printZoom, 80, "80"),
      {"getPrintFit setPrintFit", "fitting to pages", [](B b) { b.sheet->setPrintFit(2, 3); },
       [](B b) {
         int wide = -1, high = -1;
         const bool fits = b.sheet->getPrintFit(&wide, &high);
         return join(fits, wide, high);
       },
       "1 2 3", "1 2 3"},
      pair<bool>("landscape setLandscape", "orientation", &Sheet::setLandscape, &Sheet::landscape, true, "1"),
      pair<int>("paper setPaper", "paper", &Sheet::setPaper, &Sheet::paper, 9, "9"),
      {"paper", "the paper that nobody set", [](B) {}, [](B b) { return join(b.sheet->paper()); }, "0", "1"},
      {"header setHeader headerMargin", "header", [](B b) { b.sheet->setHeader(u"&CReport & more", 0.4); },
       [](B b) { return join(shown(b.sheet->header()), b.sheet->headerMargin()); }, "&CReport & more 0.40",
       "&CReport & more 0.40"},
      {"footer setFooter footerMargin", "footer", [](B b) { b.sheet->setFooter(u"&P", 0.25); },
       [](B b) { return join(shown(b.sheet->footer()), b.sheet->footerMargin()); }, "&P 0.25", "&P 0.25"},
      pair<bool>("hCenter setHCenter", "centring across", &Sheet::setHCenter, &Sheet::hCenter, true, "1"),
      pair<bool>("vCenter setVCenter", "centring down", &Sheet::setVCenter, &Sheet::vCenter, true, "1"),
      pair<double>("marginLeft setMarginLeft", "left margin", &Sheet::setMarginLeft, &Sheet::marginLeft, 1.25, "1.25"),
      pair<double>("marginRight setMarginRight", "right margin", &Sheet::setMarginRight, &Sheet::marginRight, 1.5,
                   "1.50"),
      pair<double>("marginTop setMarginTop", "top margin", &Sheet::setMarginTop, &Sheet::marginTop, 0.5, "0.50"),
      pair<double>("marginBottom setMarginBottom", "bottom margin", &Sheet::setMarginBottom, &Sheet::marginBottom, 2.0,
                   "2.00"),
      {"marginLeft marginRight marginTop marginBottom headerMargin footerMargin", "margins that nobody set; inches",
       [](B) {},
       [](B b) {
         return join(b.sheet->marginLeft(), b.sheet->marginRight(), b.sheet->marginTop(), b.sheet->marginBottom(),
                     b.sheet->headerMargin(), b.sheet->footerMargin());
       },
       "0.75 0.75 1.00 1.00 0.50 0.50", "0.70 0.70 0.75 0.75 0.30 0.30"},
      pair<bool>("printRowCol setPrintRowCol", "printed headings", &Sheet::setPrintRowCol, &Sheet::printRowCol, true,
                 "1"),
      pair<bool>("rightToLeft setRightToLeft", "right to left", &Sheet::setRightToLeft, &Sheet::rightToLeft, true, "1"),
      {"getTopLeftView setTopLeftView", "the cell on top", [](B b) { b.sheet->setTopLeftView(7, 3); },
       [](B b) {
         int row = -1, col = -1;
         b.sheet->getTopLeftView(&row, &col);
         return join(row, col);
       },
       "7 3", "7 3"},
      {"printRepeatRows setPrintRepeatRows printRepeatCols setPrintRepeatCols", "print titles",
       [](B b) {
         b.sheet->setPrintRepeatRows(0, 1);
         b.sheet->setPrintRepeatCols(2, 1);
       },
       [](B b) {
         Range range;
         b.sheet->printRepeatRows(&range.r1, &range.r2);
         b.sheet->printRepeatCols(&range.c1, &range.c2);
         return range.text();
       },
       "0 1 1 2", "0 1 1 2"},
      {"clearPrintRepeats printRepeatCols", "print titles that are not there",
       [](B b) {
         b.sheet->setPrintRepeatRows(0, 1);
         b.sheet->clearPrintRepeats();
       },
       [](B b) { return withMessage(b, b.sheet->printRepeatCols(nullptr, nullptr)); }, "0 not found",
       "0 print repeat columns are not found"},
      {"printArea setPrintArea", "print area", [](B b) { b.sheet->setPrintArea(1, 8, 2, 5); },
       [](B b) {
         Range range;
         b.sheet->printArea(&range.r1, &range.r2, &range.c1, &range.c2);
         return range.text();
       },
       "1 8 2 5", "1 8 2 5"},
      {"clearPrintArea printArea", "a cleared print area",
       [](B b) {
         b.sheet->setPrintArea(1, 8, 2, 5);
         b.sheet->clearPrintArea();
       },
       [](B b) { return withMessage(b, b.sheet->printArea(nullptr, nullptr, nullptr, nullptr)); }, "0 not found",
       "0 not found"},
      {"setTabColor", "tab colours by index", [](B b) { b.sheet->setTabColor(color::red); },
       [](B b) { return b.message(); }, "ok", "ok"},
      {"setTabRgbColor", "tab colours by their parts", [](B b) { b.sheet->setTabRgbColor(10, 200, 30); },
       [](B b) { return b.message(); }, "ok", "ok"},
  };
}

std::vector<Operation> objectOperations() {
  return {
      {"setNamedRange getNamedRange namedRangeSize namedRange", "names",
       [](B b) { b.sheet->setNamedRange(u"Prices", 1, 8, 2, 2, Sheet::kScopeWorkbook, true); },
       [](B b) {
         Range found, listed;
         int scope = -7;
         bool hidden = false;
         b.sheet->getNamedRange(u"PRICES", &found.r1, &found.r2, &found.c1, &found.c2);
         const std::string name =
             shown(b.sheet->namedRange(0, &listed.r1, &listed.r2, &listed.c1, &listed.c2, &scope, &hidden));
         return join(b.sheet->namedRangeSize(), found.text(), name, listed.text(), scope, hidden);
       },
       "1 1 8 2 2 Prices 1 8 2 2 -1 1", "1 1 8 2 2 Prices 1 8 2 2 -1 1"},
      {"delNamedRange", "deleting a name that is not there", [](B b) { b.sheet->delNamedRange(u"nothing"); },
       [](B b) { return join(b.sheet->namedRangeSize()); }, "[named range is not found] 0",
       "[named range not found] 0"},
      {"tableSize table", "tables", [](B) {},
       [](B b) {
         const std::string size = join(b.sheet->tableSize());
         const std::string name = shown(b.sheet->table(0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr));
         return size + ' ' + withMessage(b, name);
       },
       "0 <none> function is not supported for xls files", "0 <none> index is out of range"},
      {"addHyperlink hyperlinkSize hyperlink delHyperlink", "links",
       [](B b) {
         b.sheet->addHyperlink(u"https://example.org/a", 0, 1, 0, 2);
         b.sheet->addHyperlink(u"gone.xls#Data!B2", 3, 3, 0, 0);
         b.sheet->addHyperlink(u"One!C3", 4, 4, 0, 0);
         b.sheet->delHyperlink(1);
       },
       [](B b) {
         Range range;
         const std::string first = shown(b.sheet->hyperlink(0, &range.r1, &range.r2, &range.c1, &range.c2));
         return join(b.sheet->hyperlinkSize(), first, range.text(),
                     shown(b.sheet->hyperlink(1, nullptr, nullptr, nullptr, nullptr)));
       },
       "2 https://example.org/a 0 1 0 2 One!C3", "2 https://example.org/a 0 1 0 2 One!C3"},
      {"autoFilter applyFilter removeFilter", "filters",
       [](B b) {
         for (int row = 1; row < 5; ++row) b.sheet->writeNum(row, 0, row);
         IAutoFilterT<char16_t>* filter = b.sheet->autoFilter();
         if (filter == nullptr) return;
         filter->setRef(0, 4, 0, 0);
         filter->column(0)->setCustomFilter(FilterOperator::greaterThan, u"2");
         b.sheet->applyFilter();
       },
       [](B b) {
         return join(b.sheet->autoFilter() != nullptr, b.sheet->rowHidden(1), b.sheet->rowHidden(2),
                     b.sheet->rowHidden(3));
       },
       "0 0 0 0", "1 1 1 0"},
      {"name setName", "the sheet's name", [](B b) { b.sheet->setName(u"Other & more"); },
       [](B b) { return shown(b.sheet->name()); }, "Other & more", "Other & more"},
      {"protect setProtect", "protection", [](B b) { b.sheet->setProtect(true, u"secret", 3); },
       [](B b) { return join(b.sheet->protect()); }, "1", "1"},
      {"hidden setHidden", "hiding a sheet",
       [](B b) {
         b.book->addSheet(u"Two");
         b.sheet->setHidden(SheetState::veryHidden);
       },
       [](B b) { return join(b.sheet->hidden()); }, "2", "2"},
      {"setHidden", "hiding the last visible sheet", [](B b) { b.sheet->setHidden(); },
       [](B b) { return join(b.sheet->hidden()); }, "1", "[a workbook must contain at least one visible worksheet] 0"},
      {"addIgnoredError", "ignored errors",
       [](B b) {
         b.sheet->addIgnoredError(0, 0, 5, 5, 4);
         b.sheet->addIgnoredError(1, 1, 2, 2, 4);
       },
       [](B b) { return join(b.sheet->addIgnoredError(0, 0, 5, 5, 8)); }, "[ignored error already exists] 1",
       "[ignored error already exists] 1"},
      {"addDataValidation addDataValidationDouble removeDataValidations", "data validation",
       [](B b) {
         b.sheet->addDataValidation(ValidationType::list, ValidationOperator::equal, 0, 5, 0, 0, u"a,b");
         b.sheet->addDataValidationDouble(ValidationType::whole, ValidationOperator::between, 0, 5, 1, 1, 1, 10);
       },
       [](B b) { return join(b.sheet->removeDataValidations()); }, "[function is not supported for xls files] 0", "1"},
      {"setPicture pictureSize getPicture", "pictures",
       [](B b) { b.sheet->setPicture(1, 2, addPng(b, 40, 20), 1.0, 3, 4, PicturePosition::moveAndSize); },
       [](B b) {
         int row = -1, col = -1, width = -1, height = -1, x = -1, y = -1;
         const int id = b.sheet->getPicture(0, &row, &col, nullptr, nullptr, &width, &height, &x, &y);
         return join(b.sheet->pictureSize(), id, row, col, width, height, x, y);
       },
       "1 0 1 2 40 20 3 4", "1 0 1 2 40 20 3 4"},
      {"setPicture2", "pictures of a given size",
       [](B b) { b.sheet->setPicture2(1, 2, addPng(b, 40, 20), 100, 50, 0, 0, PicturePosition::onlyMove); },
       [](B b) {
         int width = -1, height = -1;
         b.sheet->getPicture(0, nullptr, nullptr, nullptr, nullptr, &width, &height, nullptr, nullptr);
         return join(width, height);
       },
       "100 50", "100 50"},
      {"writeComment readComment removeComment", "comments", [](B b) { b.sheet->writeComment(1, 1, u"note", u"me"); },
       [](B b) { return withMessage(b, shown(b.sheet->readComment(1, 1))); }, "note ok",
       "[not supported] <none> error in readComment"},
  };
}

}  // namespace

std::vector<Operation> sheetOperations() {
  std::vector<Operation> all;
  for (auto part : {cellOperations(), lineOperations(), pageOperations(), objectOperations()}) {
    for (Operation& operation : part) all.push_back(std::move(operation));
  }
  return all;
}

std::vector<Operation> allOperations() {
  std::vector<Operation> all;
  for (auto part : {sheetOperations(), bookOperations(), styleOperations(), filterOperations()}) {
    for (Operation& operation : part) all.push_back(std::move(operation));
  }
  return all;
}

Outcome outcomeOf(const Operation& operation, const Form& form) {
  FormBook book(form);
  operation.set(book);
  const std::string message = book.message() == "ok" ? std::string() : "[" + book.message() + "] ";
  Outcome outcome;
  outcome.before = message + operation.read(book);
  // Reading may change the sheet, so that what is saved is a book of its own.
  FormBook again(form);
  operation.set(again);
  if (!again.reload()) {
    outcome.after = "not saved: " + again.message();
    return outcome;
  }
  outcome.after = message + operation.read(again);
  return outcome;
}

}  // namespace rubrica::test
