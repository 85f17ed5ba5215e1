#include "xml/picture_anchors.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>
#include <type_traits>

#include "source/ooxml/drawing.h"
#include "source/ooxml/strictdrawing.h"

namespace rubrica {
namespace {

constexpr std::array<std::string_view, 3> kEditAsTokens = {"twoCell", "oneCell", "absolute"};

struct Unit {
  std::string_view name;
  double drawingUnits;
};
// A pica is 12 points; "pi" is its other name.
constexpr Unit kUnits[] = {{"in", 914400}, {"cm", 360000}, {"mm", 36000},
                           {"pt", 12700},  {"pc", 152400}, {"pi", 152400}};
constexpr double kMostUnits = 27273042316900.0;  // the format's limit of a coordinate

// Offsets are numbers in one flavour; the other takes measures with a unit as well.
std::int64_t unitsOf(std::int64_t value) {
  return value;
}
std::int64_t unitsOf(const std::string& text) {
  return drawingUnits(text).value_or(0);
}

template <class Value>
auto offsetOf(std::int64_t units) {
  if constexpr (std::is_same_v<Value, std::string>) {
    return std::to_string(units);
  } else {
    return units;
  }
}

// An absent corner is the top left cell's.
template <class Marker>
AnchorCorner cornerOf(const Marker* marker) {
  if (marker == nullptr) return {};
  return {marker->get_col(), unitsOf(marker->get_colOff()), marker->get_row(), unitsOf(marker->get_rowOff())};
}

template <class Marker>
void setCorner(Marker& marker, const AnchorCorner& corner) {
  using Offset = std::remove_cvref_t<decltype(marker.get_colOff())>;
  marker.set_col(corner.col);
  marker.set_colOff(offsetOf<Offset>(corner.colOff));
  marker.set_row(corner.row);
  marker.set_rowOff(offsetOf<Offset>(corner.rowOff));
}

PicturePosition positionOf(std::string_view editAs) {
  const auto found = std::find(kEditAsTokens.begin(), kEditAsTokens.end(), editAs);
  return found == kEditAsTokens.end() ? PicturePosition::moveAndSize
                                      : static_cast<PicturePosition>(found - kEditAsTokens.begin());
}

std::string_view editAsOf(PicturePosition position) {
  const auto number = static_cast<std::size_t>(position);
  return kEditAsTokens[number < kEditAsTokens.size() ? number : 0];
}

template <class Anchor>
const auto* picOf(const Anchor* anchor) {
  using Pic = std::remove_pointer_t<decltype(anchor->find_EG_ObjectChoices()->find_pic())>;
  const auto* object = anchor == nullptr ? nullptr : anchor->find_EG_ObjectChoices();
  return object == nullptr ? static_cast<Pic*>(nullptr) : object->find_pic();
}

// The picture of an anchor of any kind; null for other objects.
template <class Choice>
auto picIn(const Choice& choice) {
  if (const auto* pic = picOf(choice.find_twoCellAnchor())) return pic;
  if (const auto* pic = picOf(choice.find_oneCellAnchor())) return pic;
  return picOf(choice.find_absoluteAnchor());
}

template <class Size>
void readSize(const Size* size, PlacedPicture& picture) {
  if (size == nullptr) return;
  picture.width = size->get_cx();
  picture.height = size->get_cy();
}

template <class Naming>
std::uint32_t namedId(const Naming* naming) {
  const auto* named = naming == nullptr ? nullptr : naming->find_cNvPr();
  return named == nullptr ? 0 : named->get_id();
}

template <class Object>
std::uint32_t idOf(const Object* object) {
  if (object == nullptr) return 0;
  if (const auto* pic = object->find_pic()) return namedId(pic->find_nvPicPr());
  if (const auto* shape = object->find_sp()) return namedId(shape->find_nvSpPr());
  if (const auto* frame = object->find_graphicFrame()) return namedId(frame->find_nvGraphicFramePr());
  if (const auto* group = object->find_grpSp()) return namedId(group->find_nvGrpSpPr());
  if (const auto* line = object->find_cxnSp()) return namedId(line->find_nvCxnSpPr());
  return 0;
}

template <class Pic>
void fillPic(Pic& pic, const PlacedPicture& picture, std::uint32_t id) {
  auto& named = pic.get_nvPicPr().get_cNvPr();
  named.set_id(id);
  named.set_name("Picture " + std::to_string(id));
  pic.get_nvPicPr().get_cNvPicPr().get_picLocks().set_noChangeAspect(true);
  auto& blip = pic.get_blipFill().get_blip();
  if (!picture.embedId.empty()) blip.set_r_embed(picture.embedId);
  if (!picture.linkId.empty()) blip.set_r_link(picture.linkId);
  pic.get_blipFill().get_stretch().get_fillRect();
  auto& shape = pic.get_spPr();
  auto& offset = shape.get_xfrm().get_off();
  using Offset = std::remove_cvref_t<decltype(offset.get_x())>;
  offset.set_x(offsetOf<Offset>(0));
  offset.set_y(offsetOf<Offset>(0));
  shape.get_xfrm().get_ext().set_cx(picture.width);
  shape.get_xfrm().get_ext().set_cy(picture.height);
  shape.get_prstGeom().set_prst("rect");
  shape.get_prstGeom().get_avLst();
}

// The line of a corner afterwards. The offset within a line that is gone means nothing any more.
void moveCorner(int& line, std::int64_t& offset, const LineMove& move) {
  if (line < move.first()) return;
  if (move.inserts()) {
    line = std::min(line + move.count(), move.limit() - 1);
  } else if (line > move.last()) {
    line -= move.count();
  } else {
    line = move.first();
    offset = 0;
  }
}

void moveCorner(AnchorCorner& corner, const LineMove& move) {
  move.ofRows() ? moveCorner(corner.row, corner.rowOff, move) : moveCorner(corner.col, corner.colOff, move);
}

template <class Anchor>
void moveTwoCellAnchor(Anchor& anchor, const LineMove& move) {
  const PicturePosition position = positionOf(anchor.get_editAs());
  if (position == PicturePosition::absolute) return;
  AnchorCorner from = cornerOf(anchor.find_from()), to = cornerOf(anchor.find_to());
  const int height = to.row - from.row, width = to.col - from.col;
  moveCorner(from, move);
  if (position == PicturePosition::onlyMove) {
    int& last = move.ofRows() ? to.row : to.col;
    last = std::clamp(move.ofRows() ? from.row + height : from.col + width, 0, move.limit() - 1);
  } else {
    moveCorner(to, move);
  }
  setCorner(anchor.get_from(), from);
  setCorner(anchor.get_to(), to);
}

}  // namespace

std::optional<std::int64_t> drawingUnits(const std::string& text) {
  double value = 0;
  const char* const end = text.data() + text.size();
  const auto number = std::from_chars(text.data(), end, value, std::chars_format::fixed);
  if (number.ec != std::errc()) return std::nullopt;
  const std::string_view unit(number.ptr, static_cast<std::size_t>(end - number.ptr));
  if (!unit.empty()) {
    const auto found =
        std::find_if(std::begin(kUnits), std::end(kUnits), [&](const Unit& u) { return u.name == unit; });
    if (found == std::end(kUnits)) return std::nullopt;
    value *= found->drawingUnits;
  }
  if (!(std::abs(value) <= kMostUnits)) return std::nullopt;
  return std::llround(value);
}

template <class Root>
std::uint32_t freeObjectId(const Root& root) {
  std::uint32_t highest = 0;
  const auto count = [&](const auto* anchor) {
    if (anchor != nullptr) highest = std::max(highest, idOf(anchor->find_EG_ObjectChoices()));
  };
  for (std::size_t i = 0; i < root.size_choice(); ++i) {
    const auto& choice = root.get_choice(i);
    count(choice.find_twoCellAnchor());
    count(choice.find_oneCellAnchor());
    count(choice.find_absoluteAnchor());
  }
  return highest + 1;
}

template <class Root>
void placePicture(Root& root, const PlacedPicture& picture, std::uint32_t id) {
  std::decay_t<decltype(root.append_choice())> added;
  auto& anchor = added.get_twoCellAnchor();
  anchor.set_editAs(std::string(editAsOf(picture.position)));
  setCorner(anchor.get_from(), picture.from);
  setCorner(anchor.get_to(), picture.to.value_or(picture.from));
  fillPic(anchor.get_EG_ObjectChoices().get_pic(), picture, id);
  anchor.get_clientData();
  root.append_choice() = std::move(added);
}

template <class Root>
std::size_t pictureCount(const Root& root) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < root.size_choice(); ++i) count += picIn(root.get_choice(i)) != nullptr ? 1 : 0;
  return count;
}

