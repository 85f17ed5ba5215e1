#include "biff/name_table.h"

#include <algorithm>

#include "biff/records/record_io.h"

namespace rubrica {
namespace {

constexpr std::uint16_t kHeaderSize = 14;

// By the code that is the built-in name's one character.
constexpr std::u16string_view kBuiltInNames[] = {
    u"Consolidate_Area", u"Auto_Open",       u"Auto_Close",   u"Extract",        u"Database",
    u"Criteria",         u"Print_Area",      u"Print_Titles", u"Recorder",       u"Data_Form",
    u"Auto_Activate",    u"Auto_Deactivate", u"Sheet_Title",  u"_FilterDatabase"};

// A declared size never reaches the largest body; the rest of a longer name is read past the record all the same.
std::uint16_t declaredSize(std::size_t size) {
  return static_cast<std::uint16_t>(size >= kMaxRecordSize ? kMaxRecordSize - 1 : size);
}

}  // namespace

std::u16string Lbl::displayName() const {
  if (builtIn() && name.cch == 1 && name.text[0] < std::size(kBuiltInNames)) {
    return std::u16string(kBuiltInNames[name.text[0]]);
  }
  return std::u16string(name.view());
}

namespace {
// The capital of a letter; the Greek and Cyrillic rows too, which sheet names of real books hold.
char16_t capital(char16_t c) {
  const bool latin = (c >= u'a' && c <= u'z') || (c >= 0xE0 && c <= 0xFE && c != 0xF7);
  if (latin || (c >= 0x3B1 && c <= 0x3C9 && c != 0x3C2) || (c >= 0x430 && c <= 0x44F))
    return static_cast<char16_t>(c - 0x20);
  if (c >= 0x450 && c <= 0x45F) return static_cast<char16_t>(c - 0x50);
  return c;
}
}  // namespace

bool sameNameIgnoringCase(std::u16string_view a, std::u16string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char16_t x, char16_t y) { return capital(x) == capital(y); });
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
    const std::size_t size =
        kHeaderSize + (name.name.cch > 0 ? name.name.size() : 0) + name.formula.size() + name.texts.size();
    xls.writeHeader(id::kLbl, declaredSize(size));
    xls.writeInt16(name.grbit);
    xls.writeInt8(name.chKey);
    xls.writeInt8(static_cast<std::uint8_t>(name.name.cch));
    xls.writeInt16(static_cast<std::uint16_t>(name.formula.size()));
    xls.writeInt16(name.reserved);
    xls.writeInt16(name.itab);
    xls.write(name.textCounts.data(), name.textCounts.size());
    if (name.name.cch > 0) name.name.write(xls);
    xls.write(name.formula.data(), name.formula.size());
    xls.write(name.texts.data(), name.texts.size());
  }
}

void NameTable::renumberSheets(const std::function<int(int)>& mapping) {
  std::erase_if(_names, [&](const Lbl& name) { return name.itab > 0 && mapping(name.itab - 1) < 0; });
  for (Lbl& name : _names) {
    if (name.itab > 0) name.itab = static_cast<std::uint16_t>(mapping(name.itab - 1) + 1);
  }
}

void NameTable::cloneScope(int fromSheet, int toSheet) {
  const std::size_t count = _names.size();
  for (std::size_t i = 0; i < count; ++i) {
    if (_names[i].itab != fromSheet + 1) continue;
    Lbl copy = _names[i];
    copy.itab = static_cast<std::uint16_t>(toSheet + 1);
    _names.push_back(std::move(copy));
  }
}

}  // namespace rubrica
