#include "officeart/drawing.h"

namespace rubrica::officeart {
namespace {

// Calls `visit(record)` for a record and all that it holds.
template <class Visit>
void forEachRecord(OfficeArtRecordBase& record, const Visit& visit) {
  visit(record);
  if (auto* container = dynamic_cast<OfficeArtContainer*>(&record)) {
    for (const auto& child : container->children) forEachRecord(*child, visit);
  }
}

template <class Record, class Visit>
void forEachOf(OfficeArtRecordBase* root, const Visit& visit) {
  if (root == nullptr) return;
  forEachRecord(*root, [&](OfficeArtRecordBase& record) {
    if (auto* found = dynamic_cast<Record*>(&record)) visit(*found);
  });
}

const Obj* objectOf(const OfficeArtSpContainer& shape) {
  const auto* data = shape.find<OfficeArtClientData>();
  return data == nullptr || data->objects.empty() ? nullptr : dynamic_cast<const Obj*>(data->objects.front().get());
}

std::optional<std::uint32_t> pictureOf(const OfficeArtSpContainer& shape) {
  const auto* options = shape.find<OfficeArtFOPT>();
  return options == nullptr ? std::nullopt : options->table.value(property::pib);
}

std::unique_ptr<OfficeArtFOPT> pictureOptions(int pictureId) {
  constexpr std::uint32_t kLockAspectRatio = 0x00800080;  // the flag and that it counts
  auto options = std::make_unique<OfficeArtFOPT>();
  options->add(property::protection, kLockAspectRatio);
  options->add(property::pib | OfficeArtFOPTEOPID::kBlip, static_cast<std::uint32_t>(pictureId + 1));
  return options;
}

// A note's box: in the system colours of a tooltip, with a shadow, and hidden until it is asked for.
std::unique_ptr<OfficeArtFOPT> noteOptions() {
  constexpr std::uint32_t kTooltipColor = 0x08000050;
  auto options = std::make_unique<OfficeArtFOPT>();
  options->add(property::textId, 0);
  options->add(property::textDirection, 2);  // as the text itself
  options->add(property::text, 0x00080008);
  options->add(property::connectPoints, 0);
  options->add(property::fillColor, kTooltipColor);
  options->add(property::fillBackColor, kTooltipColor);
  options->add(property::fill, 0x00100010);
  options->add(property::shadowColor, 0);
  options->add(property::shadow, 0x00030003);
  options->add(property::group, 0x00020002);
  return options;
}

}  // namespace

std::uint16_t Drawing::id() const {
  const auto* head = _root == nullptr ? nullptr : _root->find<OfficeArtFDG>();
  return head == nullptr ? std::uint16_t{0} : head->recInstance();
}

int Drawing::shapeCount() const {
  const auto* head = _root == nullptr ? nullptr : _root->find<OfficeArtFDG>();
  return head == nullptr ? 0 : static_cast<int>(std::min<std::uint32_t>(head->csp, 1u << 30));
}

void Drawing::index() {
  _pictures.clear();
  if (_root != nullptr) {
    for (const auto& child : _root->children) {
      if (auto* group = dynamic_cast<OfficeArtSpgrContainer*>(child.get())) indexGroup(*group, nullptr);
    }
  }
  indexObjects();
}

void Drawing::indexGroup(OfficeArtSpgrContainer& group, OfficeArtClientAnchorSheet* groupAnchor) {
  bool isFirst = true;
  for (const auto& child : group.children) {
    if (auto* inner = dynamic_cast<OfficeArtSpgrContainer*>(child.get())) {
      indexGroup(*inner, groupAnchor);
    } else if (auto* shape = dynamic_cast<OfficeArtSpContainer*>(child.get())) {
      auto* anchor = shape->find<OfficeArtClientAnchorSheet>();
      if (groupAnchor == nullptr && isFirst) groupAnchor = anchor;  // the first shape stands for the group
      if (pictureOf(*shape)) _pictures.push_back({shape, &group, anchor != nullptr ? anchor : groupAnchor});
    }
    isFirst = false;
  }
}

// A comment's text is the object that follows the comment's own.
void Drawing::indexObjects() {
  _comments.clear();
  _objectIds.clear();
  _lastObjectId = 0;
  const Obj* last = nullptr;
  const auto take = [&](const ObjectList& objects) {
    for (const auto& object : objects) {
      const auto* text = dynamic_cast<const TextObject*>(object.get());
      if (text != nullptr && last != nullptr && last->ot == object_type::note) _comments.try_emplace(last->id, text);
      last = dynamic_cast<const Obj*>(object.get());
      if (last != nullptr) takeObjectId(last->id);
    }
  };
  take(_leading);
  if (_root == nullptr) return;
  forEachRecord(*_root, [&](OfficeArtRecordBase& record) {
    if (auto* data = dynamic_cast<OfficeArtClientData*>(&record)) take(data->objects);
    if (auto* text = dynamic_cast<OfficeArtClientTextbox*>(&record)) take(text->objects);
  });
}

void Drawing::takeObjectId(std::uint16_t id) {
  if (_objectIds.size() <= id) _objectIds.resize(std::size_t{id} + 1);
  _objectIds[id] = true;
  _lastObjectId = std::max(_lastObjectId, id);
}

// One more than the last; where there is no such id any more, one that was left out.
std::uint16_t Drawing::nextObjectId() {
  constexpr std::uint16_t kLast = 0xFFFF;
  if (_lastObjectId < kLast) {
    takeObjectId(static_cast<std::uint16_t>(_lastObjectId + 1));
    return _lastObjectId;
  }
  for (std::uint16_t id = 1; id < kLast; ++id) {
    if (_objectIds[id]) continue;
    takeObjectId(id);
    return id;
  }
  throw xlerror("too many objects");
}

void Drawing::begin(std::uint16_t drawingId, std::uint32_t patriarchId) {
  _root = std::make_unique<OfficeArtDgContainer>();
  OfficeArtFDG& head = _root->add(std::make_unique<OfficeArtFDG>());
  head.setInstance(drawingId);
  head.csp = 1;
  head.spidCur = patriarchId;
  OfficeArtSpContainer& shape = patriarch().add(std::make_unique<OfficeArtSpContainer>());
  shape.add(std::make_unique<OfficeArtFSPGR>());
  OfficeArtFSP& fsp = shape.add(std::make_unique<OfficeArtFSP>());
  fsp.spid = patriarchId;
  fsp.flags = OfficeArtFSP::kGroup | OfficeArtFSP::kPatriarch;
}

OfficeArtSpgrContainer& Drawing::patriarch() {
  if (auto* group = _root->find<OfficeArtSpgrContainer>()) return *group;
  return _root->add(std::make_unique<OfficeArtSpgrContainer>());
}

OfficeArtSpContainer& Drawing::addShape(std::uint32_t shapeId, std::uint16_t shapeType,
                                        std::unique_ptr<OfficeArtFOPT> options, const CellAnchor& anchor,
                                        bool hasMoreOptions) {
  if (auto* head = _root->find<OfficeArtFDG>()) {
    ++head->csp;
    head->spidCur = shapeId;
  }
  OfficeArtSpContainer& shape = patriarch().add(std::make_unique<OfficeArtSpContainer>());
  OfficeArtFSP& fsp = shape.add(std::make_unique<OfficeArtFSP>());
  fsp.setInstance(shapeType);
  fsp.spid = shapeId;
  fsp.flags = OfficeArtFSP::kHaveAnchor | OfficeArtFSP::kHaveShapeType;
  shape.add(std::move(options));
  if (hasMoreOptions) {
    shape.add(std::make_unique<OfficeArtSecondaryFOPT>());
    shape.add(std::make_unique<OfficeArtTertiaryFOPT>());
  }
  shape.add(std::make_unique<OfficeArtClientAnchorSheet>()).anchor = anchor;
  shape.add(std::make_unique<OfficeArtClientData>());
  return shape;
}

PlacedPicture Drawing::picture(std::size_t index) const {
  const Picture& placed = _pictures.at(index);
  PlacedPicture picture;
  picture.id = static_cast<int>(*pictureOf(*placed.shape)) - 1;
  if (placed.anchor != nullptr) picture.anchor = placed.anchor->anchor;
  return picture;
}

void Drawing::addPicture(std::uint32_t shapeId, const CellAnchor& anchor, int pictureId) {
  const std::uint16_t objectId = nextObjectId();
  OfficeArtSpContainer& shape = addShape(shapeId, OfficeArtFSP::kPictureFrame, pictureOptions(pictureId), anchor, true);
  shape.find<OfficeArtClientData>()->objects.push_back(Obj::ofPicture(objectId));
  _pictures.push_back({&shape, &patriarch(), shape.find<OfficeArtClientAnchorSheet>()});
}

void Drawing::removePicture(std::size_t index) {
  const Picture placed = _pictures.at(index);
  std::erase_if(placed.group->children, [&](const auto& child) { return child.get() == placed.shape; });
  if (auto* head = _root->find<OfficeArtFDG>(); head != nullptr && head->csp > 0) --head->csp;
  _pictures.erase(_pictures.begin() + static_cast<std::ptrdiff_t>(index));
}

std::uint16_t Drawing::addComment(std::uint32_t shapeId, const CellAnchor& anchor, std::u16string_view text,
                                  std::uint16_t font) {
  auto textObject = TextObject::ofNote(text, font);
  const std::uint16_t objectId = nextObjectId();
  OfficeArtSpContainer& shape = addShape(shapeId, OfficeArtFSP::kTextBox, noteOptions(), anchor, false);
  shape.find<OfficeArtClientData>()->objects.push_back(Obj::ofNote(objectId));
  _comments.try_emplace(objectId, textObject.get());
  shape.add(std::make_unique<OfficeArtClientTextbox>()).objects.push_back(std::move(textObject));
  return objectId;
}

const std::u16string* Drawing::commentText(std::uint16_t objectId) const {
  const auto found = _comments.find(objectId);
  return found == _comments.end() ? nullptr : &found->second->text();
}

bool Drawing::moveAnchors(const std::function<bool(CellAnchor&, bool)>& move) {
  bool changed = false;
  forEachOf<OfficeArtSpContainer>(_root.get(), [&](OfficeArtSpContainer& shape) {
    auto* anchor = shape.find<OfficeArtClientAnchorSheet>();
    if (anchor == nullptr) return;
    const Obj* object = objectOf(shape);
    changed = move(anchor->anchor, object != nullptr && object->ot == object_type::note) || changed;
  });
  return changed;
}

void Drawing::forEachShapeId(const std::function<void(std::uint32_t)>& visit) const {
  forEachOf<OfficeArtFSP>(_root.get(), [&](OfficeArtFSP& shape) { visit(shape.spid); });
}

void Drawing::renumber(std::uint16_t drawingId, const ShapeIds& ids) {
  if (_root == nullptr) return;
  const auto renewed = [&](std::uint32_t id) {
    const auto found = ids.find(id);
    return found == ids.end() ? 0 : found->second;
  };
  std::uint32_t last = 0;
  forEachRecord(*_root, [&](OfficeArtRecordBase& record) {
    if (auto* shape = dynamic_cast<OfficeArtFSP*>(&record)) {
      shape->spid = renewed(shape->spid);
      last = std::max(last, shape->spid);
    } else if (auto* connector = dynamic_cast<OfficeArtFConnectorRule*>(&record)) {
      for (std::uint32_t* id : {&connector->spidA, &connector->spidB, &connector->spidC}) *id = renewed(*id);
    } else if (auto* arc = dynamic_cast<OfficeArtFArcRule*>(&record)) {
      arc->spid = renewed(arc->spid);
    } else if (auto* callout = dynamic_cast<OfficeArtFCalloutRule*>(&record)) {
      callout->spid = renewed(callout->spid);
    } else if (auto* options = dynamic_cast<OfficeArtFOPT*>(&record)) {
      for (const std::uint16_t opid : {property::nextShape, property::masterShape}) {
        if (const auto id = options->table.value(opid)) options->table.setValue(opid, renewed(*id));
      }
    }
  });
  if (auto* head = _root->find<OfficeArtFDG>()) {
    head->setInstance(drawingId);
    head->spidCur = last;
  }
}

}  // namespace rubrica::officeart
