#include <cstring>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "lmx/c_xml_writer.h"
#include "lmx/driver.h"
#include "source/ooxml/cell_address.h"
#include "source/ooxml/sheet.h"
#include "source/ooxml/strict.h"

namespace rubrica {

using ooxml::appendCellAddress;
using ooxml::parseCellAddress;

std::string addressOf(std::uint32_t row, std::uint16_t column) {
  std::string text;
  appendCellAddress(text, row, column);
  return text;
}

TEST(CellAddress, IsReadAndFormedAgain) {
  for (const char* text : {"A1", "Z1", "AA1", "AZ26", "BA27", "ZZ100", "AAA1", "XFD1048576", "C7"}) {
    std::uint32_t row = 0;
    std::uint16_t column = 0;
    ASSERT_TRUE(parseCellAddress(text, row, column)) << text;
    EXPECT_EQ(addressOf(row, column), text);
  }
}

TEST(CellAddress, TakesSmallLetters) {
  std::uint32_t row = 0;
  std::uint16_t column = 0;
  ASSERT_TRUE(parseCellAddress("xfd1048576", row, column));
  EXPECT_EQ(row, 1048575U);
  EXPECT_EQ(column, 16383);
}

TEST(CellAddress, RefusesWhatIsNoneAndLeavesTheNumbersAlone) {
  for (const char* text : {"", "A", "7", "A0", "A01", "$A$1", "A1:B2", "A-1", "A+1", "A1 ", " A1", "A1x", "AAAAA1",
                           "A99999999999999999999", "A2097153", "CRXQ1"}) {
    std::uint32_t row = 11;
    std::uint16_t column = 22;
    EXPECT_FALSE(parseCellAddress(text, row, column)) << text;
    EXPECT_EQ(row, 11U);
    EXPECT_EQ(column, 22);
  }
}

TEST(CellAddress, GoesUpToWhatTheWordOfACellHolds) {
  std::uint32_t row = 0;
  std::uint16_t column = 0;
  ASSERT_TRUE(parseCellAddress("CRXP2097152", row, column));
  EXPECT_EQ(row, ooxml::kMaxPackedRow);
  EXPECT_EQ(column, ooxml::kMaxPackedColumn);
}

TEST(PackedCell, IsEmptyWhenNew) {
  const sheet::c_CT_Cell cell;
  EXPECT_FALSE(cell.isset_r() || cell.isset_s() || cell.isset_t() || cell.isset_v() || cell.isset_f() ||
               cell.isset_is() || cell.isset_cm() || cell.isset_vm() || cell.isset_ph() || cell.isset_extLst());
  EXPECT_EQ(cell.get_t(), "n");
  EXPECT_EQ(cell.get_v(), "");
  EXPECT_EQ(cell.get_s(), 0U);
}

TEST(PackedCell, TakesThirtyTwoBytes) {
  if (sizeof(void*) != 8) GTEST_SKIP() << "the size is stated for 64 bits";
  EXPECT_EQ(sizeof(sheet::c_CT_Cell), 32U);
  EXPECT_EQ(sizeof(strict::c_CT_Cell), 32U);
}

TEST(PackedCell, KeepsEveryValueToTheByte) {
  sheet::c_CT_Cell cell;
  const std::string values[] = {"",
                                "0",
                                "-1.5",
                                "1234567890123",
                                "12345678901234",
                                "0.10000000000000001",
                                "-1.2345678901234567e-308",
                                "1.7976931348623157E+308",
                                "12345678901234567890123456",
                                "123456789012345678901234567",
                                "short text",
                                "exactly 13 by",
                                "fourteen bytes",
                                "Straße, Ünïcödé and more than the cell holds",
                                std::string("a\0b", 3),
                                std::string(32767, 'x')};
  for (const std::string& value : values) {
    cell.set_v(value);
    EXPECT_TRUE(cell.isset_v());
    EXPECT_EQ(cell.get_v(), value);
    const sheet::c_CT_Cell copy = cell;
    EXPECT_EQ(copy.get_v(), value);
  }
  cell.unset_v();
  EXPECT_FALSE(cell.isset_v());
  EXPECT_EQ(cell.get_v(), "");
}

// The bytes of the worked example in docs/formats/bindings.md.
TEST(PackedCell, StandsInMemoryAsDescribed) {
  if (sizeof(void*) != 8) GTEST_SKIP() << "the offsets are stated for 64 bits";
  sheet::c_CT_Cell cell;
  cell.set_r("C7");
  cell.set_s(5);
  cell.set_t("str");
  cell.set_v("0.10000000000000001");
  unsigned char bytes[32];
  static_assert(sizeof cell == sizeof bytes);
  std::memcpy(bytes, static_cast<const void*>(&cell), sizeof bytes);
  const std::uint32_t word = 5U << 29U | 1U << 28U | 1U << 27U | 6U;
  std::uint32_t stored = 0;
  std::memcpy(&stored, bytes + 8, sizeof stored);
  EXPECT_EQ(stored, word);
  EXPECT_EQ(bytes[12], 5);
  EXPECT_EQ(bytes[16], 2);
  const unsigned char value[] = {0xA0, 0x01, 0, 0, 0, 0, 0, 0, 0, 0xF1, 0xFF, 0xFF, 0xFF};
  EXPECT_EQ(std::memcmp(bytes + 19, value, sizeof value), 0);
}

TEST(PackedCell, MayBeSetToAPieceOfItsOwnValue) {
  sheet::c_CT_Cell cell;
  ooxml::packed_cell::value_buffer buffer;
  cell.set_v("a text too long for the cell itself");
  cell.set_v(cell.view_v(buffer).substr(2, 8));
  EXPECT_EQ(cell.get_v(), "text too");
  cell.set_f("A1");
  cell.set_v("a text too long for the cell itself");
  cell.set_f(cell.view_v(buffer).substr(2, 4));
  cell.set_v(cell.view_f()->substr(1, 3));
  EXPECT_EQ(cell.view_f(), "text");
  EXPECT_EQ(cell.get_v(), "ext");
  cell.unset_f();
  EXPECT_TRUE(cell.is_plain());
  cell.set_v("a text too long for the cell itself, twice: a text too long");
  cell.set_v(cell.view_v(buffer).substr(2, 30));
  EXPECT_EQ(cell.get_v(), "text too long for the cell its");
}

TEST(PackedCell, SharesItsWordAmongTheAttributesWithoutMixingThem) {
  sheet::c_CT_Cell cell;
  cell.set_s(0xFFFFFFFF);
  EXPECT_TRUE(cell.set_t("inlineStr"));
  EXPECT_TRUE(cell.set_r("XFD1048576"));
  EXPECT_EQ(cell.get_r(), "XFD1048576");
  EXPECT_EQ(cell.get_t(), "inlineStr");
  EXPECT_EQ(cell.get_s(), 0xFFFFFFFF);
  cell.unset_t();
  EXPECT_FALSE(cell.isset_t());
  EXPECT_TRUE(cell.isset_s() && cell.isset_r());
  cell.unset_r();
  EXPECT_FALSE(cell.isset_r());
  EXPECT_EQ(cell.get_r(), "");
  EXPECT_TRUE(cell.isset_s());
  cell.unset_s();
  EXPECT_FALSE(cell.isset_s());
  EXPECT_EQ(cell.get_s(), 0U);
}

TEST(PackedCell, KnowsEveryTypeByItsToken) {
  sheet::c_CT_Cell cell;
  for (const char* token : {"b", "n", "e", "s", "str", "inlineStr", "d"}) {
    EXPECT_TRUE(cell.set_t(token));
    EXPECT_EQ(cell.get_t(), token);
  }
  EXPECT_FALSE(cell.set_t("x"));
  EXPECT_EQ(cell.get_t(), "d");
}

TEST(PackedCell, GivesUpAReferenceThatIsNoAddress) {
  sheet::c_CT_Cell cell;
  cell.set_r("B2");
  EXPECT_FALSE(cell.set_r("$B$2"));
  EXPECT_FALSE(cell.isset_r());
}

TEST(PackedCell, CopiesDeeplyAndMovesWhatItOwns) {
  sheet::c_CT_Cell cell;
  cell.get_f().set_value("SUM(A1:B2)");
  cell.get_is().get_t().set_value("inline");
  cell.set_cm(4);
  sheet::c_CT_Cell copy = cell;
  copy.get_f().set_value("1");
  EXPECT_EQ(cell.get_f().get_value(), "SUM(A1:B2)");
  EXPECT_EQ(copy.get_cm(), 4U);
  const sheet::c_CT_Cell moved = std::move(copy);
  ASSERT_TRUE(moved.isset_f());
  EXPECT_EQ(moved.find_full_f()->get_value(), "1");
  EXPECT_EQ(moved.find_is()->find_t()->get_value(), "inline");
  cell = moved;
  EXPECT_EQ(cell.get_f().get_value(), "1");
}

TEST(PackedCell, KeepsAFormulaAsTextUntilItsObjectIsAskedFor) {
  for (const std::string value : {"", "14", "-1.2345678901234567e-308", "a text too long for the cell itself"}) {
    for (const std::string formula : {"", "A1*2", "a formula that is much longer than the cell has room for"}) {
      sheet::c_CT_Cell cell;
      cell.set_v(value);
      cell.set_f(formula);
      EXPECT_TRUE(cell.isset_f() && cell.is_text() && !cell.is_plain());
      EXPECT_EQ(cell.find_full_f(), nullptr);
      EXPECT_EQ(cell.view_f(), formula);
      EXPECT_EQ(cell.get_v(), value);
      sheet::c_CT_Cell copy = cell;
      copy.set_v("7");
      EXPECT_EQ(copy.view_f(), formula);
      copy.get_f().set_ca(true);
      EXPECT_EQ(copy.view_f(), std::nullopt);
      EXPECT_EQ(copy.find_full_f()->get_value(), formula);
      EXPECT_EQ(copy.get_v(), "7");
      copy = cell;
      EXPECT_EQ(copy.view_f(), formula);
      EXPECT_EQ(copy.get_v(), value);
      const sheet::c_CT_Cell moved = std::move(copy);
      EXPECT_EQ(moved.view_f(), formula);
      cell.unset_v();
      EXPECT_FALSE(cell.isset_v());
      EXPECT_EQ(cell.view_f(), formula);
      cell.unset_f();
      EXPECT_FALSE(cell.isset_f() || cell.isset_v());
      EXPECT_TRUE(cell.is_plain());
    }
  }
}

TEST(PackedCell, KeepsAFormulasTextBesideWhatFewCellsHave) {
  sheet::c_CT_Cell cell;
  cell.set_v("14");
  cell.set_f("A1*2");
  cell.set_cm(1);
  EXPECT_FALSE(cell.is_text());
  EXPECT_EQ(cell.get_v(), "14");
  EXPECT_EQ(cell.view_f(), "A1*2");
  EXPECT_EQ(sheet::c_CT_Cell(cell).view_f(), "A1*2");
  cell.set_v("15");
  EXPECT_EQ(cell.view_f(), "A1*2");
  cell.get_f().set_ca(true);
  EXPECT_EQ(cell.view_f(), std::nullopt);
  EXPECT_EQ(cell.find_full_f()->get_value(), "A1*2");
  cell.set_f("B1");
  EXPECT_EQ(cell.find_full_f(), nullptr);
  EXPECT_EQ(cell.view_f(), "B1");
  EXPECT_EQ(cell.get_v(), "15");
  cell.set_f(sheet::c_CT_CellFormula());
  EXPECT_FALSE(cell.view_f());
  EXPECT_TRUE(cell.isset_f());
  cell.set_f("B1");
  cell.unset_f();
  EXPECT_FALSE(cell.isset_f());
  EXPECT_EQ(cell.get_v(), "15");
  cell.unset_v();
  EXPECT_FALSE(cell.isset_v());
  EXPECT_EQ(cell.get_cm(), 1U);
}

// As text and as an object it is the same formula.
TEST(PackedCell, FormulasAreEqualInEitherForm) {
  sheet::c_CT_Cell text, object;
  text.set_f("IF(A1<2,\"a\",B1)");
  object.get_f().set_value("IF(A1<2,\"a\",B1)");
  EXPECT_TRUE(lmx::equal(text, object));
  std::string item, first, second;
  EXPECT_EQ(lmx::check(text, item), lmx::ELMX_OK);
  for (const auto& [cell, out] : {std::pair(&text, &first), std::pair(&object, &second)}) {
    lmx::c_xml_writer writer(*out);
    EXPECT_EQ(cell->marshal(writer, "c"), lmx::ELMX_OK);
  }
  EXPECT_EQ(first, second);
  object.set_f("A1");
  EXPECT_FALSE(lmx::equal(text, object));
}

// A formula takes the value along to where it stands itself.
TEST(PackedCell, KeepsItsValueBesideAFormula) {
  for (const std::string value : {"", "14", "-1.2345678901234567e-308", "a text too long for the cell itself"}) {
    sheet::c_CT_Cell cell;
    cell.set_v(value);
    cell.get_f().set_value("A1");
    EXPECT_TRUE(cell.isset_v());
    EXPECT_EQ(cell.get_v(), value);
    cell.set_v("5");
    cell.unset_f();
    EXPECT_EQ(sheet::c_CT_Cell(cell).get_v(), "5");
    cell.unset_v();
    EXPECT_FALSE(cell.isset_v());
    EXPECT_EQ(cell.get_v(), "");
    cell.set_v(value);
    EXPECT_EQ(cell.get_v(), value);
    cell.unset_content();
    EXPECT_FALSE(cell.isset_v());
    EXPECT_TRUE(cell.is_plain());
  }
  sheet::c_CT_Cell cell;
  cell.get_f().set_value("A1");
  EXPECT_FALSE(cell.isset_v());
}

TEST(PackedCell, IsLeftWithoutAValueWhenMoved) {
  for (const std::string value : {"14", "a text too long for the cell itself"}) {
    sheet::c_CT_Cell cell, target;
    target.get_f().set_value("B2");
    cell.set_v(value);
    target = std::move(cell);
    EXPECT_EQ(target.get_v(), value);
    EXPECT_FALSE(target.isset_f());
    cell.set_v("again");
    EXPECT_EQ(cell.get_v(), "again");
  }
}

TEST(PackedCell, GoesIntoTheDescribedFormAndBack) {
  sheet::c_CT_Cell_Worker worker;
  worker.set_r("C7");
  worker.set_s(5);
  worker.set_t("str");
  worker.set_v("text");
  worker.set_ph(true);
  worker.get_f().set_value("A1");
  sheet::c_CT_Cell cell;
  cell.pack(worker);
  EXPECT_EQ(cell.row(), 6U);
  EXPECT_EQ(cell.column(), 2);
  sheet::c_CT_Cell_Worker unpacked;
  cell.unpack(unpacked);
  EXPECT_TRUE(lmx::equal(worker, unpacked));
}

}  // namespace rubrica
