// Comments of an .xls sheet: a note ties a cell to a text box of the drawing, which holds the text.
#include "biff/book_impl.h"
#include "biff/sheet_grid.h"
#include "biff/sheet_impl.h"

namespace rubrica {
namespace {

constexpr char16_t kDefaultAuthor[] = u"rubrica";
constexpr int kDefaultWidth = 129, kDefaultHeight = 75;  // pixels
// The text is in the fifth font, whose index is 5 as no font has index 4, or in the first one where there are fewer.
constexpr std::uint16_t kTextFont = 5;
constexpr int kFontsUpToTextFont = 5;

}  // namespace

SheetImplT::Text SheetImplT::readComment(int row, int col) {
  return guarded(state(), Text{}, [&]() -> Text {
    checkCell(row, col);
    const Note* note = _notes.find(row, col);
    if (note == nullptr) return nullptr;
    const std::u16string* text = note->hasOwnText ? &note->ownText : shapes().commentText(note->idObj);
    if (text == nullptr) return nullptr;
    _commentText = *text;
    return state().convert(_commentText.c_str());
  });
}

std::uint16_t SheetImplT::addCommentBox(int row, int col, std::u16string_view text, int width, int height) {
  officeart::PixelBox box{row, col, width, height};
  const MergedRange* merge = _merges.find(row, col);
  if (merge != nullptr && width == officeart::PixelBox::kToCellEnd) box.colLast = merge->colLast;
  if (merge != nullptr && height == officeart::PixelBox::kToCellEnd) box.rowLast = merge->rowLast;
  officeart::CellAnchor anchor = officeart::anchorOf(box, Grid(*this));
  anchor.flags = officeart::CellAnchor::kNoMove | officeart::CellAnchor::kNoSize;
  const std::uint16_t font = _book->styles().fontCount() < kFontsUpToTextFont ? 0 : kTextFont;
  const std::uint32_t shapeId = newShape();
  return _drawing.change().addComment(shapeId, anchor, text, font);
}

void SheetImplT::writeComment(int row, int col, Text value, Text author, int width, int height) {
  guarded(state(), [&] {
    checkCell(row, col);
    if (value != nullptr && state().text.utf8Mode()) state().text.setWide(value);
    const std::u16string_view text = value == nullptr ? std::u16string_view() : std::u16string_view(value);
    const std::uint16_t objectId = addCommentBox(row, col, text, width, height);
    const std::u16string_view name = author == nullptr ? kDefaultAuthor : author;
    if (name.size() > Note::kMostAuthor) throw xlerror("string is too long");
    Note note;
    note.row = static_cast<std::uint16_t>(row);
    note.col = static_cast<std::uint16_t>(col);
    note.idObj = objectId;
    note.author = name;
    _notes.at(row, col) = std::move(note);
  });
}

bool SheetImplT::removeComment(int row, int col) {
  return guarded(state(), false, [&] {
    checkCell(row, col);
    _notes.erase(row, col);
    return true;
  });
}

void SheetImplT::settleComments() {
  _notes.forEach([&](Note& note) {
    if (!note.hasOwnText) return;
    note.idObj = addCommentBox(note.row, note.col, note.ownText, kDefaultWidth, kDefaultHeight);
    note.hasOwnText = false;
    note.ownText.clear();
  });
}

}  // namespace rubrica
