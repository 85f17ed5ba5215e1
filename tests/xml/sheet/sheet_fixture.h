// Test support: an OOXML book of one flavour with one sheet, made-up text metrics, and a look at its parts.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/text.h"
#include "tests/engine/fake_metrics.h"
#include "tests/xml/flavours.h"
#include "tests/xml/trees/xml_text.h"
#include "xml/book_impl.h"
#include "xml/sheet_impl.h"

namespace rubrica::test {

template <class Tag>
class XmlSheets : public testing::Test {
 protected:
  using Sheet = XMLSheetImplT<Tag>;

  XmlSheets() { makeBook(); }

  void makeBook() {
    book = std::make_unique<XMLBookImplT<Tag>>();
    book->setTextMetrics(std::make_unique<FakeMetrics>());
    sheet = static_cast<Sheet*>(book->addSheet(u"One", nullptr));
  }
  std::string message() const { return book->errorMessage(); }
  // The same book after a save and a load.
  void reload() {
    const void* data = nullptr;
    std::size_t size = 0;
    ASSERT_TRUE(book->saveRaw(&data, &size)) << message();
    const std::vector<char> file(static_cast<const char*>(data), static_cast<const char*>(data) + size);
    book = std::make_unique<XMLBookImplT<Tag>>();
    book->setTextMetrics(std::make_unique<FakeMetrics>());
    ASSERT_TRUE(book->loadRaw(file.data(), file.size(), -1, -1, -1)) << message();
    sheet = static_cast<Sheet*>(book->getSheet(0));
    ASSERT_NE(sheet, nullptr);
  }
  // The text of a part as a save writes it.
  std::string part(const std::string& name) {
    std::string text;
    XFile* found = book->parts().find(name);
    if (found != nullptr) found->save(text);
    return text;
  }
  std::string sheetXml() { return part("/xl/worksheets/sheet1.xml"); }
  bool holds(const std::string& xml) { return sheetXml().find(xml) != std::string::npos; }

  std::unique_ptr<XMLBookImplT<Tag>> book;
  Sheet* sheet = nullptr;
};

inline std::string narrow(const char16_t* text) {
  return text == nullptr ? "<none>" : platform::utf8FromUtf16Lossy(text);
}

#define EXPECT_REFUSED(call, text)    \
  do {                                \
    EXPECT_FALSE(call);               \
    EXPECT_EQ(this->message(), text); \
  } while (false)

}  // namespace rubrica::test
