// Random sequences of operations on a small sheet of either file form, held against a grid that does the same the
// simple way. The forms differ in merges: an .xls sheet fills them with blanks, and divides one that lines are inserted
// into; in an .xlsx sheet it grows, and ends when one cell of it is left.
#include <map>
#include <optional>
#include <random>

#include "tests/forms/both_forms.h"

namespace rubrica::test {
namespace {

constexpr int kRows = 12, kCols = 10;
constexpr int kLastRow = 65536, kLastCol = 256;  // no sequence gets there in the larger form

struct ModelRange {
  int r1, r2, c1, c2;
  bool isOneCell() const { return r1 == r2 && c1 == c2; }
  bool operator==(const ModelRange&) const = default;
};

// A cell that is there but holds nothing is a blank.
struct Grid {
  bool isXlsx = false;
  std::map<std::pair<int, int>, std::optional<int>> cells;
  std::vector<ModelRange> merges;

  template <class Map>
  void mapCells(Map&& map) {
    std::map<std::pair<int, int>, std::optional<int>> moved;
    for (const auto& [place, value] : cells) {
      if (const auto target = map(place)) moved[*target] = value;
    }
    cells = moved;
  }
  void merge(const ModelRange& range) {
    merges.push_back(range);
    if (isXlsx) return;
    for (int r = range.r1; r <= range.r2; ++r) {
      for (int c = range.c1; c <= range.c2; ++c) cells.try_emplace({r, c}, std::nullopt);
    }
  }
  void insert(bool rows, int first, int last) {
    const int count = last - first + 1;
    mapCells([&](std::pair<int, int> place) {
      int& line = rows ? place.first : place.second;
      if (line >= first) line += count;
      return line < (rows ? kLastRow : kLastCol) ? std::optional(place) : std::nullopt;
    });
    std::vector<ModelRange> rest;
    for (ModelRange& range : merges) {
      int &low = rows ? range.r1 : range.c1, &high = rows ? range.r2 : range.c2;
      if (low >= first) {
        low += count;
        high += count;
      } else if (high >= first && isXlsx) {
        high += count;
      } else if (high >= first) {
        ModelRange more = range;
        (rows ? more.r1 : more.c1) = last + 1;
        (rows ? more.r2 : more.c2) = high + count;
        high = first - 1;
        rest.push_back(more);
      }
    }
    for (const ModelRange& range : rest) merge(range);
  }
  void remove(bool rows, int first, int last) {
    const int count = last - first + 1;
    mapCells([&](std::pair<int, int> place) {
      int& line = rows ? place.first : place.second;
      if (line >= first && line <= last) return std::optional<std::pair<int, int>>();
      if (line > last) line -= count;
      return std::optional(place);
    });
    std::vector<ModelRange> left;
    for (const ModelRange& range : merges) {
      // The lines that are left, found one by one.
      std::vector<int> lines;
      for (int line = rows ? range.r1 : range.c1; line <= (rows ? range.r2 : range.c2); ++line) {
        if (line < first || line > last) lines.push_back(line > last ? line - count : line);
      }
      if (lines.empty()) continue;
      ModelRange kept = range;
      (rows ? kept.r1 : kept.c1) = lines.front();
      (rows ? kept.r2 : kept.c2) = lines.back();
      if (isXlsx && kept.isOneCell() && !range.isOneCell()) continue;
      left.push_back(kept);
    }
    merges = left;
  }
};

void expectSame(FormBook& book, const Grid& grid, unsigned seed, int step) {
  for (int r = 0; r < 40; ++r) {
    for (int c = 0; c < 40; ++c) {
      const auto found = grid.cells.find({r, c});
      const CellType wanted = found == grid.cells.end() ? CellType::empty
                              : found->second           ? CellType::number
                                                        : CellType::blank;
      ASSERT_EQ(book.sheet->cellType(r, c), wanted) << "seed " << seed << " step " << step << " at " << r << "," << c;
      if (wanted == CellType::number) {
        ASSERT_EQ(book.sheet->readNum(r, c), *found->second) << "seed " << seed << " step " << step;
      }
    }
  }
  ASSERT_EQ(book.sheet->mergeSize(), static_cast<int>(grid.merges.size())) << "seed " << seed << " step " << step;
  for (std::size_t i = 0; i < grid.merges.size(); ++i) {
    ModelRange range{};
    ASSERT_TRUE(book.sheet->merge(static_cast<int>(i), &range.r1, &range.r2, &range.c1, &range.c2));
    ASSERT_EQ(range, grid.merges[i]) << "seed " << seed << " step " << step << " merge " << i;
  }
}

void playOne(const Form& form, unsigned seed) {
  std::mt19937 random(seed);
  const auto below = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
  FormBook book(form);
  Grid grid;
  grid.isXlsx = form.isXlsx;
  for (int step = 0; step < 12; ++step) {
    const int r1 = below(kRows), r2 = r1 + below(3), c1 = below(kCols), c2 = c1 + below(3);
    switch (below(9)) {
      case 0:
      case 1:
      case 2:
        ASSERT_TRUE(book.sheet->writeNum(r1, c1, step));
        grid.cells[{r1, c1}] = step;
        break;
      case 3:
        ASSERT_TRUE(book.sheet->insertRow(r1, r2));
        grid.insert(true, r1, r2);
        break;
      case 4:
        ASSERT_TRUE(book.sheet->removeRow(r1, r2));
        grid.remove(true, r1, r2);
        break;
      case 5:
        ASSERT_TRUE(book.sheet->insertCol(c1, c2));
        grid.insert(false, c1, c2);
        break;
      case 6:
        ASSERT_TRUE(book.sheet->removeCol(c1, c2));
        grid.remove(false, c1, c2);
        break;
      case 7:
        if (grid.merges.size() > 6) break;
        ASSERT_TRUE(book.sheet->setMerge(r1, r2, c1, c2));
        grid.merge({r1, r2, c1, c2});
        break;
      default:
        if (below(2) == 0) {
          book.sheet->clear(r1, r2, c1, c2);
          std::erase_if(grid.cells, [&](const auto& entry) {
            const auto [r, c] = entry.first;
            return r1 <= r && r <= r2 && c1 <= c && c <= c2;
          });
        } else {
          const auto found = grid.cells.find({r1, c1});
          ASSERT_EQ(book.sheet->copyCell(r1, c1, r2, c2), found != grid.cells.end());
          if (found != grid.cells.end()) grid.cells[{r2, c2}] = found->second;
        }
    }
  }
  expectSame(book, grid, seed, 12);
  if (seed % 10 == 0) {
    ASSERT_TRUE(book.reload()) << book.message();
    expectSame(book, grid, seed, 13);
  }
}

class SheetModel : public testing::TestWithParam<Form> {};

TEST_P(SheetModel, ThousandsOfRandomSequencesEndLikeASimpleGrid) {
  for (unsigned seed = 1; seed <= 3000; ++seed) ASSERT_NO_FATAL_FAILURE(playOne(GetParam(), seed));
}

INSTANTIATE_TEST_SUITE_P(Forms, SheetModel, testing::ValuesIn(kForms), nameOfForm);

}  // namespace
}  // namespace rubrica::test
