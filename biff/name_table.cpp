#include "biff/name_table.h"

#include <algorithm>
#include <numeric>

#include "biff/records/record_io.h"

namespace rubrica {
namespace {

constexpr std::uint16_t kHeaderSize = 14;

// By the code that is the built-in name's one character.
constexpr std::u16string_view kBuiltInNames[] = {
    u"Consolidate_Area", u"Auto_Open",       u"Auto_Close",   u"Extract",        u"Database",
    u"Criteria",         u"Print_Area",      u"Print_Titles", u"Recorder",       u"Data_Form",
    u"Auto_Activate",    u"Auto_Deactivate", u"Sheet_Title",  u"_FilterDatabase"};

// The record's own body never reaches the largest size; what is longer goes on in CONTINUE records.
std::uint16_t declaredSize(std::size_t size) {
  return static_cast<std::uint16_t>(size >= kMaxRecordSize ? kMaxRecordSize - 1 : size);
}

// What a built-in name is entered under besides its text.
std::u16string codeName(std::u16string_view code) {
  return u'\0' + std::u16string(code);
}

NameMapping identity(std::size_t count) {
  NameMapping mapping(count);
  std::iota(mapping.begin(), mapping.end(), 0u);
  return mapping;
}

}  // namespace

std::u16string_view Lbl::displayName() const {
  if (builtIn() && name.cch == 1 && name.text[0] < std::size(kBuiltInNames)) return kBuiltInNames[name.text[0]];
  return name.view();
}

void NameTable::read(Xls& xls, std::uint16_t size, BookState& state) {
  if (size < kHeaderSize) throwSizeIsIncorrect("Lbl");
  std::uint16_t remaining = size, cce = 0;
  std::uint8_t cch = 0;
  Lbl name;
  xls.readInt16(name.grbit, remaining);
  xls.readWithContinueRecords(&name.chKey, 1, remaining);
  xls.readWithContinueRecords(&cch, 1, remaining);
  xls.readInt16(cce, remaining);
  xls.readInt16(name.reserved, remaining);
  xls.readInt16(name.itab, remaining);
  xls.readWithContinueRecords(name.textCounts.data(), name.textCounts.size(), remaining);
  if (cch > 0) name.name.read(xls, state.pool, cch, remaining, state.textForm());
  name.formula.resize(cce);
  if (xls.readWithContinueRecords(name.formula.data(), cce, remaining) != cce) throwSizeIsIncorrect("Lbl");
  const auto texts = xls.view(remaining);
  if (!state.isBiff5()) {
    name.texts.assign(texts.begin(), texts.end());
  } else {
    name.textCounts = {};
    name.reserved = 0;
  }
  _names.push_back(std::move(name));
}

void NameTable::write(Xls& xls) const {
  for (const Lbl& name : _names) {
    const std::size_t head = kHeaderSize + (name.name.cch > 0 ? name.name.size() : 0);
    const std::size_t size = head + name.formula.size() + name.texts.size();
    std::uint16_t room = declaredSize(size);
    xls.writeHeader(id::kLbl, room);
    xls.writeInt16(name.grbit);
    xls.writeInt8(name.chKey);
    xls.writeInt8(static_cast<std::uint8_t>(name.name.cch));
    xls.writeInt16(static_cast<std::uint16_t>(name.formula.size()));
    xls.writeInt16(name.reserved);
    xls.writeInt16(name.itab);
    xls.write(name.textCounts.data(), name.textCounts.size());
    if (name.name.cch > 0) name.name.write(xls);
    room = static_cast<std::uint16_t>(room - head);
    xls.writeWithContinueRecords(name.formula.data(), name.formula.size(), room, size - head);
    xls.writeWithContinueRecords(name.texts.data(), name.texts.size(), room, name.texts.size());
  }
}

// A built-in name is found by its code too; no other name begins with such a character.
void NameTable::indexNewNames() const {
  while (_index.size() < _names.size()) {
    const Lbl& name = _names[_index.size()];
    _index.add(name.displayName(), name.itab);
    if (name.builtIn()) _index.addAlias(codeName(name.name.view()), name.itab);
  }
}

std::optional<std::size_t> NameTable::find(std::u16string_view name, std::uint16_t itab) const {
  indexNewNames();
  return _index.find(name, itab);
}

std::optional<std::size_t> NameTable::find(BuiltInName name, std::uint16_t itab) const {
  indexNewNames();
  const auto code = static_cast<char16_t>(name);
  return _index.find(codeName({&code, 1}), itab);
}

NameMapping NameTable::remove(const std::function<bool(const Lbl&)>& goes) {
  NameMapping mapping(_names.size(), kNoName);
  std::vector<Lbl> kept;
  kept.reserve(_names.size());
  for (std::size_t i = 0; i < _names.size(); ++i) {
    if (goes(_names[i])) continue;
    mapping[i] = static_cast<std::uint32_t>(kept.size());
    kept.push_back(std::move(_names[i]));
  }
  _names = std::move(kept);
  _index.clear();
  return mapping;
}

NameMapping NameTable::renumberSheets(const std::function<int(int)>& mapping) {
  NameMapping left = remove([&](const Lbl& name) { return name.itab > 0 && mapping(name.itab - 1) < 0; });
  for (Lbl& name : _names) {
    if (name.itab > 0) name.itab = Lbl::scopeOf(mapping(name.itab - 1));
  }
  _index.clear();
  return left;
}

NameMapping NameTable::cloneScope(int fromSheet, int toSheet) {
  NameMapping mapping = identity(_names.size());
  for (std::size_t i = 0; i < mapping.size(); ++i) {
    if (_names[i].itab != Lbl::scopeOf(fromSheet)) continue;
    mapping[i] = static_cast<std::uint32_t>(_names.size());
    Lbl copy = _names[i];
    copy.itab = Lbl::scopeOf(toSheet);
    _names.push_back(std::move(copy));
  }
  return mapping;
}

}  // namespace rubrica
