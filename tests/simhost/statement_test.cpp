#include <gtest/gtest.h>

#include "tests/simhost/script_runner.h"

namespace rubrica::simhost::test {
namespace {

TEST(Scripts, CommentsBlankLinesAndContinuationsAreLeftOut) {
  EXPECT_EQ(run("\xEF\xBB\xBF# a comment\n; another\n\n  Print 1, \\\n  'a ## b' ## the rest\r\nPrint 2 ;; end\n"),
            "1 a ## b\n2\n");
}

TEST(Scripts, CommandsAreReadWithoutRegardToCaseAndSpaces) {
  EXPECT_EQ(run("VAR x INTEGER = 2\nIF x=2\nprint 'two'\nELSE   IF x=3\nprint 'three'\nend  if"), "two\n");
}

TEST(Statements, IfTakesTheFirstBranchThatHolds) {
  const std::string script =
      "Parameter p Integer\nIf p<0\nPrint 'negative'\nElse If p=0\nPrint 'zero'\nElse If p<10\nPrint "
      "'small'\nElse\nPrint 'large'\nEnd If";
  EXPECT_EQ(run(script, nullptr, {"-1"}), "negative\n");
  EXPECT_EQ(run(script, nullptr, {"0"}), "zero\n");
  EXPECT_EQ(run(script, nullptr, {"9"}), "small\n");
  EXPECT_EQ(run(script, nullptr, {"10"}), "large\n");
}

TEST(Statements, ForCountsUpDownAndInFractions) {
  EXPECT_EQ(run("Var i Integer\nFor i from 1 to 3\nPrint i\nEnd For"), "1\n2\n3\n");
  EXPECT_EQ(run("Var i Integer\nFor i from 3 to 1 step -2\nPrint i\nEnd For"), "3\n1\n");
  EXPECT_EQ(run("Var n Number\nFor n from 0 to 1 step 0.5\nPrint n\nEnd For"), "0\n0.5\n1\n");
  EXPECT_EQ(run("Var i Integer\nFor i from 2 to 1\nPrint i\nEnd For"), "");
  EXPECT_EQ(run("Var i Integer\nFor i from 1 to 3 step 0\nEnd For"), "line 2: The step of a For loop can't be 0");
}

TEST(Statements, TheBodyMayMoveTheCounter) {
  EXPECT_EQ(run("Var i Integer\nFor i from 1 to 6\nPrint i\nCalculate i as i+1\nEnd For"), "1\n3\n5\n");
}

TEST(Statements, WhileAndRepeatEndByTheirConditions) {
  EXPECT_EQ(run("Var i Integer = 3\nWhile i>0\nPrint i\nCalculate i as i-1\nEnd While"), "3\n2\n1\n");
  EXPECT_EQ(run("Var i Integer\nRepeat\nCalculate i as i+1\nPrint i\nUntil i>=2"), "1\n2\n");
}

TEST(Statements, BreakAndJumpGoToTheInnermostLoop) {
  EXPECT_EQ(run("Var i,j Integer\nFor i from 1 to 2\nFor j from 1 to 5\nIf j=2\nJump to start of loop\nElse If j=4\n"
                "Break to end of loop\nEnd If\nPrint i,j\nEnd For\nEnd For"),
            "1 1\n1 3\n2 1\n2 3\n");
}

TEST(Statements, SwitchTakesOneCase) {
  const std::string script =
      "Parameter p Character\nSwitch p\nCase 'a','b'\nPrint 'first'\nIf p='b'\nBreak to end of switch\nEnd If\nPrint "
      "'only a'\n"
      "Case 'c'\nPrint 'c'\nDefault\nPrint 'other'\nEnd Switch\nPrint 'end'";
  EXPECT_EQ(run(script, nullptr, {"a"}), "first\nonly a\nend\n");
  EXPECT_EQ(run(script, nullptr, {"b"}), "first\nend\n");
  EXPECT_EQ(run(script, nullptr, {"c"}), "c\nend\n");
  EXPECT_EQ(run(script, nullptr, {"d"}), "other\nend\n");
}

TEST(Statements, BreakToEndOfLoopWithinASwitchEndsTheLoop) {
  EXPECT_EQ(run("Var i Integer\nFor i from 1 to 5\nSwitch i\nCase 3\nBreak to end of loop\nEnd Switch\nPrint i\nEnd "
                "For\nPrint 'x'"),
            "1\n2\nx\n");
}

TEST(Statements, TextCommandsReplaceSquareBrackets) {
  EXPECT_EQ(run("Var n Integer = 4\nSend to trace log {n is [n], twice [n*2], [con('a]',n)]}"),
            "n is 4, twice 8, a]4\n");
  EXPECT_EQ(run("OK message (Icon) {Done [1+1]}"), "Done 2\n");
  EXPECT_EQ(run("Send to trace log plain text"), "plain text\n");
  EXPECT_EQ(run("Print"), "\n");
  EXPECT_EQ(run("Send to trace log {open [1}"), "line 1: A '[' in the text has no ']'");
  EXPECT_EQ(run("Print 1\nSignal error {bad value [1+1]}\nPrint 2"), "1\nline 2: bad value 2");
}

TEST(Variables, ConvertToTheirTypes) {
  EXPECT_EQ(run("Var i Integer\nCalculate i as '12.7'\nPrint i"), "12\n");
  EXPECT_EQ(run("Var n Number 2 dp\nCalculate n as 1.005\nPrint n"), "1\n");
  EXPECT_EQ(run("Var n Number 2 dp\nCalculate n as 2.346\nPrint n"), "2.35\n");
  EXPECT_EQ(run("Var c Character 3\nCalculate c as 'abcdef'\nPrint c"), "abc\n");
  EXPECT_EQ(run("Var b Boolean\nPrint b\nCalculate b as 1=1\nPrint b"), "\nYES\n");
  EXPECT_EQ(run("Var d Date\nCalculate d as '2026-11-20 14:30'\nPrint d"), "2026-11-20\n");
  EXPECT_EQ(run("Var d Short time\nCalculate d as '2026-11-20 14:30'\nPrint d"), "14:30\n");
  EXPECT_EQ(run("Local variable d (Date time)\nCalculate d as '2026-11-20 14:30'\nPrint d"), "2026-11-20 14:30\n");
  EXPECT_EQ(run("Var l List\nCalculate l as 5"), "line 2: A Integer can't be assigned to l, which is a List");
}

TEST(Variables, NamesHaveNoCase) {
  EXPECT_EQ(run("Var lName Character = 'x'\nPrint LNAME"), "x\n");
}

TEST(Methods, TakeParametersAndReturnValues) {
  EXPECT_EQ(
      run("Var x Integer\nDo method twice(4) Returns x\nPrint x\nMethod twice(p Integer)\nQuit method p*2\nEnd Method"),
      "8\n");
  EXPECT_EQ(run("Do method show(1)\nMethod show(a Integer, b Integer = 5, c Integer = b+1)\nPrint a,b,c\nEnd Method"),
            "1 5 6\n");
  EXPECT_EQ(run("Do method show(1,0)\nMethod show(a Integer, b Integer = 5)\nPrint a,b\nEnd Method"), "1 0\n");
  EXPECT_EQ(run("Do method show(1,2)\nMethod show(a Integer)\nEnd Method"),
            "line 1: Method 'show' takes 1 parameters, not 2");
}

TEST(Methods, FieldReferencesStandForTheCallersVariable) {
  EXPECT_EQ(run("Var x Integer = 1\nDo method more(x)\nPrint x\nMethod more(p Field reference)\nCalculate p as "
                "p+1\nEnd Method"),
            "2\n");
  EXPECT_EQ(run("Var l List\nVar n Integer\nDo l.$define(n)\nDo method fill(l)\nPrint l.$linecount\nMethod fill(p "
                "Field reference)\n"
                "Do p.$add(1)\nDo p.$add(2)\nEnd Method"),
            "2\n");
  EXPECT_EQ(run("Var l List\nVar n Integer\nDo l.$define(n)\nDo l.$add(7)\nDo method more(l.1.n)\nPrint l.1.n\n"
                "Method more(p Field reference)\nCalculate p as p+1\nEnd Method"),
            "8\n");
  EXPECT_EQ(run("Do method more(1)\nMethod more(p Field reference)\nCalculate p as p+1\nPrint p\nEnd Method"), "2\n");
}

TEST(Methods, SeeTheScriptsVariablesBehindTheirOwn) {
  EXPECT_EQ(
      run("Var g Integer = 1\nVar x Integer = 5\nDo method m\nPrint g,x\nMethod m\nVar x Integer\nCalculate x as 9\n"
          "Calculate g as x\nEnd Method"),
      "9 5\n");
}

TEST(Methods, RecurseWithTheirOwnVariables) {
  EXPECT_EQ(run("Var x Integer\nDo method fact(10) Returns x\nPrint x\nMethod fact(n Integer)\nVar r Integer\nIf "
                "n<2\nQuit method 1\n"
                "End If\nDo method fact(n-1) Returns r\nQuit method n*r\nEnd Method"),
            "3628800\n");
}

TEST(Methods, QuitAllEndsTheScriptFromAnywhere) {
  EXPECT_EQ(run("Var i Integer\nFor i from 1 to 3\nDo method m(i)\nPrint i\nEnd For\nMethod m(n Integer)\nIf n=2\nQuit "
                "all methods\n"
                "End If\nEnd Method"),
            "1\n");
}

TEST(Depth, EndlessRecursionEndsInAMessage) {
  EXPECT_EQ(run("Do method m\nMethod m\nDo method m\nEnd Method"), "line 3: The script calls itself too deeply");
  std::string nested = "Do method m\nMethod m\nVar x Integer\n";
  for (int i = 0; i < 50; ++i) nested += "If 1=1\n";
  nested += "Do method m Returns x\n";
  for (int i = 0; i < 50; ++i) nested += "End If\n";
  nested += "End Method";
  EXPECT_TRUE(run(nested).ends_with("The script calls itself too deeply"));
}

TEST(Depth, HundredsOfMethodsMayBeUnderWay) {
  EXPECT_EQ(run("Var x Integer\nDo method sum(200) Returns x\nPrint x\nMethod sum(n Integer)\nVar r Integer\nIf "
                "n=0\nQuit method 0\n"
                "End If\nDo method sum(n-1) Returns r\nQuit method n+r\nEnd Method"),
            "20100\n");
}

TEST(Depth, BracketsAndBlocksAreBoundedAndChainsAreNot) {
  EXPECT_EQ(printed(std::string(98, '(') + "1" + std::string(98, ')')), "1");
  EXPECT_EQ(printed(std::string(100, '(') + "1" + std::string(100, ')')),
            "line 1: The expression nests more than 100 brackets");
  EXPECT_EQ(printed(std::string(100000, '-') + "1"), "line 1: The expression nests more than 100 brackets");
  std::string sum = "0";
  for (int i = 0; i < 20000; ++i) sum += "+1";
  EXPECT_EQ(printed(sum), "20000");
  std::string blocks;
  for (int i = 0; i < 61; ++i) blocks += "If 1=1\n";
  EXPECT_EQ(run(blocks), "line 61: Blocks nest more than 60 deep");
  std::string branches = "Var x Integer = 9999\nIf x=-1\n";
  for (int i = 0; i < 10000; ++i) branches += "Else If x=" + std::to_string(i) + "\nPrint " + std::to_string(i) + "\n";
  EXPECT_EQ(run(branches + "End If"), "9999\n");
}

TEST(Depth, ALongScriptRuns) {
  std::string script = "Var x Integer\n";
  for (int i = 0; i < 50000; ++i) script += "Calculate x as x+1\n";
  EXPECT_EQ(run(script + "Print x"), "50000\n");
}

TEST(Errors, TheFirstUnknownWordStopsTheScriptBeforeItRuns) {
  EXPECT_EQ(run("Print 1\nFrobnicate x\n"), "line 2: Unknown command 'Frobnicate'");
  EXPECT_EQ(run("Print 1\nPrint lNope\nPrint lAlsoNot"), "line 2: Unknown word 'lNope'");
  EXPECT_EQ(run("Print 1\nDo method gone\nPrint lNope"), "line 2: Unknown method 'gone'");
  EXPECT_EQ(run("Print lNope\nDo method gone"), "line 1: Unknown word 'lNope'");
  EXPECT_EQ(run("Var x Wibble"), "line 1: Unknown type 'Wibble'");
  EXPECT_EQ(run("Var x Object Cell"), "line 1: Unknown object class 'Cell'");
  EXPECT_EQ(run("lList.$add(1)"), "line 1: Unknown command 'lList' (write: Do lList.$add(1))");
  EXPECT_EQ(run("Calculate x = 1"), "line 1: Expected 'as' but found '='");
  EXPECT_EQ(run("Calculate 5 as 1"), "line 1: Expected a value but found '5'");
  EXPECT_EQ(run("Calculate len('a') as 1"), "line 1: Expected a variable or a property to assign to");
  EXPECT_EQ(run("Calculate kTrue as 1"), "line 1: 'kTrue' can't be assigned to");
}

TEST(Errors, BlocksHaveToClose) {
  EXPECT_EQ(run("Print 1\nIf 1=1\nPrint 2"), "line 2: 'If 1=1' has no end");
  EXPECT_EQ(run("End If"), "line 1: 'End If' belongs to nothing before it");
  EXPECT_EQ(run("For i from 1 to 2\nEnd While"), "line 2: 'End While' belongs to nothing before it");
  EXPECT_EQ(run("If 1=1\nElse\nElse\nEnd If"), "line 3: Nothing but 'End If' can follow 'Else'");
  EXPECT_EQ(run("Break to end of loop"), "line 1: There is no loop around this command");
  EXPECT_EQ(run("Switch 1\nPrint 1\nEnd Switch"), "line 2: Expected 'Case', 'Default' or 'End Switch'");
  EXPECT_EQ(run("Method m\nPrint 1"), "line 1: 'Method m' has no end");
  EXPECT_EQ(run("Method m\nEnd Method\nMethod M\nEnd Method"), "line 3: There is a method 'M' already, at line 1");
  EXPECT_EQ(run("Var x Integer\nVar X List"), "line 2: There is a variable 'X' already, at line 1");
}

TEST(Errors, CarryTheLineOfTheStatementThatFailed) {
  EXPECT_EQ(run("Var x Integer\nDo method m\nMethod m\nPrint 'in'\nPrint 1/0\nEnd Method"),
            "in\nline 5: Division by zero");
  EXPECT_EQ(run("If 1=2\nPrint 1\nElse If 1/0=1\nEnd If"), "line 3: Division by zero");
  EXPECT_EQ(run("Var i Integer\nRepeat\nPrint 1\nUntil 1/0"), "1\nline 4: Division by zero");
  EXPECT_EQ(run("Parameter p Integer", nullptr, {"1", "2"}), "line 0: The script takes 1 parameters, not 2");
}

TEST(Errors, TextsThatGrowWithoutEndAreStopped) {
  EXPECT_EQ(run("Var c Character = 'x'\nWhile kTrue\nCalculate c as con(c,c)\nEnd While"),
            "line 3: The text is longer than a text may be");
}

}  // namespace
}  // namespace rubrica::simhost::test
