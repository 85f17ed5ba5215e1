#include "tests/host/host_fixture.h"

namespace rubrica::host::testing {
namespace {

class Worksheet : public HostTest {
 protected:
  ObjectHandle workbook = host.construct(classid::workbook);
  ObjectHandle worksheet = addSheet(workbook);

  static Value i(std::int32_t value) { return integerValue(value); }
  static Value t(std::u32string value) { return textValue(std::move(value)); }
  // The engine call that a method made.
  std::string reached(int method, std::vector<Value> parameters) {
    book().clearLines();
    lastResult = host.call(worksheet, method, std::move(parameters));
    expectNoError();
    return book().lines().empty() ? "" : book().lines().back();
  }
  void expectRefused(int method, std::vector<Value> parameters, const std::u32string& longText,
                     const std::u32string& name) {
    book().clearLines();
    expectError(host.call(worksheet, method, std::move(parameters)), -102, longText, name);
    EXPECT_TRUE(book().lines().empty());
  }

  Result lastResult;
};

TEST_F(Worksheet, MethodsForwardWithIndicesFromZero) {
  EXPECT_EQ(reached(3001, {i(3)}), "colWidth(2)");
  EXPECT_EQ(reached(3002, {i(3)}), "rowHeight(2)");
  EXPECT_EQ(reached(3003, {i(1), i(4), numberValue(12.5)}), "setCol(0, 3, 12.5, null, false)");
  EXPECT_EQ(reached(3004, {i(9), numberValue(20)}), "setRow(8, 20, null, false)");
  EXPECT_EQ(reached(3006, {i(1), i(2), i(3), i(4)}), "setMerge(0, 1, 2, 3)");
  EXPECT_EQ(reached(3007, {i(1), t(U"C")}), "delMerge(0, 2)");
  EXPECT_EQ(reached(3008, {i(10)}), "setHorzPageBreak(9, true)");
  EXPECT_EQ(reached(3008, {i(10), booleanValue(false)}), "setHorzPageBreak(9, false)");
  EXPECT_EQ(reached(3009, {t(U"D")}), "setVertPageBreak(3, true)");
  EXPECT_EQ(reached(3009, {t(U"D"), i(0)}), "setVertPageBreak(3, false)");
  EXPECT_EQ(reached(3010, {i(2), i(2)}), "split(1, 1)");
  EXPECT_EQ(reached(3012, {i(2), i(5)}), "groupCols(1, 4, true)");
  EXPECT_EQ(reached(3012, {i(2), i(5), booleanValue(false)}), "groupCols(1, 4, false)");
  EXPECT_EQ(reached(3014, {i(2), i(5)}), "insertRow(1, 4, true)");
  EXPECT_EQ(reached(3015, {i(2), t(U"E")}), "insertCol(1, 4, true)");
  EXPECT_EQ(reached(3016, {i(2), i(5)}), "removeRow(1, 4, true)");
  EXPECT_EQ(reached(3017, {i(2), i(5)}), "removeCol(1, 4, true)");
  EXPECT_EQ(reached(3018, {i(1), i(2)}), "setPrintRepeatRows(0, 1)");
  EXPECT_EQ(reached(3019, {t(U"A"), t(U"B")}), "setPrintRepeatCols(0, 1)");
  EXPECT_EQ(reached(3020, {i(1), i(50), t(U"A"), t(U"H")}), "setPrintArea(0, 49, 0, 7)");
  EXPECT_EQ(reached(3021, {}), "clearPrintRepeats()");
  EXPECT_EQ(reached(3022, {}), "clearPrintArea()");
  EXPECT_EQ(reached(3023, {t(U"tax"), i(1), i(2), i(3), i(4)}), "setNamedRange(\"tax\", 0, 1, 2, 3, -2, false)");
  EXPECT_EQ(reached(3024, {t(U"tax")}), "delNamedRange(\"tax\", -2)");
}

TEST_F(Worksheet, ReturnsAreTheEnginesAnswers) {
  sheet().calls.numbers["colWidth"] = 8.43;
  reached(3001, {i(1)});
  EXPECT_EQ(lastResult.value->type, kind::number);
  EXPECT_EQ(lastResult.value->number, 8.43);
  for (const auto& [method, operation, parameters] : std::vector<std::tuple<int, std::string, std::vector<Value>>>{
           {3003, "setCol", {i(1), i(1), numberValue(1)}},
           {3004, "setRow", {i(1), numberValue(1)}},
           {3006, "setMerge", {i(1), i(1), i(1), i(1)}},
           {3007, "delMerge", {i(1), i(1)}},
           {3008, "setHorzPageBreak", {i(1)}},
           {3009, "setVertPageBreak", {i(1)}},
           {3011, "groupRows", {i(1), i(2)}},
           {3012, "groupCols", {i(1), i(2)}},
           {3014, "insertRow", {i(1), i(2)}},
           {3015, "insertCol", {i(1), i(2)}},
           {3016, "removeRow", {i(1), i(2)}},
           {3017, "removeCol", {i(1), i(2)}},
           {3023, "setNamedRange", {t(U"n"), i(1), i(1), i(1), i(1)}},
           {3024, "delNamedRange", {t(U"n")}}}) {
    for (int answer : {0, 1}) {
      sheet().calls.numbers[operation] = answer;
      reached(method, parameters);
      ASSERT_TRUE(lastResult.value) << method;
      EXPECT_EQ(lastResult.value->integer, answer == 1 ? kHostTrue : kHostFalse) << method;
    }
  }
  for (int method : {3010, 3018, 3019}) {
    reached(method, {i(1), i(1)});
    EXPECT_FALSE(lastResult.value) << method;
  }
  for (int method : {3013, 3021, 3022}) {
    reached(method, {});
    EXPECT_FALSE(lastResult.value) << method;
  }
}

TEST_F(Worksheet, ColumnsByLettersFollowTheComponentsTable) {
  EXPECT_EQ(reached(3001, {t(U"A")}), "colWidth(0)");
  EXPECT_EQ(reached(3001, {t(U"V")}), "colWidth(21)");
  EXPECT_EQ(reached(3001, {t(U"X")}), "colWidth(22)");
  EXPECT_EQ(reached(3001, {t(U"Z")}), "colWidth(24)");
  EXPECT_EQ(reached(3001, {t(U"AA")}), "colWidth(24)");
  EXPECT_EQ(reached(3001, {t(U"AZ")}), "colWidth(24)");
  EXPECT_EQ(reached(3001, {t(U"BF")}), "colWidth(50)");
  const std::u32string unknown = U"Unknown first parameter.  Acceptable types are Integer and Character.";
  for (const std::u32string text : {U"W", U"a", U"", U"1", U"WA", U"aa", U"AAA", U"\u00c4"}) {
    expectRefused(3001, {t(text)}, unknown, U"$colWidth");
  }
  for (const Value& wrong : {numberValue(1.5), booleanValue(true), i(0), i(-2147483647 - 1), dateValue(2026, 1, 1),
                             objectValue(worksheet), Value{}}) {
    expectRefused(3001, {wrong}, unknown, U"$colWidth");
  }
}

TEST_F(Worksheet, RequiredParametersAreNamed) {
  const std::u32string types = U"  Acceptable types are Integer and Character.";
  const Value bad = textValue(U"W");
  expectRefused(3000, {}, U"First parameter, row, is required.", U"$cell");
  expectRefused(3000, {i(1)}, U"Second parameter, col, is required.", U"$cell");
  expectRefused(3000, {i(1), bad}, U"Unknown second parameter." + types, U"$cell");
  expectRefused(3000, {i(1), numberValue(1.5)}, U"Unknown second parameter." + types, U"$cell");
  expectRefused(3001, {}, U"First parameter, col, is required.", U"$colWidth");
  expectRefused(3002, {}, U"First parameter, row, is required.", U"$rowHeight");
  expectRefused(3003, {}, U"First parameter, colFirst, is required.", U"$setCol");
  expectRefused(3003, {bad}, U"Unknown first parameter." + types, U"$setCol");
  expectRefused(3003, {i(1)}, U"Second parameter, colLast, is required.", U"$setCol");
  expectRefused(3003, {i(1), bad}, U"Unknown second parameter." + types, U"$setCol");
  expectRefused(3003, {i(1), i(1)}, U"Third parameter, width, is required.", U"$setCol");
  expectRefused(3003, {i(1), i(1), numberValue(1), i(9)}, U"Fourth parameter, format, is unrecognized.", U"$setCol");
  expectRefused(3004, {}, U"First parameter, row, is required.", U"$setRow");
  expectRefused(3004, {i(1)}, U"Second parameter, height, is required.", U"$setRow");
  expectRefused(3004, {i(1), i(1), t(U"x")}, U"Third parameter, format, is unrecognized.", U"$setRow");
  expectRefused(3005, {i(1), bad}, U"Unknown second parameter." + types, U"$getMerge");
  expectRefused(3005, {i(1), i(1), i(0), i(0), i(0)},
                U"Insufficient parameters.  rowFirst, rowLast, colFirst and colLast must all be passed.", U"$getMerge");
  expectRefused(3007, {i(1)}, U"Second parameter, col, is required.", U"$delMerge");
  expectRefused(3007, {i(1), bad}, U"Unknown second parameter, col." + types, U"$delMerge");
  expectRefused(3010, {i(1), bad}, U"Unknown second parameter, col." + types, U"$split");
  expectRefused(3009, {bad}, U"Unknown first parameter, col." + types, U"$setVertPageBreak");
  expectRefused(3012, {}, U"First parameter, firstCol, is required.", U"$groupCols");
  expectRefused(3012, {bad}, U"Unknown second parameter, firstCol." + types, U"$groupCols");
  expectRefused(3012, {i(1)}, U"Second parameter, lastCol, is required.", U"$groupCols");
  expectRefused(3012, {i(1), bad}, U"Unknown second parameter, lastCol." + types, U"$groupCols");
  for (const auto& [method, name] : std::vector<std::pair<int, std::u32string>>{
           {3015, U"$insertCol"}, {3017, U"$removeCol"}, {3019, U"$setPrintRepeatCols"}}) {
    expectRefused(method, {}, U"First parameter, colFirst, is required.", name);
    expectRefused(method, {bad}, U"Unknown first parameter, colFirst." + types, name);
    expectRefused(method, {i(1)}, U"Second parameter, colLast, is required.", name);
    expectRefused(method, {i(1), bad}, U"Unknown second parameter, colLast." + types, name);
  }
  for (const auto& [method, name] : std::vector<std::pair<int, std::u32string>>{
           {3011, U"$groupRows"}, {3014, U"$insertRow"}, {3016, U"$removeRow"}, {3018, U"$setPrintRepeatRows"}}) {
    expectRefused(method, {}, U"First parameter, rowFirst, is required.", name);
    expectRefused(method, {i(1)}, U"Second parameter, rowLast, is required.", name);
  }
  for (const auto& [method, name] :
       std::vector<std::pair<int, std::u32string>>{{3006, U"$setMerge"}, {3020, U"$setPrintArea"}}) {
    expectRefused(method, {}, U"First parameter, rowFirst, is required.", name);
    expectRefused(method, {i(1)}, U"Second parameter, rowLast, is required.", name);
    expectRefused(method, {i(1), i(1)}, U"Third parameter, colFirst, is required.", name);
    expectRefused(method, {i(1), i(1), bad}, U"Unknown third parameter, colFirst." + types, name);
    expectRefused(method, {i(1), i(1), i(1)}, U"Fourth parameter, colLast, is required.", name);
    expectRefused(method, {i(1), i(1), i(1), bad}, U"Unknown fourth parameter, colLast." + types, name);
  }
  expectRefused(3013, {i(1), i(1), bad}, U"Unknown third parameter, colFirst." + types, U"$clear");
  expectRefused(3013, {i(1), i(1), i(1), bad}, U"Unknown fourth parameter, colLast." + types, U"$clear");
}

TEST_F(Worksheet, NamedRangesNeedAName) {
  const std::u32string types = U"  Acceptable types are Integer and Character.";
  const std::u32string set = U"$setNamedRange", del = U"$delNamedRange";
  expectRefused(3023, {}, U"First parameter, name, is required.", set);
  expectRefused(3023, {t(U"")}, U"Invalid First parameter. Name cannot be blank.", set);
  expectRefused(3023, {t(U"n")}, U"Second parameter, rowFirst, is required.", set);
  expectRefused(3023, {t(U"n"), i(1)}, U"Third parameter, rowLast, is required.", set);
  expectRefused(3023, {t(U"n"), i(1), i(1)}, U"Fourth parameter, colFirst, is required.", set);
  expectRefused(3023, {t(U"n"), i(1), i(1), t(U"W")}, U"Unknown fourth parameter, colFirst." + types, set);
  expectRefused(3023, {t(U"n"), i(1), i(1), i(1)}, U"Fifth parameter, colLast, is required.", set);
  expectRefused(3023, {t(U"n"), i(1), i(1), i(1), t(U"W")}, U"Unknown fifth parameter, colLast." + types, set);
  expectRefused(3024, {}, U"First parameter, name, is required.", del);
  expectRefused(3024, {t(U"")}, U"Invalid First parameter. Name cannot be blank.", del);
}

TEST_F(Worksheet, CellIsOnlyAnAddress) {
  book().clearLines();
  const ObjectHandle made = cell(worksheet, 70000, 300);
  EXPECT_TRUE(book().lines().empty());
  EXPECT_EQ(host.get(made, 4105).value->integer, 70000);
  EXPECT_EQ(host.get(made, 4106).value->integer, 300);
  const Result letters = host.call(worksheet, 3000, {i(1), t(U"X")});
  EXPECT_EQ(letters.value->type, kind::object);
  EXPECT_EQ(host.get(objectOf(letters), 4106).value->integer, 23);
  for (const std::u32string pair : {U"AB", U"AC"}) {
    EXPECT_EQ(host.get(objectOf(host.call(worksheet, 3000, {i(1), t(pair)})), 4106).value->integer, 25);
  }
}

TEST_F(Worksheet, CellInRowZeroIsMadeButNeverSetUp) {
  for (int row : {0, -1, -2147483647 - 1}) {
    const ObjectHandle made = cell(worksheet, row, 1);
    ASSERT_NE(made, 0U);
    expectError(host.call(made, 4001, {i(1)}), -2, U"Internal Error.  Object dependencies are not setup.", U"");
    EXPECT_TRUE(host.get(made, 4105).value->isEmpty());
  }
}

TEST_F(Worksheet, FormatsOfRowsAndColumnsAreOptional) {
  const ObjectHandle format = objectOf(host.call(workbook, 2008));
  EXPECT_EQ(reached(3003, {i(1), i(1), numberValue(9), objectValue(format), booleanValue(true)}),
            "setCol(0, 0, 9, set, true)");
  EXPECT_EQ(reached(3004, {i(1), numberValue(9), referenceValue(format), i(1)}), "setRow(0, 9, set, true)");
  EXPECT_EQ(reached(3004, {i(1), numberValue(9), referenceValue(format), i(2)}), "setRow(0, 9, set, false)");
  EXPECT_EQ(reached(3004, {i(5), numberValue(9)}), "setRow(4, 9, null, false)");
}

TEST_F(Worksheet, GetMergeGivesTheRangeBackInItsParameters) {
  sheet().calls.numbers["getMerge"] = 1;
  sheet().calls.outs["getMerge"] = {4, 5, 6, 7};
  EXPECT_EQ(reached(3005, {i(5), i(7), i(0), i(0), i(0), i(0)}), "getMerge(4, 6, out, out, out, out)");
  EXPECT_EQ(lastResult.value->integer, kHostTrue);
  EXPECT_EQ(lastResult.changed, (std::set<int>{3, 4, 5, 6}));
  for (int n = 0; n < 4; ++n) EXPECT_EQ(lastResult.parameters[static_cast<std::size_t>(n) + 2].integer, 5 + n);
  sheet().calls.numbers["getMerge"] = 0;
  reached(3005, {i(5), i(7), i(0), i(0), i(0), i(0)});
  EXPECT_EQ(lastResult.value->integer, kHostFalse);
  EXPECT_TRUE(lastResult.changed.empty());
  EXPECT_EQ(lastResult.parameters[2].integer, 0);
}

TEST_F(Worksheet, GroupRowsTakesCollapsedFromTheSecondParameter) {
  EXPECT_EQ(reached(3011, {i(5), i(8), booleanValue(false)}), "groupRows(4, 7, true)");
  EXPECT_EQ(reached(3011, {i(5), i(1), booleanValue(true)}), "groupRows(4, 0, true)");
  EXPECT_EQ(reached(3011, {i(5), i(0), booleanValue(true)}), "groupRows(4, -1, false)");
}

TEST_F(Worksheet, ClearTakesAnXlsSheetByDefault) {
  EXPECT_EQ(reached(3013, {}), "clear(0, 65535, 0, 255)");
  EXPECT_EQ(reached(3013, {i(2), i(3)}), "clear(1, 2, 0, 255)");
  EXPECT_EQ(reached(3013, {i(2), i(3), t(U"B"), i(4)}), "clear(1, 2, 1, 3)");
}

TEST_F(Worksheet, AbsurdNumbersReachTheEngineUnwrapped) {
  EXPECT_EQ(reached(3002, {i(-2147483647 - 1)}), "rowHeight(-2147483648)");
  EXPECT_EQ(reached(3002, {i(2147483647)}), "rowHeight(2147483646)");
  sheet().calls.numbers["lastRow"] = 2147483647;
  EXPECT_EQ(host.get(worksheet, 3501).value->integer, 2147483647);
}

TEST_F(Worksheet, UsedRangeCountsFromOneAndItsEndPointsPastIt) {
  sheet().calls.numbers["lastRow"] = sheet().calls.numbers["lastCol"] = 1;
  EXPECT_EQ(host.get(worksheet, 3500).value->integer, 1);
  EXPECT_EQ(host.get(worksheet, 3501).value->integer, 2);
  EXPECT_EQ(host.get(worksheet, 3502).value->integer, 1);
  EXPECT_EQ(host.get(worksheet, 3503).value->integer, 2);
}

TEST_F(Worksheet, PlainPropertiesAreReadAndSetOnlyWhenTheyDiffer) {
  const std::vector<std::tuple<int, std::string, Value>> properties = {{3504, "groupSummaryBelow", booleanValue(true)},
                                                                       {3505, "groupSummaryRight", booleanValue(true)},
                                                                       {3507, "displayGridlines", booleanValue(true)},
                                                                       {3508, "printGridlines", booleanValue(true)},
                                                                       {3509, "zoom", integerValue(120)},
                                                                       {3510, "printZoom", integerValue(70)},
                                                                       {3511, "landscape", booleanValue(true)},
                                                                       {3516, "hCenter", booleanValue(true)},
                                                                       {3517, "vCenter", booleanValue(true)},
                                                                       {3518, "marginLeft", numberValue(0.25)},
                                                                       {3519, "marginRight", numberValue(0.5)},
                                                                       {3520, "marginTop", numberValue(0.75)},
                                                                       {3521, "marginBottom", numberValue(1.25)},
                                                                       {3522, "printRowCol", booleanValue(true)}};
  for (const auto& [id, name, value] : properties) {
    book().clearLines();
    EXPECT_EQ(host.set(worksheet, id, value), 1);
    std::string setter = "set" + name;
    setter[3] = static_cast<char>(std::toupper(setter[3]));
    EXPECT_NE(book().last(setter), "") << setter;
    const Result read = host.get(worksheet, id);
    EXPECT_EQ(read.value->type, value.type);
    EXPECT_EQ(read.value->integer, value.integer) << name;
    EXPECT_EQ(read.value->number, value.number) << name;
    book().clearLines();
    host.set(worksheet, id, value);
    EXPECT_EQ(book().last(setter), "") << setter;
  }
}

TEST_F(Worksheet, ProtectionIsSetWithoutAPassword) {
  host.set(worksheet, 3523, booleanValue(true));
  EXPECT_EQ(book().last("setProtect"), "setProtect(true, null, -1)");
  sheet().calls.numbers["protect"] = 1;
  EXPECT_EQ(host.get(worksheet, 3523).value->integer, kHostTrue);
}

TEST_F(Worksheet, HeaderAndFooterKeepTheirMargins) {
  sheet().calls.numbers["headerMargin"] = 0.5;
  sheet().calls.numbers["footerMargin"] = 0.25;
  host.set(worksheet, 3512, textValue(U""));
  EXPECT_EQ(book().last("setHeader"), "");
  host.set(worksheet, 3512, textValue(U"&CPage &P"));
  EXPECT_EQ(book().last("setHeader"), "setHeader(\"&CPage &P\", 0.5)");
  sheet().calls.texts["footer"] = u"end";
  host.set(worksheet, 3514, textValue(U"end"));
  EXPECT_EQ(book().last("setFooter"), "");
  host.set(worksheet, 3515, numberValue(2.75));
  EXPECT_EQ(book().last("setFooter"), "setFooter(\"end\", 2)");
  EXPECT_EQ(host.get(worksheet, 3513).value->number, 0.5);
  host.set(worksheet, 3513, numberValue(0.5));
  EXPECT_EQ(book().last("setHeader"), "setHeader(\"\", 0)");
}

TEST_F(Worksheet, PaperTravelsAsAConstant) {
  EXPECT_TRUE(host.get(worksheet, 3506).value->text == U"kXLPaperDefault");
  host.set(worksheet, 3506, textValue(U"PaperA4"));
  EXPECT_EQ(book().last("setPaper"), "setPaper(9)");
  EXPECT_TRUE(host.get(worksheet, 3506).value->text == U"kXLPaperA4");
  EXPECT_EQ(host.get(worksheet, 3506).value->integer, 10);
  host.set(worksheet, 3506, host.constant(U"kXLPaperGermanLegalFanFold"));
  EXPECT_EQ(book().last("setPaper"), "setPaper(41)");
  book().clearLines();
  for (const Value& wrong : {integerValue(0), integerValue(43), integerValue(-1), textValue(U"PaperNapkin"),
                             textValue(U"kXLPaperA4"), numberValue(10.0), Value{}}) {
    EXPECT_EQ(host.set(worksheet, 3506, wrong), 1);
    EXPECT_EQ(book().last("setPaper"), "");
  }
  sheet().calls.numbers["paper"] = 77;
  EXPECT_TRUE(host.get(worksheet, 3506).value->isEmpty());
}

}  // namespace
}  // namespace rubrica::host::testing
