// Reading and writing a sheet's drawing. The payloads of the MsoDrawing records make one stream of OfficeArt records;
// the sheet's own records stand between the pieces, each behind the piece that ends with its shape.
#include "officeart/drawing.h"
#include "officeart/record_writer.h"

namespace rubrica::officeart {
namespace {

// Takes the CONTINUE records from `at` on.
std::vector<ByteView> continuesFrom(const std::vector<SheetRecord>& records, std::size_t at) {
  std::vector<ByteView> parts;
  for (; at < records.size() && records[at].recordId == kContinue; ++at) parts.push_back(records[at].body);
  return parts;
}

// Calls `visit(record, end)` for the client records in stream order; `at` is where the record's header begins.
template <class Visit>
void forEachClientRecord(OfficeArtRecordBase& record, std::size_t at, const Visit& visit) {
  const std::size_t end = at + kHeaderSize + record.size();
  if (auto* data = dynamic_cast<OfficeArtClientData*>(&record)) return visit(data->objects, end);
  if (auto* text = dynamic_cast<OfficeArtClientTextbox*>(&record)) return visit(text->objects, end);
  auto* container = dynamic_cast<OfficeArtContainer*>(&record);
  if (container == nullptr) return;
  at += kHeaderSize;
  for (const auto& child : container->children) {
    forEachClientRecord(*child, at, visit);
    at += kHeaderSize + child->size();
  }
}

// Keeps the records of a copy.
class RecordKeeper final : public RecordSink {
 public:
  void record(std::uint16_t recordId, ByteView body) override {
    _kept.push_back({recordId, {body.begin(), body.end()}});
  }
  std::vector<SheetRecord> views() const {
    std::vector<SheetRecord> views;
    for (const auto& [recordId, body] : _kept) views.push_back({recordId, body});
    return views;
  }

 private:
  std::vector<std::pair<std::uint16_t, std::vector<std::byte>>> _kept;
};

}  // namespace

// An object and where in the stream it stands.
struct Drawing::ObjectAt {
  std::size_t offset = 0;
  std::unique_ptr<ObjBase> object;
};

Drawing::Drawing(const Drawing& other) {
  RecordKeeper keeper;
  other.write(keeper);
  read(keeper.views());
}

Drawing& Drawing::operator=(const Drawing& other) {
  if (this != &other) *this = Drawing(other);
  return *this;
}

void Drawing::read(const std::vector<SheetRecord>& records) {
  *this = Drawing();
  std::vector<std::byte> stream;
  std::vector<ObjectAt> objects;
  for (std::size_t i = 0; i < records.size();) {
    const SheetRecord& record = records[i++];
    if (record.recordId != kObj && record.recordId != kTextObject) {
      stream.insert(stream.end(), record.body.begin(), record.body.end());
      continue;
    }
    RecordRun run{record.recordId, record.body, continuesFrom(records, i)};
    std::unique_ptr<ObjBase> object;
    // Behind an object there may also be CONTINUE records of the drawing. An Obj has some of its own only when full.
    if (record.recordId == kTextObject) {
      run.continues.resize(TextObject::continuesOf(run.body, run.continues));
      object = std::make_unique<TextObject>();
    } else {
      if (run.body.size() < kMostRecordBytes) run.continues.clear();
      object = std::make_unique<Obj>();
    }
    object->read(run);
    i += run.continues.size();
    objects.push_back({stream.size(), std::move(object)});
  }
  if (!stream.empty()) {
    RecordReader reader{Slice(std::move(stream))};
    RecordHeader header;
    if (!takeHeader(reader, header) || header.recType != type::dgContainer) {
      throw xlerror("MsoDrawing size is incorrect");
    }
    if (header.recLen > reader.left()) throw xlerror(ruleOf(type::dgContainer).message);
    auto root = std::make_unique<OfficeArtDgContainer>();
    RecordReader body(reader.takeSlice(header.recLen), 1);
    root->read(header, body);
    if (reader.left() != 0) throw xlerror("MsoDrawing size is incorrect");
    _root = std::move(root);
  }
  attach(objects);
  index();
}

// Each object goes to the last client record that ends before it, which keeps the order of all of them.
void Drawing::attach(std::vector<ObjectAt>& objects) {
  ObjectList* owner = &_leading;
  auto next = objects.begin();
  const auto giveUpTo = [&](std::size_t end) {
    for (; next != objects.end() && next->offset < end; ++next) owner->push_back(std::move(next->object));
  };
  if (_root != nullptr) {
    forEachClientRecord(*_root, 0, [&](ObjectList& list, std::size_t end) {
      giveUpTo(end);
      owner = &list;
    });
  }
  giveUpTo(static_cast<std::size_t>(-1));
}

void Drawing::write(RecordSink& sink) const {
  for (const auto& object : _leading) object->write(sink);
  if (_root == nullptr) return;
  RecordWriter writer(sink, kMsoDrawing);
  _root->write(writer);
  writer.finish();
}

}  // namespace rubrica::officeart
