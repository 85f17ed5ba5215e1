// Memory that runs out at any point: every allocation of a job fails once in turn. The job answers with a failure and a
// message, or gets by; what stood on disk stays, and the same book does the job when it is asked again.
#include <gtest/gtest.h>

#include "platform/text.h"
#include "tests/faults/failing_memory.h"
#include "tests/support/sample_book.h"
#include "tests/support/temporary_directory.h"

namespace rubrica {
namespace {

using test::BookForm;
using test::FailingAllocation;

class AllocationFailures : public testing::TestWithParam<BookForm> {
 protected:
  BookPtr newBook() const { return BookPtr(GetParam().create()); }
  BookPtr filledBook() const {
    BookPtr book = newBook();
    test::fillSample(*book);
    return book;
  }
  std::string content() const { return test::readText(platform::utf8FromUtf16(_path)); }

  // Runs `job` with its first, second, third... allocation failing, until it makes no more. `job` gets the book that
  // `prepare` made anew, and `check` is called with the book and the job's answer.
  template <class Prepare, class Job, class Check>
  void failEachAllocation(Prepare&& prepare, Job&& job, Check&& check) {
    long passed = 0;
    for (;; ++passed) {
      BookPtr book = prepare();
      bool answer = false, happened = false;
      std::string message;
      SCOPED_TRACE(passed);
      {
        const FailingAllocation failing(passed);
        answer = job(*book);
        happened = failing.happened();
      }
      message = book->errorMessage();
      if (!happened) {
        EXPECT_TRUE(answer) << message;
        break;
      }
      if (!answer) {
        EXPECT_NE(message, "ok");
      }
      check(*book, answer);
      if (HasFatalFailure()) return;
    }
    EXPECT_GT(passed, 5);
  }

  const test::TemporaryDirectory _directory;
  const std::u16string _path = platform::utf16FromUtf8(_directory.file("book").string()) + GetParam().extension;
};

TEST_P(AllocationFailures, AFailedSaveLeavesTheOldFileAndTheBookCanBeSavedAgain) {
  const std::string expected = test::savedBytes(*filledBook());
  failEachAllocation(
      [&] {
        test::writeText(platform::utf8FromUtf16(_path), "what stood here before");
        return filledBook();
      },
      [&](Book& book) { return book.save(_path.c_str()); },
      [&](Book& book, bool saved) {
        ASSERT_TRUE(content() == (saved ? expected : "what stood here before"));
        ASSERT_EQ(_directory.entryCount(), 1U);
        ASSERT_TRUE(test::savedBytes(book) == expected);
      });
}

TEST_P(AllocationFailures, AFailedSaveIntoMemoryCanBeRepeated) {
  const std::string expected = test::savedBytes(*filledBook());
  failEachAllocation([&] { return filledBook(); },
                     [&](Book& book) {
                       const void* data = nullptr;
                       std::size_t size = 0;
                       return book.saveRaw(&data, &size);
                     },
                     [&](Book& book, bool) { ASSERT_TRUE(test::savedBytes(book) == expected); });
}

TEST_P(AllocationFailures, AFailedLoadCanBeRepeated) {
  const BookPtr filled = filledBook();
  ASSERT_TRUE(filled->save(_path.c_str()));
  const BookPtr loaded = newBook();
  ASSERT_TRUE(loaded->load(_path.c_str()));
  const std::string expected = test::savedBytes(*loaded);
  failEachAllocation([&] { return newBook(); }, [&](Book& book) { return book.load(_path.c_str()); },
                     [&](Book& book, bool) {
                       ASSERT_TRUE(book.load(_path.c_str())) << book.errorMessage();
                       ASSERT_TRUE(test::savedBytes(book) == expected);
                     });
}

TEST_P(AllocationFailures, OperationsThatFailLeaveABookThatSavesAndLoads) {
  failEachAllocation([&] { return newBook(); },
                     [&](Book& book) {
                       test::fillSample(book);
                       return true;
                     },
                     [&](Book& book, bool) {
                       const std::string bytes = test::savedBytes(book);
                       ASSERT_FALSE(bytes.empty()) << book.errorMessage();
                       const BookPtr again = newBook();
                       ASSERT_TRUE(again->loadRaw(bytes.data(), bytes.size())) << again->errorMessage();
                     });
}

TEST_P(AllocationFailures, ABookThatCannotBeConstructedIsNull) {
  for (long passed = 0;; ++passed) {
    const FailingAllocation failing(passed);
    const BookPtr book = newBook();
    if (!failing.happened()) {
      ASSERT_NE(book, nullptr);
      break;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Forms, AllocationFailures, testing::ValuesIn(test::kBookForms),
                         [](const auto& form) { return std::string(form.param.name); });

}  // namespace
}  // namespace rubrica
