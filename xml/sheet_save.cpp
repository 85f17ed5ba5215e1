// What a worksheet brings up to date before it is written.
#include "engine/address.h"
#include "source/ooxml/cell_address.h"
#include "xml/book_impl.h"
#include "xml/sheet_impl.h"

namespace rubrica {
namespace {

constexpr double kDefaultRowHeight = 15.0;  // points

std::string rangeText(const UsedRange& used) {
  std::string text;
  ooxml::appendCellAddress(text, static_cast<std::uint32_t>(used.firstRow), static_cast<std::uint16_t>(used.firstCol));
  if (used.empty() || (used.lastRow - used.firstRow == 1 && used.lastCol - used.firstCol == 1)) return text;
  text.push_back(':');
  ooxml::appendCellAddress(text, static_cast<std::uint32_t>(used.lastRow - 1),
                           static_cast<std::uint16_t>(used.lastCol - 1));
  return text;
}

}  // namespace

// Lists that may not be empty: what would have been the only element of one found no memory.
template <class Tag>
void XMLSheetImplT<Tag>::dropEmptyLists() {
  if (const auto* list = this->find_sheetViews(); list != nullptr && list->size_sheetView() == 0) {
    this->unset_sheetViews();
  }
  if (const auto* list = this->find_mergeCells(); list != nullptr && list->size_mergeCell() == 0) {
    this->unset_mergeCells();
  }
  if (const auto* list = this->find_dataValidations(); list != nullptr && list->size_dataValidation() == 0) {
    this->unset_dataValidations();
  }
  if (const auto* list = this->find_hyperlinks(); list != nullptr && list->size_hyperlink() == 0) {
    this->unset_hyperlinks();
  }
  if (const auto* list = this->find_ignoredErrors(); list != nullptr && list->size_ignoredError() == 0) {
    this->unset_ignoredErrors();
  }
  for (std::size_t i = this->size_cols(); i-- > 0;) {
    if (std::as_const(*this).get_cols(i).size_col() == 0) this->erase_cols(i);
  }
}

template <class Tag>
void XMLSheetImplT<Tag>::bringUpToDate() {
  auto& data = this->get_sheetData();
  // Spans of a file may no longer be true.
  for (std::size_t i = 0; i < data.size_row(); ++i) data.get_row(i).unset_spans();
  if (!this->isset_sheetFormatPr()) this->get_sheetFormatPr().set_defaultRowHeight(kDefaultRowHeight);
  dropEmptyLists();
  this->get_dimension().set_ref(rangeText(_used));
}

template class XMLSheetImplT<excelNormal_tag>;
template class XMLSheetImplT<excelStrict_tag>;

}  // namespace rubrica
