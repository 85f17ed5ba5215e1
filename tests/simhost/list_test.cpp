#include <gtest/gtest.h>

#include "simhost/files.h"
#include "tests/simhost/script_runner.h"

namespace rubrica::simhost::test {
namespace {

// A list with three lines and the columns lName and lNum.
const std::string listOfThree =
    "Var l List\nVar lName Character\nVar lNum Integer\nVar i Integer\nDo l.$define(lName,lNum)\nDo l.$add('b',2)\nDo "
    "l.$add('a',3)\n"
    "Do l.$add('c',1)\n";

std::string withList(const std::string& script) {
  return run(listOfThree + script);
}

TEST(Lists, CellsAreReachedByLineAndColumn) {
  EXPECT_EQ(withList("Print l.2.lName, l.2.2, l.[1+2].lNum, l.3.C1, l.[2].['lNum'], lst(l,1,'lName'), lst(l,1,2)"),
            "a 3 1 c 3 b 2\n");
  EXPECT_EQ(withList("Calculate l.$line as 2\nPrint l.lName, l.lNum\nCalculate l.lNum as '77'\nPrint l.2.lNum"),
            "a 3\n77\n");
  EXPECT_EQ(withList("Calculate l.1.lNum as 9\nCalculate l.[2].C1 as 'z'\nPrint l.1.lNum, l.2.lName"), "9 z\n");
  EXPECT_EQ(withList("Do l.3.lName.$assign('q')\nPrint l.3.lName"), "q\n");
}

TEST(Lists, LinesThatAreNotThereReadAsEmptyAndCantBeWritten) {
  EXPECT_EQ(withList("Print con('[',l.9.lName,l.lName,']')"), "[]\n");
  EXPECT_EQ(withList("Calculate l.9.lName as 'x'"), "line 9: The list has no line 9; it has 3");
  EXPECT_EQ(withList("Print l.1.nope"), "line 9: The list has no column 'nope'");
  EXPECT_EQ(withList("Print l.1.7"), "line 9: The list has no column 7; it has 2");
  EXPECT_EQ(withList("Print l.1.C7"), "line 9: The list has no column 'C7'");
  EXPECT_EQ(withList("Do l.$frob()"), "line 9: A list has no '$frob'");
  EXPECT_EQ(withList("Print l.$frob"), "line 9: A list has no '$frob'");
}

TEST(Lists, LinesAreAddedAndRemoved) {
  EXPECT_EQ(withList("Print l.$linecount, l.$colcount, l.$line\nDo l.$addbefore(1,'x',0) Returns i\nPrint i, "
                     "l.1.lName, l.$linecount\n"
                     "Do l.$addafter(1,'y') Returns i\nPrint i, l.2.lName, l.2.lNum\nDo l.$remove(1)\nPrint "
                     "l.1.lName\nDo l.$clear()\n"
                     "Print l.$linecount"),
            "3 2 0\n1 x 4\n2 y 0\ny\n0\n");
  EXPECT_EQ(withList("Calculate l.$linecount as 5\nPrint l.$linecount, con('[',l.5.lName,']')\nCalculate l.$linecount "
                     "as 1\nPrint l.$linecount"),
            "5 []\n1\n");
  EXPECT_EQ(withList("Do l.$remove(4)"), "line 9: The list has no line 4; it has 3");
  EXPECT_EQ(withList("Do l.$add(1,2,3)"), "line 9: There are 3 values for 2 columns");
}

TEST(Lists, LoopsWalkTheLines) {
  EXPECT_EQ(withList("For l.$line from 1 to l.$linecount\nPrint l.lName\nEnd For"), "b\na\nc\n");
  EXPECT_EQ(withList("For each line in list l\nPrint l.$line, l.lName\nEnd For"), "1 b\n2 a\n3 c\n");
  EXPECT_EQ(withList("For each line in list l\nIf l.lNum=3\nBreak to end of loop\nEnd If\nEnd For\nPrint l.$line"),
            "2\n");
}

TEST(Lists, SortAndSearchUseTheReference) {
  EXPECT_EQ(withList("Do l.$sort($ref.lName)\nPrint l.1.lName,l.2.lName,l.3.lName\nDo l.$sort($ref.lNum,kTrue)\nPrint "
                     "l.1.lNum,l.2.lNum,l.3.lNum"),
            "a b c\n3 2 1\n");
  EXPECT_EQ(withList("Do l.$search($ref.lNum>2) Returns i\nPrint i,l.$line,l.lName\nDo l.$search($ref.lName='zz') "
                     "Returns i\nPrint i,l.$line"),
            "2 2 a\n0 2\n");
  EXPECT_EQ(withList("Do l.$sort(1)"), "line 9: $sort() takes $ref.column and kTrue for descending, in pairs");
}

TEST(Lists, ColumnsCanBeAddedRenamedAndSummed) {
  EXPECT_EQ(
      withList(
          "Do l.$cols.$add('extra',kNumber)\nPrint l.$cols.$count, l.$cols.3.$name, l.$cols.extra.$coltype\n"
          "Calculate l.1.extra as 2.5\nPrint l.$cols.extra.$total(), l.$cols.lNum.$total(), l.$cols.lNum.$maximum(), "
          "l.$cols.lNum.$average()\nCalculate l.$cols.3.$name as 'more'\nPrint l.1.more\nDo "
          "l.$cols.$remove('lName')\nPrint "
          "l.$colcount, l.1.1"),
      "3 extra 25\n2.5 6 3 2\n2.5\n2 2\n");
}

TEST(Lists, AreValues) {
  EXPECT_EQ(withList("Var m List\nCalculate m as l\nDo m.$add('d',4)\nCalculate m.1.lName as 'changed'\nPrint "
                     "l.$linecount,l.1.lName,m.$linecount"),
            "3 b 4\n");
  EXPECT_EQ(
      withList("Var m List\nDo m.$copydefinition(l)\nDo m.$merge(l)\nDo m.$merge(m)\nPrint m.$linecount, m.6.lName"),
      "6 c\n");
}

TEST(Lists, ParametersMayChangeTheListTheyAreFor) {
  EXPECT_EQ(withList("Do l.$add('n',l.$add('inner',5))\nPrint l.$linecount,l.4.lName,l.5.lNum"), "5 inner 4\n");
  EXPECT_EQ(withList("Do l.3.$assigncols(l.$remove(3),1)"), "line 9: The list has no line 3");
}

TEST(Lists, AListWithinALineMayGoAwayWhileItsParametersAreTaken) {
  const std::string nested = "Var o List\nDo o.$define(l)\nDo o.$add(l)\n";
  EXPECT_EQ(withList(nested + "Do o.1.l.$add(o.$remove(1),2)"), "line 12: The list has no line 1; it has 0");
  EXPECT_EQ(withList(nested + "Calculate o.1.l.[o.$remove(1)].lName as 'x'"),
            "line 12: The list has no line 1; it has 0");
  EXPECT_EQ(withList(nested + "Do o.$search(o.$remove(1)) Returns i\nPrint i"), "1\n");
}

TEST(Rows, HoldOneLine) {
  EXPECT_EQ(run("Var r Row\nVar a Integer\nVar b Character\nDo r.$define(a,b)\nCalculate r.a as 4\nCalculate r.b as "
                "'x'\nPrint r.a,r.b,r.C2,r.2"),
            "4 x x x\n");
  EXPECT_EQ(run("Var r Row\nVar a Integer = 5\nCalculate r as row(a,'x',2.5)\nPrint r.a, r.C2, r.3, r.$colcount"),
            "5 x 2.5 3\n");
  EXPECT_EQ(withList("Var r Row\nCalculate r as l.2\nPrint r.lName\nDo r.$assigncols('new',8)\nDo "
                     "l.1.$assignrow(r)\nPrint l.1.lName,l.1.lNum"),
            "a\nnew 8\n");
  EXPECT_EQ(withList("Calculate l.$line as 3\nDo l.$loadcols()\nPrint lName,lNum"), "c 1\n");
}

TEST(Lists, MayHoldLists) {
  EXPECT_EQ(withList("Var o List\nDo o.$define(l)\nDo o.$add(l)\nCalculate o.1.l.2.lName as 'deep'\nPrint "
                     "o.1.l.2.lName, l.2.lName\n"
                     "Do o.1.l.$add('e',5)\nPrint o.1.l.$linecount"),
            "deep a\n4\n");
}

TEST(Csv, ReadsQuotedFieldsAndLineEnds) {
  List list;
  readCsv("\xEF\xBB\xBFname,note\r\n\"Smith, J.\",\"say \"\"hi\"\"\"\r\nKlein,\"two\nlines\"\r\n\r\nx\n", true, ',',
          list);
  ASSERT_EQ(list.columnCount(), 2u);
  ASSERT_EQ(list.lineCount(), 3u);
  EXPECT_EQ(list.column(2).name, U"note");
  EXPECT_EQ(list.at(1, 1).toUtf8(), "Smith, J.");
  EXPECT_EQ(list.at(1, 2).toUtf8(), "say \"hi\"");
  EXPECT_EQ(list.at(2, 2).toUtf8(), "two\nlines");
  EXPECT_EQ(list.at(3, 2).toUtf8(), "");
  EXPECT_EQ(writeCsv(list, true, ','), "name,note\n\"Smith, J.\",\"say \"\"hi\"\"\"\nKlein,\"two\nlines\"\nx,\n");
}

TEST(Csv, DefinedColumnsKeepTheirTypes) {
  List list;
  list.addColumn({U"n", Kind::Number, 0, 0});
  list.addColumn({U"d", Kind::Date, shortDate, 0});
  readCsv("1.5;2026-11-20;ignored\n2", false, ';', list);
  ASSERT_EQ(list.lineCount(), 2u);
  EXPECT_EQ(list.at(1, 1).kind(), Kind::Number);
  EXPECT_EQ(list.at(1, 2).toDate().day, 20);
  EXPECT_TRUE(list.at(2, 2).isClear());
}

TEST(Csv, ScriptsReadAndWriteFiles) {
  const std::string path = testing::TempDir() + "simhost_list_test.csv";
  EXPECT_EQ(withList("Print WriteCSV('" + path + "',l)\nVar m List\nPrint ReadCSV('" + path +
                     "',m)\nPrint m.$linecount, m.2.lName, m.2.lNum\n"
                     "Print FileOps.$doesfileexist('" +
                     path + "'), FileOps.$deletefile('" + path + "'), FileOps.$deletefile('" + path +
                     "')\n"
                     "Print ReadCSV('" +
                     path + "',m)<>0"),
            "0\n0\n3 a 3\nYES YES NO\nYES\n");
}

TEST(Files, BinariesAreReadAndWrittenWhole) {
  const std::string path = testing::TempDir() + "simhost_binary_test.bin";
  EXPECT_EQ(run("Var b,c Binary\nCalculate b as chartoutf8('Grüße')\nPrint WriteBinFile('" + path +
                "',b)\nPrint ReadBinFile('" + path + "',c)\nPrint binlength(c), utf8tochar(c), FileOps.$deletefile('" +
                path + "')\nPrint ReadBinFile('/nonexistent/x',c)<>0, binlength(c)"),
            "0\n0\n7 Grüße YES\nYES 7\n");
}

}  // namespace
}  // namespace rubrica::simhost::test
