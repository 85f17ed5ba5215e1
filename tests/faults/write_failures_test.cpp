// A disk that is full at any point: the file may grow to a limit and no further, so that a save meets a short write and
// then an error. What stood on disk before stays.
#include <csignal>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "platform/text.h"
#include "tests/support/sample_book.h"
#include "tests/support/temporary_directory.h"

namespace rubrica {
namespace {

using test::BookForm;

// No file of this process grows beyond `bytes` while this lives.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : _oldHandler(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &_old);
    const rlimit limit{bytes, _old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &_old);
    std::signal(SIGXFSZ, _oldHandler);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit _old{};
  void (*_oldHandler)(int);
};

class WriteFailures : public testing::TestWithParam<BookForm> {};

TEST_P(WriteFailures, AFullDiskLeavesTheOldFileAndTheBookCanBeSavedElsewhere) {
  const test::TemporaryDirectory directory;
  const std::string path = directory.file("book").string();
  const std::u16string widePath = platform::utf16FromUtf8(path) + GetParam().extension;
  const std::string fullPath = platform::utf8FromUtf16(widePath);
  const BookPtr book(GetParam().create());
  test::fillSample(*book);
  const std::string expected = test::savedBytes(*book);
  constexpr std::size_t kStep = 97;  // falls on sector boundaries and between them
  for (std::size_t room = 0; room < expected.size(); room += kStep) {
    test::writeText(fullPath, "what stood here before");
    {
      const FileSizeLimit limit(room);
      ASSERT_FALSE(book->save(widePath.c_str())) << room;
      ASSERT_STRNE(book->errorMessage(), "ok");
    }
    ASSERT_EQ(test::readText(fullPath), "what stood here before");
    ASSERT_EQ(directory.entryCount(), 1U) << "a temporary file is left";
  }
  ASSERT_TRUE(book->save(widePath.c_str())) << book->errorMessage();
  ASSERT_TRUE(test::readText(fullPath) == expected);
}

INSTANTIATE_TEST_SUITE_P(Forms, WriteFailures, testing::ValuesIn(test::kBookForms),
                         [](const auto& form) { return std::string(form.param.name); });

}  // namespace
}  // namespace rubrica
