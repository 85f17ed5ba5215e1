// Workbooks that other programs made, where a folder of them is at hand: their drawings come back as they were, alone
// and after a picture and a comment were added.
#include <filesystem>

#include "platform/input_file.h"
#include "tests/biff/drawing/drawing_fixture.h"
#include "tests/support/corpus.h"

namespace rubrica::test {
namespace {

namespace fs = std::filesystem;

Bytes contentOf(const fs::path& path) {
  const auto content = platform::readWholeFile(path.u16string());
  EXPECT_TRUE(content) << path;
  return {content->data(), content->data() + content->size()};
}

// The sheets that are kept as sheets: worksheets without an embedded chart.
bool isKept(const std::vector<Record>& sheetRecords) {
  return findRecord(sheetRecords, id::kBof) == nullptr;
}

struct DrawnBook {
  BookPtr book = newBook();
  std::vector<Record> records;  // of the file
  std::string name;
  bool isLoaded = false;

  explicit DrawnBook(const fs::path& path) : name(path.filename().string()) {
    const Bytes file = contentOf(path);
    isLoaded = loadBytes(*book, file) && book->biffVersion() == kBiff8Version;
    if (isLoaded) records = recordsOf(file);
  }
  std::vector<Record> sheetRecords(int sheet) const { return substream(records, sheet + 1); }
  bool isWorksheet(int sheet) const { return book->sheetType(sheet) == SheetType::sheet; }
};

class Keeper final : public officeart::RecordSink {
 public:
  void record(std::uint16_t recordId, officeart::ByteView body) override {
    kept.push_back({recordId, {body.begin(), body.end()}});
  }
  std::vector<Record> kept;
};

TEST(RealDrawings, ComeBackByteForByte) {
  const auto paths = corpusFiles("xls");
  if (paths.empty()) GTEST_SKIP() << kNoCorpus;
  int groups = 0, drawings = 0;
  for (const fs::path& path : paths) {
    const DrawnBook before(path);
    if (!before.isLoaded) continue;
    const auto after = savedRecords(*before.book);
    const auto group = groupRecords(substream(before.records, 0));
    EXPECT_TRUE(groupRecords(substream(after, 0)) == group) << before.name;
    groups += group.empty() ? 0 : 1;
    for (int i = 0; i < before.book->sheetCount(); ++i) {
      if (!before.isWorksheet(i) || !isKept(before.sheetRecords(i))) continue;
      const auto records = drawingRecords(before.sheetRecords(i));
      EXPECT_TRUE(drawingRecords(substream(after, i + 1)) == records) << before.name << " sheet " << i;
      drawings += records.empty() ? 0 : 1;
    }
  }
  RecordProperty("groups", groups);
  RecordProperty("drawings", drawings);
  EXPECT_GE(drawings, 30);
}

// The pieces of a drawing and the objects between them. A program may divide a piece into records as it likes, and put
// what follows an object into a CONTINUE.
std::vector<Record> piecesOf(const std::vector<Record>& records) {
  std::vector<Record> pieces;
  std::size_t ofText = 0;  // CONTINUE records that belong to the text before them
  for (std::size_t i = 0; i < records.size(); ++i) {
    const Record& record = records[i];
    if (record.recordId == id::kTextObject) {
      std::vector<officeart::ByteView> following;
      for (std::size_t j = i + 1; j < records.size() && records[j].recordId == id::kContinue; ++j) {
        following.emplace_back(records[j].bytes);
      }
      ofText = officeart::TextObject::continuesOf(record.bytes, following);
      pieces.push_back(record);
    } else if (record.recordId == id::kObj || ofText > 0) {
      if (record.recordId != id::kObj) --ofText;
      pieces.push_back(record);
    } else if (!pieces.empty() && pieces.back().recordId == id::kMsoDrawing) {
      pieces.back().bytes.insert(pieces.back().bytes.end(), record.bytes.begin(), record.bytes.end());
    } else {
      pieces.push_back({id::kMsoDrawing, record.bytes});
    }
  }
  return pieces;
}

TEST(RealDrawings, AreWrittenTheSameByTheirRecordClasses) {
  const auto paths = corpusFiles("xls");
  if (paths.empty()) GTEST_SKIP() << kNoCorpus;
  for (const fs::path& path : paths) {
    const DrawnBook before(path);
    if (!before.isLoaded) continue;
    Bytes group;
    for (const Record& record : groupRecords(substream(before.records, 0))) {
      group.insert(group.end(), record.bytes.begin(), record.bytes.end());
    }
    if (!group.empty()) {
      officeart::DrawingGroup drawings;
      drawings.append(id::kMsoDrawingGroup, group);
      drawings.finishReading();
      drawings.countDrawing(0, 0);  // from here on it is written from its records
      Keeper keeper;
      drawings.write(keeper);
      Bytes written;
      for (const Record& record : keeper.kept) written.insert(written.end(), record.bytes.begin(), record.bytes.end());
      EXPECT_TRUE(written == group) << before.name;
    }
    for (int i = 0; i < before.book->sheetCount(); ++i) {
      if (!before.isWorksheet(i) || !isKept(before.sheetRecords(i))) continue;
      auto records = drawingRecords(before.sheetRecords(i));
      std::erase_if(records, [](const Record& record) { return record.recordId == id::kNote; });
      Keeper keeper;
      drawingOf(records).write(keeper);
      EXPECT_TRUE(piecesOf(keeper.kept) == piecesOf(records)) << before.name << " sheet " << i;
    }
  }
}

TEST(RealDrawings, KeepWhatIsThereWhenAPictureAndACommentAreAdded) {
  const auto paths = corpusFiles("xls");
  if (paths.empty()) GTEST_SKIP() << kNoCorpus;
  int added = 0;
  for (const fs::path& path : paths) {
    const DrawnBook before(path);
    if (!before.isLoaded) continue;
    Book& book = *before.book;
    const int pictures = book.pictureSize();
    const int id = addPicture(book, png(500));
    ASSERT_GE(id, pictures) << before.name << book.errorMessage();
    std::vector<int> placed;
    for (int i = 0; i < book.sheetCount(); ++i) {
      if (!before.isWorksheet(i) || !isKept(before.sheetRecords(i))) {
        placed.push_back(-1);
        continue;
      }
      Sheet& sheet = *book.getSheet(i);
      placed.push_back(sheet.pictureSize());
      sheet.setPicture(3, 3, id);
      ASSERT_STREQ(book.errorMessage(), "ok") << before.name;
      sheet.writeComment(60000, 200, u"Added", u"Ann");
      ASSERT_STREQ(book.errorMessage(), "ok") << before.name;
    }
    const BookPtr again = newBook();
    ASSERT_TRUE(loadBytes(*again, savedBytes(book))) << before.name << ": " << again->errorMessage();
    EXPECT_EQ(again->pictureSize(), pictures + 1) << before.name;
    EXPECT_EQ(pictureBytes(*again, pictures), png(500)) << before.name;
    const auto after = savedRecords(*again);
    for (int i = 0; i < again->sheetCount(); ++i) {
      const int count = placed[static_cast<std::size_t>(i)];
      if (count < 0) continue;
      Sheet& sheet = *again->getSheet(i);
      EXPECT_EQ(sheet.pictureSize(), count + 1) << before.name;
      EXPECT_EQ(placement(sheet, count).id, id) << before.name;
      EXPECT_EQ(textOf(sheet.readComment(60000, 200)), u"Added") << before.name;
      // Every object, text and note is there as it was.
      const auto records = drawingRecords(substream(after, i + 1));
      for (const Record& record : drawingRecords(before.sheetRecords(i))) {
        if (record.recordId == id::kMsoDrawing || record.recordId == id::kContinue) continue;
        EXPECT_NE(std::find(records.begin(), records.end(), record), records.end()) << before.name << " sheet " << i;
      }
      ++added;
    }
    expectNoClash(after, again->sheetCount(), before.name);
  }
  EXPECT_GE(added, 100);
}

}  // namespace
}  // namespace rubrica::test
