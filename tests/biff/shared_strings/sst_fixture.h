// Test support: shared string tables moved through the records of a stream.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "biff/shared_strings/sst.h"
#include "tests/biff/record_stream.h"

namespace rubrica::test {

inline constexpr std::uint8_t kWide = text_flags::kHighByte, kExt = text_flags::kExtSt, kRich = text_flags::kRichSt;

struct SstBook {
  RecordPool pool;
  StrMap strings{pool};

  XLUnicodeRichExtendedString entry(const std::u16string& text, std::uint8_t flags,
                                    const std::vector<FormatRun>& runs = {}, const Bytes& phonetic = {}) {
    XLUnicodeRichExtendedString made;
    if (!text.empty()) made.text = pool.copyText(text);
    made.cch = static_cast<std::uint16_t>(text.size());
    made.flags = flags;
    if (!made.isPlain()) {
      auto ext = std::make_unique<ExtStringFormat>();
      ext->runs = runs;
      ext->phonetic = pool.copyBytes(phonetic);
      made.ext = pool.adopt(std::move(ext));
    }
    return made;
  }

  std::vector<Record> written() const {
    RecordStream stream([this](Xls& xls) { writeSst(xls, strings); });
    return stream.records();
  }
  // Reads a table; returns the message of its failure.
  std::string read(const std::vector<Record>& records) {
    RecordStream stream(records);
    std::uint16_t size = 0;
    Xls& xls = stream.firstRecord(size);
    return errorOf([&] { readSst(xls, size, strings); });
  }
};

inline void expectSame(const StrMap& actual, const StrMap& expected) {
  ASSERT_EQ(actual.cstUnique(), expected.cstUnique());
  EXPECT_EQ(actual.cstTotal(), expected.cstTotal());
  for (std::uint32_t i = 0; i < expected.cstUnique(); ++i) {
    const auto &a = actual.get(i), &e = expected.get(i);
    ASSERT_EQ(a.view(), e.view()) << i;
    ASSERT_EQ(a.text[a.cch], u'\0') << i;
    ASSERT_EQ(a.flags, e.flags) << i;
    ASSERT_EQ(a.ext == nullptr, e.ext == nullptr) << i;
    if (e.ext == nullptr) continue;
    ASSERT_EQ(a.ext->runs.size(), e.ext->runs.size()) << i;
    for (std::size_t r = 0; r < e.ext->runs.size(); ++r) {
      ASSERT_EQ(a.ext->runs[r].firstChar, e.ext->runs[r].firstChar) << i;
      ASSERT_EQ(a.ext->runs[r].font, e.ext->runs[r].font) << i;
    }
    ASSERT_TRUE(
        std::equal(a.ext->phonetic.begin(), a.ext->phonetic.end(), e.ext->phonetic.begin(), e.ext->phonetic.end()))
        << i;
  }
}

}  // namespace rubrica::test
