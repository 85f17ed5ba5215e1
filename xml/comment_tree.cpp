#include "xml/comment_tree.h"

#include "engine/address.h"
#include "xml/bound_list.h"
#include "xml/sheet_range.h"

namespace rubrica {
namespace {

std::string textOf(const comments::c_CT_Rst& rich) {
  std::string text;
  if (const auto* plain = rich.find_t()) text = plain->get_value();
  for (std::size_t i = 0; i < rich.size_r(); ++i) {
    if (const auto* run = rich.get_r(i).find_t()) text += run->get_value();
  }
  return text;
}

constexpr int kRowShift = 32;

std::uint64_t keyOf(int row, int col) {
  return (std::uint64_t{static_cast<std::uint32_t>(row)} << kRowShift) | static_cast<std::uint32_t>(col);
}

}  // namespace

CommentPlaces::CommentPlaces(const comments::c_comments& root) {
  const auto* list = root.find_commentList();
  for (std::size_t i = 0; list != nullptr && i < list->size_comment(); ++i) {
    if (const auto place = addressIn(list->get_comment(i).get_ref()))
      _positions.emplace(keyOf(place->row, place->col), i);
  }
}

std::optional<std::size_t> CommentPlaces::find(int row, int col) const {
  const auto found = _positions.find(keyOf(row, col));
  return found == _positions.end() ? std::nullopt : std::optional(found->second);
}

std::string commentText(const comments::c_comments& root, std::size_t position) {
  const auto* text = root.find_commentList()->get_comment(position).find_text();
  return text == nullptr ? std::string() : textOf(*text);
}

void moveComments(comments::c_comments& root, const LineMove& move) {
  auto* list = root.find_commentList();
  if (list == nullptr) return;
  eraseItems(
      list->size_comment(), [&](std::size_t i) -> auto& { return list->get_comment(i); },
      [&](std::size_t i) { list->erase_comment(i); },
      [&](auto& comment) {
        const auto place = addressIn(comment.get_ref());
        if (!place) return false;
        const auto row = move.mapRow(place->row), col = move.mapCol(place->col);
        if (row && col) comment.set_ref(cellText(*row, *col));
        return !row || !col;
      });
}

}  // namespace rubrica
