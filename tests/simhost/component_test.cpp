// The built component, loaded by path and driven through its one exported function: by scripts, and message by message.
#include <gtest/gtest.h>

#include "simhost/component_host.h"
#include "simhost/files.h"
#include "simhost/service_tables.h"
#include "tests/simhost/script_runner.h"

namespace rubrica::simhost::test {
namespace {

class Component : public testing::Test {
 protected:
  Component() : host(SIMHOST_COMPONENT), fieldsBefore(liveServiceFields()), listsBefore(liveServiceLists()) {
    host.setUnhandledError([this](const std::string& className, const std::vector<Value>& values) {
      errors += className + " " + values[0].toUtf8() + " " + values[2].toUtf8() + "\n";
    });
  }
  void TearDown() override {
    EXPECT_EQ(host.liveInstances(), 0u);
    EXPECT_EQ(liveServiceFields(), fieldsBefore);
    EXPECT_EQ(liveServiceLists(), listsBefore);
  }

  std::string script(const std::string& text) { return run(text, &host); }

  ComponentHost host;
  std::size_t fieldsBefore;
  std::size_t listsBefore;
  std::string errors;
};

const std::string variables =
    "Var oBook Object Tabulix.Workbook\nVar oSheet Object Worksheet\nVar oCell Object Cell\nVar oFormat Object "
    "Format\nVar oFont Object "
    "Font\nVar lOK Boolean\n";

TEST_F(Component, TellsItsClassesMembersAndConstants) {
  EXPECT_EQ(host.libraryName(), "Tabulix");
  ASSERT_EQ(host.classes().size(), 5u);
  const auto counts = [this](std::size_t i) {
    return std::pair(host.classes()[i].methods.size(), host.classes()[i].properties.size());
  };
  EXPECT_EQ(host.classes()[0].name, "Workbook");
  EXPECT_EQ(counts(0), std::pair(std::size_t{19}, std::size_t{8}));
  EXPECT_EQ(counts(1), std::pair(std::size_t{25}, std::size_t{24}));
  EXPECT_EQ(counts(2), std::pair(std::size_t{6}, std::size_t{9}));
  EXPECT_EQ(counts(3), std::pair(std::size_t{1}, std::size_t{8}));
  EXPECT_EQ(counts(4), std::pair(std::size_t{3}, std::size_t{23}));
  EXPECT_TRUE(host.hasStatic("$rubricaVersion"));
  EXPECT_EQ(host.constant("kXLColorAuto")->toInteger(), 60);
  EXPECT_EQ(host.constant("KXLERRBADPARAMS")->toInteger(), -102);
  EXPECT_EQ(host.constants().size(), 229u);
  EXPECT_FALSE(host.constant("kXLNothing").has_value());
  EXPECT_EQ(script("Print Tabulix.$rubricaVersion()"), "3.8.2.0\n");
}

TEST_F(Component, GivesItsStringsToTheCollectorThatTheMessageNames) {
  CollectedStrings collected;
  {
    ComponentCall call(host, 0);
    call.send(host::message::listStrings, reinterpret_cast<host::Word>(&collected));
  }
  EXPECT_EQ(collected.texts.size(), host.module().resources().size());
  EXPECT_EQ(collected.texts.front().second, U"Tabulix");
}

TEST_F(Component, ConstantPropertiesComeAsConstantsAndTakeThem) {
  EXPECT_EQ(
      script(
          variables +
          "Do oBook.$addFont() Returns oFont\nCalculate oFont.$color as kXLColorRed\nPrint oFont.$color=kXLColorRed, "
          "oFont.$color\nCalculate oFont.$color as kXLColorBlue\nPrint oFont.$color=kXLColorBlue\n"
          "Do oFont.$bold.$assign(kTrue)\nPrint oFont.$bold, oFont.['$bold']"),
      "YES 3\nYES\nYES YES\n");
}

TEST_F(Component, PropertiesThatCantBeAssignedSaySo) {
  EXPECT_EQ(script(variables + "Calculate oBook.$sheetCount as 3"),
            "line 7: The property $sheetCount of a Workbook can't be assigned");
  EXPECT_EQ(script(variables + "Print oBook.$nope"), "line 7: A Workbook has no property '$nope'");
  EXPECT_EQ(script(variables + "Do oBook.$nope()"), "line 7: A Workbook has no method '$nope'");
  EXPECT_EQ(script(variables + "Do oBook.$getSheet"), "line 7: $getSheet is a method; write it with its brackets");
  EXPECT_EQ(script("Var o Object Other.Thing"), "line 1: Unknown library 'Other'");
  EXPECT_EQ(script("Var o Object Tabulix.Thing"), "line 1: Unknown object class 'Thing'");
}

TEST_F(Component, ErrorsReachTheScriptsOverride) {
  EXPECT_EQ(
      script(variables + "Do oBook.$getSheet(0)\nDo oBook.$addSheet('x') Returns oSheet\nDo oSheet.$cell(1,'w')\n"
                         "Method oBook.$error(pCode Integer, pText Character, pLong Character, pName Character)\n"
                         "Print pCode, pText, pLong, pName\nEnd Method"),
      "-102 Invalid parameters First parameter, sheetIndex, is out of range.  Must be between 1 and the number of "
      "Worksheets(0) $getSheet\n"
      "-102 Invalid parameters Unknown second parameter.  Acceptable types are Integer and Character. $cell\n");
  EXPECT_EQ(errors, "");
}

TEST_F(Component, ErrorsWithoutAnOverrideGoToTheHost) {
  EXPECT_EQ(
      script(
          variables +
          "Do oSheet.$cell(1,1) Returns oCell\nPrint con('[',oSheet.$zoom,']')\nDo oCell.$clear().$more().$evenMore"),
      "[]\n");
  EXPECT_EQ(errors,
            "Worksheet -2 Internal Error.  Object dependencies are not setup.\nCell -2 Internal Error.  Object "
            "dependencies are not "
            "setup.\n");
}

TEST_F(Component, AFailureInAnOverrideEndsTheScriptWithItsLine) {
  EXPECT_EQ(
      script(variables +
             "Do oBook.$getSheet(0)\nPrint 'not reached'\nMethod oBook.$error(pCode Integer)\nPrint 1/0\nEnd Method"),
      "line 10: Division by zero");
  EXPECT_EQ(script(variables + "Do oBook.$getSheet(0)\nPrint 'not reached'\nMethod oBook.$error(pCode Integer)\nQuit "
                               "all methods\nEnd Method"),
            "");
}

TEST_F(Component, AnOverrideThatFailsAgainAndAgainEndsInAMessage) {
  const std::string result = script(
      variables + "Do oBook.$getSheet(0)\nMethod oBook.$error(pCode Integer)\nDo oBook.$getSheet(0)\nEnd Method");
  EXPECT_EQ(result, "line 9: The script calls itself too deeply");
}

TEST_F(Component, AnOverrideMayUseTheObjectItIsCalledFor) {
  EXPECT_EQ(script(variables + "Do oBook.$getSheet(0)\nPrint oBook.$sheetCount\nMethod oBook.$error(pCode Integer)\n"
                               "Do oBook.$addSheet(con('made ',pCode)) Returns oSheet\nEnd Method"),
            "1\n");
}

TEST_F(Component, ObjectsAreCopiedAndReferencesAreShared) {
  EXPECT_EQ(
      script(
          variables +
          "Var oOther Object Worksheet\nVar oRef, oRef2 Object reference\nVar oAny Object\n"
          "Do oBook.$addSheet('One') Returns oSheet\nCalculate oOther as oSheet\nDo oOther.$cell(1,1).$setValue('x')\n"
          "Print oSheet.$cell(1,1).$value\nDo oBook.$addFormat() Returns oFormat\nDo oFormat.$self() Returns oRef\n"
          "Calculate oRef2 as oRef\nCalculate oRef2.$wrap as kTrue\nPrint oFormat.$wrap, oRef.$validref()\n"
          "Do oRef.$deleteref()\nPrint oRef.$validref(), oRef2.$wrap\nCalculate oAny as oSheet\nPrint "
          "oAny.$cell(1,1).$value\n"
          "Calculate oAny as oFormat\nPrint oAny.$wrap\nCalculate oAny as kNull\nPrint isclear(oAny)\nPrint "
          "oAny.$wrap"),
      "x\nYES YES\nNO YES\nx\nYES\nYES\nline 27: There is no object to answer $wrap");
}

TEST_F(Component, ExternalObjectsAreMadeByNotation) {
  EXPECT_EQ(script("Var oRef Object reference\nDo $extobjects.Tabulix.$objects.Workbook.$newref() Returns oRef\n"
                   "Do oRef.$addSheet('A')\nPrint oRef.$sheetCount\nDo $extobjects.Tabulix.$objects.Nope.$new()"),
            "1\nline 5: Unknown object class 'Nope'");
}

TEST_F(Component, ChildrenOutliveTheBookThatMadeThem) {
  EXPECT_EQ(script(variables +
                   "Do oBook.$addSheet('One').$cell(1,1) Returns oCell\nDo oBook.$initialize()\nDo oCell.$setValue(5)\n"
                   "Calculate oBook as kNull\nPrint oCell.$value"),
            "5\n");
}

TEST_F(Component, BinariesGoThroughByReference) {
  EXPECT_EQ(script(variables +
                   "Var bData Binary\nDo oBook.$addSheet('One').$cell(3,2).$setValue('deep')\nDo oBook.$saveRaw(bData) "
                   "Returns lOK\n"
                   "Print lOK, binlength(bData)>500\nDo oBook.$loadRaw(bData) Returns lOK\nPrint lOK, "
                   "oBook.$getSheet(1).$cell(3,'B').$value\n"
                   "Do oBook.$loadRaw(chartoutf8('no workbook')) Returns lOK\nPrint lOK, oBook.$errorMessage<>'ok'"),
            "YES YES\nYES deep\nNO YES\n");
}

TEST_F(Component, ListsGoIntoASheetAndComeBack) {
  EXPECT_EQ(script(variables +
                   "Var lList,lBack List\nVar lName Character\nVar lNum Number\nVar lDay Date\nVar lFlag Boolean\n"
                   "Do lList.$define(lName,lNum,lDay,lFlag)\nDo lList.$add('ä',1.5,date(2026,11,20),kTrue)\n"
                   "Do lList.$add('b',2,date(2026,11,21),kFalse)\nDo lList.$add('c',3,date(2026,11,22),kTrue)\n"
                   "Do oBook.$populateWithList(lList,kXLPopulateDefinitionHeader)\n"
                   "Do oBook.$extractList(kXLExtractDefineFromHeader) Returns lBack\n"
                   "Print lBack.$colcount,lBack.$cols.3.$name,lBack.1.lName,lBack.1.lNum,lBack.1.lDay,lBack.2.lFlag\n"
                   "Print lList.$linecount-lBack.$linecount"),
            "4 lDay ä 1.5 2026-11-20 NO\n0\n");
}

TEST_F(Component, FormatsTravelInRowsOfObjects) {
  EXPECT_EQ(
      script(
          variables +
          "Var lList List\nVar lNum Number\nVar lHead,lFormats Row\nDo lList.$define(lNum)\nDo lList.$add(1.5)\n"
          "Do oBook.$addFormat() Returns oFormat\nCalculate oFormat.$alignH as kXLAlignHCenter\n"
          "Calculate lHead as row('amount')\nCalculate lFormats as row(oFormat)\n"
          "Do oBook.$populateWithList(lList,kXLPopulateCustomHeaderAndFormat,lHead,lFormats)\n"
          "Print oBook.$getSheet(1).$cell(1,1).$value, oBook.$getSheet(1).$cell(2,1).$format.$alignH=kXLAlignHCenter"),
      "amount YES\n");
}

TEST_F(Component, AnUnknownHeaderInAMappedExtractionHarmsNothing) {
  EXPECT_EQ(script(variables +
                   "Var lList,lDefinition,lBack List\nVar lA,lB,lZ Integer\nDo lList.$define(lA,lB)\nDo "
                   "lList.$add(1,2)\nDo lList.$add(3,4)\n"
                   "Do oBook.$populateWithList(lList,kXLPopulateDefinitionHeader)\nDo lDefinition.$define(lB,lZ)\n"
                   "Do oBook.$extractList(kXLExtractMapFromHeader,lDefinition) Returns lBack\nPrint "
                   "lBack.$colcount,lBack.1.lB,lBack.1.lZ"),
            "2 2 0\n");
}

TEST_F(Component, MessagesForHandlesThatDoNotExistHarmNothing) {
  for (const std::uint32_t message :
       {host::message::callMethod, host::message::getProperty, host::message::setProperty,
        host::message::canAssignProperty, host::message::destruct, std::uint32_t{0x7FFF0000}}) {
    ComponentCall call(host, host::classid::cell, 4000);
    call.addParameter(Value::integer(1));
    call.send(message, 1, 123456789);
  }
  ComponentCall unknownClass(host, 1999);
  EXPECT_EQ(unknownClass.send(host::message::construct, 0, 987654321), 0);
}

TEST_F(Component, ThousandsOfObjectsComeAndGo) {
  EXPECT_EQ(script(variables + "Var i Integer\nDo oBook.$addSheet('One') Returns oSheet\nFor i from 1 to 5000\n"
                               "Do oSheet.$cell(i,1).$setValue(i)\nCalculate oCell as oSheet.$cell(i,1)\nEnd "
                               "For\nPrint oCell.$value, oSheet.$lastRow"),
            "5000 5001\n");
}

TEST(ComponentFiles, ThatAreNoComponentsAreRefused) {
  EXPECT_THROW(ComponentHost("/nonexistent.so"), std::runtime_error);
  EXPECT_THROW(ComponentHost(RUBRICA_SOURCE_DIR "/CMakeLists.txt"), std::runtime_error);
}

}  // namespace
}  // namespace rubrica::simhost::test