template <class Root>
std::optional<PlacedPicture> pictureAt(const Root& root, std::size_t index) {
  for (std::size_t i = 0; i < root.size_choice(); ++i) {
    const auto& choice = root.get_choice(i);
    const auto* pic = picIn(choice);
    if (pic == nullptr || index-- != 0) continue;
    PlacedPicture picture;
    if (const auto* anchor = choice.find_twoCellAnchor()) {
      picture.from = cornerOf(anchor->find_from());
      picture.to = cornerOf(anchor->find_to());
      picture.position = positionOf(anchor->get_editAs());
    } else if (const auto* corner = choice.find_oneCellAnchor()) {
      picture.from = cornerOf(corner->find_from());
      picture.position = PicturePosition::onlyMove;
      readSize(corner->find_ext(), picture);
    } else {
      picture.position = PicturePosition::absolute;
      readSize(choice.find_absoluteAnchor()->find_ext(), picture);
    }
    const auto* fill = pic->find_blipFill();
    if (const auto* blip = fill == nullptr ? nullptr : fill->find_blip()) {
      picture.embedId = blip->get_r_embed();
      picture.linkId = blip->get_r_link();
    }
    return picture;
  }
  return std::nullopt;
}

template <class Root>
void moveAnchors(Root& root, const LineMove& move) {
  for (std::size_t i = 0; i < root.size_choice(); ++i) {
    auto& choice = root.get_choice(i);
    if (auto* both = choice.find_twoCellAnchor()) {
      moveTwoCellAnchor(*both, move);
    } else if (auto* one = choice.find_oneCellAnchor()) {
      AnchorCorner from = cornerOf(one->find_from());
      moveCorner(from, move);
      setCorner(one->get_from(), from);
    }
  }
}

template std::uint32_t freeObjectId(const drawing::c_wsDr&);
template void placePicture(drawing::c_wsDr&, const PlacedPicture&, std::uint32_t);
template std::size_t pictureCount(const drawing::c_wsDr&);
template std::optional<PlacedPicture> pictureAt(const drawing::c_wsDr&, std::size_t);
template void moveAnchors(drawing::c_wsDr&, const LineMove&);
template std::uint32_t freeObjectId(const strictdrawing::c_wsDr&);
template void placePicture(strictdrawing::c_wsDr&, const PlacedPicture&, std::uint32_t);
template std::size_t pictureCount(const strictdrawing::c_wsDr&);
template std::optional<PlacedPicture> pictureAt(const strictdrawing::c_wsDr&, std::size_t);
template void moveAnchors(strictdrawing::c_wsDr&, const LineMove&);

}  // namespace rubrica
