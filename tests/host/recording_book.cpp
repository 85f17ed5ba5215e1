#include "tests/host/recording_book.h"

#include <algorithm>

namespace rubrica::host::testing {

RecordingBook* RecordingBook::latest = nullptr;
int RecordingBook::alive = 0;

RecordingBook::RecordingBook(bool isXmlForm) : isXml(isXmlForm) {
  latest = this;
  ++alive;
}

RecordingBook::~RecordingBook() {
  if (latest == this) latest = nullptr;
  --alive;
}

std::string RecordingBook::last(const std::string& name) const {
  const auto found =
      std::find_if(_lines->rbegin(), _lines->rend(), [&](const std::string& l) { return l.rfind(name + "(", 0) == 0; });
  return found != _lines->rend() ? *found : std::string();
}

Sheet* RecordingBook::addSheet(const char16_t* name, Sheet* initSheet) {
  calls.answer<void>("addSheet", name, initSheet);
  if (refusesNewObjects) return nullptr;
  sheets.push_back(std::make_unique<RecordingSheet>(_lines));
  sheets.back()->calls.texts["name"] = name;
  return sheets.back().get();
}

Sheet* RecordingBook::getSheet(int index) {
  return index >= 0 && index < sheetCount() ? sheets[static_cast<std::size_t>(index)].get() : nullptr;
}

bool RecordingBook::delSheet(int index) {
  calls.answer<void>("delSheet", index);
  if (index < 0 || index >= sheetCount() || sheetCount() == 1) return false;
  sheets.erase(sheets.begin() + index);
  return true;
}

Format* RecordingBook::addFormat(Format* initFormat) {
  calls.answer<void>("addFormat", initFormat);
  if (refusesNewObjects) return nullptr;
  formats.push_back(std::make_unique<RecordingFormat>(_lines));
  return formats.back().get();
}

Font* RecordingBook::addFont(Font* initFont) {
  calls.answer<void>("addFont", initFont);
  if (refusesNewObjects) return nullptr;
  fonts.push_back(std::make_unique<RecordingFont>(_lines));
  return fonts.back().get();
}

Format* RecordingBook::format(int index) {
  calls.answer<void>("format", index);
  return index >= 0 && index < formatSize() ? formats[static_cast<std::size_t>(index)].get() : nullptr;
}

Font* RecordingBook::font(int index) {
  calls.answer<void>("font", index);
  return index >= 0 && index < fontSize() ? fonts[static_cast<std::size_t>(index)].get() : nullptr;
}

double RecordingBook::datePack(int year, int month, int day, int hour, int min, int sec, int msec) {
  return rubrica::datePack(false, year, month, day, hour, min, sec, msec);
}

bool RecordingBook::dateUnpack(double value, int* year, int* month, int* day, int* hour, int* min, int* sec,
                               int* msec) {
  return rubrica::dateUnpack(false, value, year, month, day, hour, min, sec, msec);
}

bool RecordingBook::saveRaw(const void** data, std::size_t* size) {
  *data = rawData.empty() ? nullptr : rawData.data();
  *size = rawData.size();
  return calls.answer<bool>("saveRaw");
}

}  // namespace rubrica::host::testing

namespace rubrica {

Book* createBiffBook() noexcept {
  return new host::testing::RecordingBook(false);
}
Book* createXmlBook() noexcept {
  return new host::testing::RecordingBook(true);
}

}  // namespace rubrica
