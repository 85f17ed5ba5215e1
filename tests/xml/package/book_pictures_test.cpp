// The pictures of a book: image parts of the package, and pictures that are added to it or only linked.
#include <cstring>

#include "tests/support/temporary_directory.h"
#include "tests/xml/flavours.h"
#include "tests/xml/package/zip_builder.h"
#include "xml/package_names.h"

namespace rubrica::package_test {
namespace {

const std::string kPng("\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\0\x20\0\0\0\x10\x08\x06\0\0\0", 29);

template <class Tag>
class BookPictures : public ::testing::Test {
 protected:
  std::string message() { return book.errorMessage(); }
  std::string bytesAt(int index) {
    const void* data = nullptr;
    std::size_t size = 0;
    book.getPicture(index, &data, &size);
    return data == nullptr ? "" : std::string(static_cast<const char*>(data), size);
  }

  XMLBookImplT<Tag> book;
};
TYPED_TEST_SUITE(BookPictures, Flavours, FlavourNames);

TYPED_TEST(BookPictures, OfAFileAreThePartsOfAnImageType) {
  auto entries = workbookEntries<TypeParam>();
  addPart(entries, "xl/media/image1.png", kPng, "image/png");
  addPart(entries, "xl/media/image2.jpeg", "\xFF\xD8\xFF\xE0 and more", "image/jpeg");
  addPart(entries, "xl/media/odd.tiff", "II*\0odd", "image/tiff");
  addPart(entries, "xl/media/unsaid.png", kPng, "application/octet-stream");
  ASSERT_TRUE(loadRaw(this->book, zipOf(entries))) << this->message();
  ASSERT_EQ(this->book.pictureSize(), 3);
  const void* data = nullptr;
  std::size_t size = 0;
  EXPECT_EQ(this->book.getPicture(0, &data, &size), PictureType::png);
  EXPECT_EQ(size, kPng.size());
  EXPECT_EQ(this->bytesAt(0), kPng);
  EXPECT_EQ(this->book.getPicture(1, nullptr, nullptr), PictureType::jpeg);
  EXPECT_EQ(this->book.getPicture(2, nullptr, nullptr), PictureType::notFound);
  EXPECT_EQ(this->book.getPicture(3, &data, &size), PictureType::notFound);
  EXPECT_EQ(this->message(), "index is out of range");
  EXPECT_EQ(this->book.getPicture(-1, &data, &size), PictureType::notFound);
}

TYPED_TEST(BookPictures, OfOneNameStandOnce) {
  auto entries = workbookEntries<TypeParam>();
  addPart(entries, "xl/media/image1.png", kPng, "image/png");
  entries.push_back({"xl/media/IMAGE1.PNG", kPng + "later"});
  ASSERT_TRUE(loadRaw(this->book, zipOf(entries))) << this->message();
  ASSERT_EQ(this->book.pictureSize(), 1);
  EXPECT_EQ(this->bytesAt(0), kPng + "later");
}

TYPED_TEST(BookPictures, AreAddedUnderFreeNamesWithTheTypeOfTheirExtension) {
  auto entries = workbookEntries<TypeParam>();
  addPart(entries, "xl/media/image1.png", kPng, "image/png");
  addPart(entries, "xl/media/image2.png", kPng, "application/octet-stream");
  ASSERT_TRUE(loadRaw(this->book, zipOf(entries))) << this->message();
  EXPECT_EQ(this->book.addPicture2(kPng.data(), kPng.size()), 1);
  const std::string saved = saveRaw(this->book);
  EXPECT_EQ(entryOf(saved, "xl/media/image3.png"), kPng);
  const std::string types = entryOf(saved, "[Content_Types].xml");
  EXPECT_EQ(ContentTypes(types.data(), types.size()).contentType("/any.png"), "image/png");
  EXPECT_EQ(this->bytesAt(1), kPng);
}

TYPED_TEST(BookPictures, FilesThatAreNoneAreSaidToBe) {
  const test::TemporaryDirectory directory;
  EXPECT_EQ(this->book.addPicture(nullptr), -1);
  EXPECT_EQ(this->message(), "file name can't be 0");
  EXPECT_EQ(this->book.addPicture(directory.file("none.png").u16string().c_str()), -1);
  EXPECT_EQ(this->message(), "can't open file");
  test::writeText(directory.file("empty.png"), "");
  EXPECT_EQ(this->book.addPicture(directory.file("empty.png").u16string().c_str()), -1);
  EXPECT_EQ(this->message(), "file is empty");
  test::writeText(directory.file("text.png"), "text of no kind");
  EXPECT_EQ(this->book.addPicture(directory.file("text.png").u16string().c_str()), -1);
  EXPECT_EQ(this->message(), "unknown picture format");
  EXPECT_EQ(this->book.addPicture2(nullptr, 10), -1);
  EXPECT_NE(this->message(), "ok");
  test::writeText(directory.file("a.png"), kPng);
  EXPECT_EQ(this->book.addPicture(directory.file("a.png").u16string().c_str()), 0);
  EXPECT_EQ(this->message(), "ok");
  EXPECT_EQ(this->bytesAt(0), kPng);
}

TYPED_TEST(BookPictures, LinkedOnesStayOutsideUnlessTheyAreInserted) {
  const test::TemporaryDirectory directory;
  test::writeText(directory.file("a.png"), kPng);
  const std::u16string path = directory.file("a.png").u16string();
  EXPECT_EQ(this->book.addPictureAsLink(nullptr, false), -1);
  EXPECT_EQ(this->message(), "file name can't be 0");
  EXPECT_EQ(this->book.addPictureAsLink(path.c_str(), false), 0);
  const auto before = namesOf(saveRaw(this->book)).size();
  EXPECT_EQ(this->book.addPictureAsLink(path.c_str(), true), 1);
  EXPECT_EQ(namesOf(saveRaw(this->book)).size(), before + 1);
  EXPECT_EQ(this->book.pictures()[1].link, "file:///" + directory.file("a.png").string());
}

}  // namespace
}  // namespace rubrica::package_test
