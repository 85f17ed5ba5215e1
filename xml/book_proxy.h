// XMLBookProxy: what a caller holds of an OOXML book. A file's flavour is known only by trying: the proxy forwards
// every operation to its current book, and gives a load that failed one more try with a book of the other flavour. It
// owns that book.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>

#include "engine/book.h"

namespace rubrica {

class XMLBookProxy final : public IBookT<char16_t> {
 public:
  using Text = const char16_t*;

  XMLBookProxy();
  ~XMLBookProxy() override;

  bool load(Text filename, Text tempFile) override;
  bool loadSheet(Text filename, int sheetIndex, Text tempFile) override;
  bool loadPartially(Text filename, int sheetIndex, int firstRow, int lastRow, Text tempFile) override;
  bool loadWithoutEmptyCells(Text filename) override { return _book->loadWithoutEmptyCells(filename); }
  bool loadInfo(Text filename) override;
  bool save(Text filename, bool useTempFile) override { return _book->save(filename, useTempFile); }
  bool loadRaw(const void* data, std::size_t size, int sheetIndex, int firstRow, int lastRow) override;
  bool saveRaw(const void** data, std::size_t* size) override { return _book->saveRaw(data, size); }
  ISheetT<char16_t>* addSheet(Text name, ISheetT<char16_t>* initSheet) override {
    return _book->addSheet(name, initSheet);
  }
  ISheetT<char16_t>* insertSheet(int index, Text name, ISheetT<char16_t>* initSheet) override {
    return _book->insertSheet(index, name, initSheet);
  }
  ISheetT<char16_t>* getSheet(int index) override { return _book->getSheet(index); }
  Text getSheetName(int index) override { return _book->getSheetName(index); }
  SheetType sheetType(int index) override { return _book->sheetType(index); }
  bool moveSheet(int srcIndex, int dstIndex) override { return _book->moveSheet(srcIndex, dstIndex); }
  bool delSheet(int index) override { return _book->delSheet(index); }
  int sheetCount() override { return _book->sheetCount(); }
  IFormatT<char16_t>* addFormat(IFormatT<char16_t>* initFormat) override { return _book->addFormat(initFormat); }
  IFontT<char16_t>* addFont(IFontT<char16_t>* initFont) override { return _book->addFont(initFont); }
  int addCustomNumFormat(Text customNumFormat) override { return _book->addCustomNumFormat(customNumFormat); }
  Text customNumFormat(int fmt) override { return _book->customNumFormat(fmt); }
  IFormatT<char16_t>* format(int index) override { return _book->format(index); }
  int formatSize() override { return _book->formatSize(); }
  IFontT<char16_t>* font(int index) override { return _book->font(index); }
  int fontSize() override { return _book->fontSize(); }
  double datePack(int year, int month, int day, int hour, int min, int sec, int msec) override {
    return _book->datePack(year, month, day, hour, min, sec, msec);
  }
  bool dateUnpack(double value, int* year, int* month, int* day, int* hour, int* min, int* sec, int* msec) override {
    return _book->dateUnpack(value, year, month, day, hour, min, sec, msec);
  }
  Color colorPack(int red, int green, int blue) override { return _book->colorPack(red, green, blue); }
  void colorUnpack(Color color, int* red, int* green, int* blue) override {
    _book->colorUnpack(color, red, green, blue);
  }
  int activeSheet() override { return _book->activeSheet(); }
  void setActiveSheet(int index) override { _book->setActiveSheet(index); }
  int pictureSize() override { return _book->pictureSize(); }
  PictureType getPicture(int index, const void** data, std::size_t* size) override {
    return _book->getPicture(index, data, size);
  }
  int addPicture(Text filename) override { return _book->addPicture(filename); }
  int addPicture2(const void* data, std::size_t size) override { return _book->addPicture2(data, size); }
  int addPictureAsLink(Text filename, bool insert) override { return _book->addPictureAsLink(filename, insert); }
  Text defaultFont(int* size) override { return _book->defaultFont(size); }
  void setDefaultFont(Text name, int size) override { _book->setDefaultFont(name, size); }
  bool refR1C1() override { return _book->refR1C1(); }
  void setRefR1C1(bool refR1C1) override { _book->setRefR1C1(refR1C1); }
  bool rgbMode() override { return _book->rgbMode(); }
  void setRgbMode(bool rgbMode) override { _book->setRgbMode(rgbMode); }
  unsigned version() override { return _book->version(); }
  int biffVersion() override { return _book->biffVersion(); }
  bool isDate1904() override { return _book->isDate1904(); }
  bool setDate1904(bool date1904) override { return _book->setDate1904(date1904); }
  bool isTemplate() override { return _book->isTemplate(); }
  void setTemplate(bool tmpl) override { _book->setTemplate(tmpl); }
  bool setLocale(const char* locale) override { return _book->setLocale(locale); }
  const char* errorMessage() const override { return _book->errorMessage(); }
  void release() override;

 private:
  bool tryBothFlavours(const std::function<bool(IBookT<char16_t>&)>& load);

  std::unique_ptr<IBookT<char16_t>> _book;
  bool _isStrict = false;
};

}  // namespace rubrica
