// The Obj record: FtCmo and the subrecords behind it.
#include "engine/xlerror.h"
#include "officeart/object_records.h"

namespace rubrica::officeart {
namespace {

constexpr char kObjError[] = "error in record Obj";
constexpr std::uint16_t kFtEnd = 0, kFtPictureFormat = 7, kFtPictureFlags = 8, kFtNote = 13, kFtLbsData = 19,
                        kFtCmo = 21;
constexpr std::uint16_t kCmoSize = 18;

// Subrecords that begin with their length, by `ft`, and what is said where one isn't whole.
struct SubrecordRule {
  std::uint16_t ft;
  const char* message;
};
constexpr SubrecordRule kSubrecords[] = {{4, "error in record FtMacro"},
                                         {6, kObjError},  // FtGmo
                                         {kFtPictureFormat, kObjError},
                                         {kFtPictureFlags, kObjError},
                                         {9, "error in record FtPictFmla"},
                                         {10, kObjError},  // FtCbls
                                         {11, kObjError},  // FtRbo
                                         {12, kObjError},  // FtSbs
                                         {kFtNote, kObjError},
                                         {14, "error in record ObjLinkFmla"},
                                         {15, "error in record FtGboData"},
                                         {16, "error in record FtEdoData"},
                                         {17, "error in record FtRboData"},
                                         {18, "error in record FtCblsData"},
                                         {20, "error in record ObjLinkFmla"}};

const SubrecordRule* ruleOfSubrecord(std::uint16_t ft) {
  for (const SubrecordRule& rule : kSubrecords) {
    if (rule.ft == ft) return &rule;
  }
  return nullptr;
}

std::vector<std::byte> bytesOf(const Slice& slice) {
  return {slice.view().begin(), slice.view().end()};
}

// A list's data has no length of its own: a formula with its size, counts, and lists up to the record's end.
void checkLbsData(ByteView data) {
  RecordReader reader(Slice::copyOf(data));
  std::uint16_t ft = 0, continued = 0, formulaSize = 0, lines = 0;
  reader.take(ft);
  if (!reader.take(continued)) throw xlerror("error in record FtLbsData");
  if (continued == 0) return;
  const bool whole =
      reader.take(formulaSize) && reader.takeSlice(formulaSize).size() == formulaSize && reader.take(lines);
  if (!whole) throw xlerror("error in record FtLbsData");
}

std::vector<std::byte> subrecord(std::uint16_t ft, std::initializer_list<std::uint16_t> words) {
  BytesBuilder bytes;
  bytes.field(ft).field(static_cast<std::uint16_t>(words.size() * sizeof(std::uint16_t)));
  for (const std::uint16_t word : words) bytes.field(word);
  return bytes.take();
}

}  // namespace

std::unique_ptr<Obj> Obj::ofPicture(std::uint16_t id) {
  constexpr std::uint16_t kLockedPrintedAutoFillAndLine = 0x6011, kAsItIs = 0xFFFF, kAutoPicture = 1;
  auto obj = std::make_unique<Obj>();
  obj->_ft = kFtCmo;
  obj->_cb = kCmoSize;
  obj->ot = object_type::picture;
  obj->id = id;
  obj->grbit = kLockedPrintedAutoFillAndLine;
  obj->_subrecords = {{kFtPictureFormat, subrecord(kFtPictureFormat, {kAsItIs})},
                      {kFtPictureFlags, subrecord(kFtPictureFlags, {kAutoPicture})},
                      {kFtEnd, subrecord(kFtEnd, {})}};
  return obj;
}

std::unique_ptr<Obj> Obj::ofNote(std::uint16_t id) {
  constexpr std::uint16_t kLockedAutoLine = 0x4011;
  auto obj = std::make_unique<Obj>();
  obj->_ft = kFtCmo;
  obj->_cb = kCmoSize;
  obj->ot = object_type::note;
  obj->id = id;
  obj->grbit = kLockedAutoLine;
  // The GUID as eight words, fSharedNote, and an unused 32-bit number.
  obj->_subrecords = {{kFtNote, subrecord(kFtNote, {21500, 47652, 50954, 17214, 19379, 57508, 57547, 39084, 0, 16, 0})},
                      {kFtEnd, subrecord(kFtEnd, {})}};
  return obj;
}

void Obj::read(const RecordRun& run) {
  RecordReader reader(Slice::copyOf(run.body));
  const bool whole = reader.take(_ft) && reader.take(_cb) && reader.take(ot) && reader.take(id) && reader.take(grbit) &&
                     reader.take(_reserved);
  if (!whole) throw xlerror(kObjError);
  while (reader.left() >= 4) {
    const Slice all = reader.takeRest();
    RecordReader front(all);
    std::uint16_t ft = 0, length = 0;
    front.take(ft);
    front.take(length);
    const SubrecordRule* rule = ruleOfSubrecord(ft);
    const bool isList = ft == kFtLbsData && (ot == object_type::listBox || ot == object_type::dropDown);
    if (isList) checkLbsData(all.view());
    if (isList || rule == nullptr) {  // the end, and what has no length of its own
      _rest = bytesOf(all);
      if (ft == kFtEnd || isList) _subrecords.push_back({ft, std::move(_rest)});
      if (ft == kFtEnd || isList) _rest.clear();
      break;
    }
    if (length > front.left()) throw xlerror(rule->message);
    const std::size_t size = 4 + std::size_t{length};
    _subrecords.push_back({ft, bytesOf(all.part(0, size))});
    reader = RecordReader(all.part(size, all.size()));
  }
  if (reader.left() > 0) _rest = bytesOf(reader.takeRest());
  for (const ByteView part : run.continues) _continues.emplace_back(part.begin(), part.end());
}

void Obj::write(RecordSink& sink) const {
  BytesBuilder body;
  body.field(_ft).field(_cb).field(ot).field(id).field(grbit).field(_reserved);
  for (const Subrecord& part : _subrecords) body.bytes(part.bytes);
  body.bytes(_rest);
  sink.record(kObj, body.take());
  for (const auto& part : _continues) sink.record(kContinue, part);
}

}  // namespace rubrica::officeart
