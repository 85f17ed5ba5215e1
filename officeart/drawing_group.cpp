#include "officeart/drawing_group.h"

#include "officeart/record_writer.h"

namespace rubrica::officeart {
namespace {

constexpr char kGroupError[] = "error in record MsoDrawingGroup";
constexpr std::uint32_t kMostDrawings = 0xFFE;  // an id has the 12 bits of recInstance

// What programs state for shapes that say nothing else: text may be turned with the shape, system fill and line
// colours.
std::unique_ptr<OfficeArtFOPT> defaultProperties() {
  auto properties = std::make_unique<OfficeArtFOPT>();
  properties->add(property::text, 0x00080008);
  properties->add(property::fillColor, 0x08000041);
  properties->add(property::lineColor, 0x08000040);
  return properties;
}

}  // namespace

void DrawingGroup::append(std::uint16_t recordId, ByteView body) {
  _parts.push_back({recordId, body.size()});
  _reading.insert(_reading.end(), body.begin(), body.end());
}

void DrawingGroup::finishReading() {
  if (_parts.empty()) return;
  _reading.shrink_to_fit();
  _original = Slice(std::move(_reading));
  _reading = {};
  RecordReader reader(_original);
  RecordHeader header;
  if (!takeHeader(reader, header) || header.recType != type::dggContainer) throw xlerror(kGroupError);
  if (header.recLen > reader.left()) throw xlerror(ruleOf(type::dggContainer).message);
  auto root = std::make_unique<OfficeArtDggContainer>();
  RecordReader body(reader.takeSlice(header.recLen), 1);
  root->read(header, body);
  if (reader.left() != 0) throw xlerror(kGroupError);
  _root = std::move(root);
  _ids = _root->find<OfficeArtFDGGBlock>();
  _store = _root->find<OfficeArtBStoreContainer>();
  indexPictures();
}

void DrawingGroup::write(RecordSink& sink) const {
  std::size_t at = 0;
  for (const RecordPart& part : _parts) {
    sink.record(part.recordId, _original.part(at, part.size).view());
    at += part.size;
  }
  if (!_parts.empty() || _root == nullptr) return;
  RecordWriter writer(sink, kMsoDrawingGroup);
  _root->write(writer);
  writer.finish();
}

// From here on the group is written from its records; pictures share the bytes that it was read from.
void DrawingGroup::change() {
  _parts.clear();
  _original = {};
}

OfficeArtDggContainer& DrawingGroup::root() {
  change();
  if (_root == nullptr) {
    _root = std::make_unique<OfficeArtDggContainer>();
    _root->add(defaultProperties());
    _root->add(std::make_unique<OfficeArtSplitMenuColorContainer>());
  }
  return *_root;
}

OfficeArtFDGGBlock& DrawingGroup::ids() {
  OfficeArtDggContainer& group = root();
  if (_ids == nullptr) {
    auto block = std::make_unique<OfficeArtFDGGBlock>();
    _ids = block.get();
    group.children.insert(group.children.begin(), std::move(block));
  }
  return *_ids;
}

// The store stands behind the ids.
OfficeArtBStoreContainer& DrawingGroup::store() {
  ids();
  if (_store == nullptr) {
    auto made = std::make_unique<OfficeArtBStoreContainer>();
    _store = made.get();
    _root->children.insert(_root->children.begin() + 1, std::move(made));
  }
  return *_store;
}

void DrawingGroup::indexPictures() {
  if (_store == nullptr) return;
  for (const auto& child : _store->children) {
    auto* entry = dynamic_cast<OfficeArtFBSE*>(child.get());
    if (entry != nullptr && entry->blip() != nullptr) _pictures.push_back(entry->blip());
  }
}

BlipContent* DrawingGroup::pictureAt(std::size_t index) const {
  return index < _pictures.size() ? _pictures[index] : nullptr;
}

BlipContent* DrawingGroup::pictureOf(int id) const {
  if (_store == nullptr || id < 0 || static_cast<std::size_t>(id) >= _store->children.size()) return nullptr;
  OfficeArtRecordBase* child = _store->children[static_cast<std::size_t>(id)].get();
  if (auto* entry = dynamic_cast<OfficeArtFBSE*>(child)) return entry->blip();
  return dynamic_cast<BlipContent*>(child);
}

int DrawingGroup::addPicture(ByteView picture) {
  auto entry = OfficeArtFBSE::of(picture);
  OfficeArtBStoreContainer& entries = store();
  _pictures.push_back(entry->blip());
  entries.add(std::move(entry));
  entries.setInstance(entries.children.size());
  return static_cast<int>(entries.children.size() - 1);
}

void DrawingGroup::addUses(int id, int uses) {
  if (_store == nullptr || id < 0 || static_cast<std::size_t>(id) >= _store->children.size()) return;
  auto* entry = dynamic_cast<OfficeArtFBSE*>(_store->children[static_cast<std::size_t>(id)].get());
  if (entry == nullptr) return;
  change();
  const std::int64_t count = std::int64_t{entry->cRef} + uses;
  entry->cRef = static_cast<std::uint32_t>(std::max<std::int64_t>(count, 0));
}

void DrawingGroup::claim(std::uint32_t drawingId, std::uint32_t shapeId) {
  const std::uint32_t cluster = shapeId / IdCluster::kIds;
  constexpr std::uint32_t kMostClusters = 1u << 16;  // ids beyond these 67 million are no program's, and stay alone
  if (cluster == 0 || cluster > kMostClusters) return;
  OfficeArtFDGGBlock& block = ids();
  _mostDrawingId = std::max(_mostDrawingId, drawingId);
  if (block.clusters.size() < cluster) block.clusters.resize(cluster, {drawingId, 0});
  std::uint32_t& taken = block.clusters[cluster - 1].cspidCur;
  taken = std::max(taken, shapeId % IdCluster::kIds + 1);
  block.spidMax = std::max(block.spidMax, shapeId + 1);
}

std::uint16_t DrawingGroup::newDrawing() {
  OfficeArtFDGGBlock& block = ids();
  std::uint32_t drawingId = _mostDrawingId + 1;
  for (const IdCluster& cluster : block.clusters) {
    if (cluster.dgid <= kMostDrawings) drawingId = std::max(drawingId, cluster.dgid + 1);
  }
  if (drawingId > kMostDrawings) throw xlerror("too many drawings");
  _mostDrawingId = drawingId;
  block.clusters.push_back({drawingId, 0});
  return static_cast<std::uint16_t>(drawingId);
}

std::uint32_t DrawingGroup::newShape(std::uint32_t drawingId) {
  OfficeArtFDGGBlock& block = ids();
  std::size_t cluster = block.clusters.size();
  while (cluster > 0 && block.clusters[cluster - 1].dgid != drawingId) --cluster;
  if (cluster == 0 || block.clusters[cluster - 1].cspidCur >= IdCluster::kIds) {
    block.clusters.push_back({drawingId, 0});
    cluster = block.clusters.size();
  }
  const std::uint32_t id =
      static_cast<std::uint32_t>(cluster) * IdCluster::kIds + block.clusters[cluster - 1].cspidCur++;
  block.spidMax = std::max(block.spidMax, id + 1);
  ++block.cspSaved;
  return id;
}

void DrawingGroup::countDrawing(int drawings, int shapes) {
  OfficeArtFDGGBlock& block = ids();
  const auto changed = [](std::uint32_t count, int by) {
    return static_cast<std::uint32_t>(std::max<std::int64_t>(std::int64_t{count} + by, 0));
  };
  block.cdgSaved = changed(block.cdgSaved, drawings);
  block.cspSaved = changed(block.cspSaved, shapes);
}

}  // namespace rubrica::officeart
