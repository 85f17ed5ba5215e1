// Books on different threads have nothing in common: each thread makes, fills, saves and loads its own, and all get the
// same bytes. The thread sanitizer watches this program in ./dev threads.
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/sample_book.h"

namespace rubrica {
namespace {

using test::BookForm;

constexpr int kThreads = 4, kRounds = 20;

class TwoBooks : public testing::TestWithParam<BookForm> {
 protected:
  // What a book holds after it was filled, saved, loaded and saved again.
  static std::string wholeLife(const BookForm& form) {
    const BookPtr book(form.create());
    test::fillSample(*book);
    const std::string saved = test::savedBytes(*book);
    const BookPtr loaded(form.create());
    if (!loaded->loadRaw(saved.data(), saved.size())) return loaded->errorMessage();
    Sheet* sheet = loaded->getSheet(0);
    sheet->setCol(0, 1, -1);  // fitting asks the fonts
    const int number = static_cast<int>(sheet->readNum(4, 0) * 100);
    return test::savedBytes(*loaded) + std::to_string(number);
  }
};

TEST_P(TwoBooks, OnManyThreadsGiveWhatOneThreadGives) {
  const std::string expected = wholeLife(GetParam());
  ASSERT_GT(expected.size(), 1000U) << expected;
  std::vector<int> equal(kThreads, 0);
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&, i] {
      for (int round = 0; round < kRounds; ++round)
        equal[static_cast<std::size_t>(i)] += wholeLife(GetParam()) == expected;
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(equal, std::vector<int>(kThreads, kRounds));
}

INSTANTIATE_TEST_SUITE_P(Forms, TwoBooks, testing::ValuesIn(test::kBookForms),
                         [](const auto& form) { return std::string(form.param.name); });

}  // namespace
}  // namespace rubrica
