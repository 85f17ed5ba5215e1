// The TextObject record: how the text of a shape is set, and the text in the CONTINUE records behind it.
#include "engine/xlerror.h"
#include "officeart/object_records.h"

namespace rubrica::officeart {
namespace {

constexpr char kTextError[] = "error in record TextObject";
constexpr std::uint8_t kHighByte = 1;  // of the flag byte that each text record begins with: 16-bit characters
// The flag byte and as many characters as fit; one byte of the record stays free, as characters aren't divided.
constexpr std::size_t kMostCharactersARecord = (kMostRecordBytes - 2) / sizeof(char16_t);
constexpr std::uint16_t kRunSize = 8;

// What every part of the record has in front of the formula.
struct Head {
  std::uint16_t grbit = 0, rot = 0;
  std::array<std::byte, 6> control{};
  std::uint16_t cchText = 0, cbRuns = 0, ifntEmpty = 0;
};

Head takeHead(RecordReader& reader) {
  Head head;
  const bool whole = reader.take(head.grbit) && reader.take(head.rot) && reader.take(head.control) &&
                     reader.take(head.cchText) && reader.take(head.cbRuns) && reader.take(head.ifntEmpty);
  if (!whole) throw xlerror(kTextError);
  return head;
}

// The characters of one text record, at most `most`.
std::size_t appendText(ByteView part, std::size_t most, std::u16string& text) {
  if (part.empty()) return 0;
  const bool wide = (std::to_integer<std::uint8_t>(part.front()) & kHighByte) != 0;
  const ByteView characters = part.subspan(1);
  const std::size_t count = std::min(most, characters.size() / (wide ? sizeof(char16_t) : 1));
  for (std::size_t i = 0; i < count; ++i) {
    char16_t character = 0;
    std::memcpy(&character, characters.data() + (wide ? 2 * i : i), wide ? 2 : 1);
    text.push_back(character);
  }
  return count;
}

}  // namespace

std::size_t TextObject::continuesOf(ByteView body, const std::vector<ByteView>& following) {
  RecordReader reader(Slice::copyOf(body));
  const Head head = takeHead(reader);
  std::u16string text;
  std::size_t used = 0;
  while (text.size() < head.cchText) {
    if (used == following.size() || appendText(following[used++], head.cchText - text.size(), text) == 0) {
      throw xlerror(kTextError);
    }
  }
  for (std::size_t runs = 0; head.cchText != 0 && runs < head.cbRuns && used < following.size(); ++used) {
    runs += following[used].size();
  }
  return used;
}

void TextObject::read(const RecordRun& run) {
  RecordReader reader(Slice::copyOf(run.body));
  const Head head = takeHead(reader);
  grbit = head.grbit;
  rot = head.rot;
  _control = head.control;
  cchText = head.cchText;
  cbRuns = head.cbRuns;
  ifntEmpty = head.ifntEmpty;
  const Slice formula = reader.takeRest();
  RecordReader formulaReader(formula);
  std::uint16_t formulaSize = 0;
  if (!formulaReader.take(formulaSize) || formulaSize > formulaReader.left()) throw xlerror(kTextError);
  _formula.assign(formula.view().begin(), formula.view().end());
  for (const ByteView part : run.continues) {
    if (_text.size() < cchText) appendText(part, cchText - _text.size(), _text);
    _continues.emplace_back(part.begin(), part.end());
  }
  if (_text.size() < cchText) throw xlerror(kTextError);
}

void TextObject::write(RecordSink& sink) const {
  BytesBuilder body;
  body.field(grbit).field(rot).field(_control).field(cchText).field(cbRuns).field(ifntEmpty).bytes(_formula);
  sink.record(kTextObject, body.take());
  for (const auto& part : _continues) sink.record(kContinue, part);
}

std::unique_ptr<TextObject> TextObject::ofNote(std::u16string_view text, std::uint16_t font) {
  if (text.size() > kMostCharacters) throw xlerror("string is too long");
  auto object = std::make_unique<TextObject>();
  object->_formula = BytesBuilder().field(std::uint16_t{0}).take();
  object->_text = text;
  object->cchText = static_cast<std::uint16_t>(text.size());
  if (text.empty()) return object;
  object->cbRuns = 2 * kRunSize;
  for (; !text.empty(); text.remove_prefix(std::min(text.size(), kMostCharactersARecord))) {
    BytesBuilder part;
    part.field(kHighByte).bytes(std::as_bytes(std::span(text.substr(0, kMostCharactersARecord))));
    object->_continues.push_back(part.take());
  }
  // One run from the first character on, and the closing one, which states where the text ends.
  BytesBuilder runs;
  for (const std::uint16_t word : {std::uint16_t{0}, font, std::uint16_t{0}, std::uint16_t{0}, object->cchText,
                                   std::uint16_t{0}, std::uint16_t{0}, std::uint16_t{0}}) {
    runs.field(word);
  }
  object->_continues.push_back(runs.take());
  return object;
}

}  // namespace rubrica::officeart
