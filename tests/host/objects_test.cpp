#include "tests/host/host_fixture.h"

namespace rubrica::host::testing {
namespace {

class Objects : public HostTest {
 protected:
  std::int32_t copy(ObjectHandle source, ObjectHandle destination, std::uint32_t classId) {
    CopyHandles handles{source, destination};
    CallBlock block = host.block(classId);
    const std::int32_t answer = host.send(message::copyObject, 0, reinterpret_cast<Word>(&handles), &block);
    EXPECT_EQ(host.send(message::releaseResults, 0, 0, &block), 1);
    return answer;
  }
};

TEST_F(Objects, AreConstructedForTheFiveClassesAlone) {
  for (std::uint32_t classId : {1002U, 1003U, 1004U, 1005U, 1006U}) EXPECT_NE(host.construct(classId), 0U);
  for (std::uint32_t classId : {0U, 1001U, 1007U, 70000U}) EXPECT_EQ(host.construct(classId), 0U);
}

TEST_F(Objects, ConstructingAnExistingHandleLeavesTheObjectAlone) {
  const ObjectHandle book1 = host.construct(classid::workbook);
  addSheet(book1);
  CallBlock block = host.block(classid::workbook);
  EXPECT_EQ(host.send(message::construct, 0, book1, &block), 1);
  EXPECT_EQ(host.get(book1, 2501).value->integer, 1);
  EXPECT_EQ(RecordingBook::alive, 1);
}

TEST_F(Objects, DestructActsOnlyWhenTold) {
  const ObjectHandle book1 = host.construct(classid::workbook);
  CallBlock block = host.block(classid::workbook);
  EXPECT_EQ(host.send(message::destruct, 0, book1, &block), 1);
  EXPECT_EQ(host.send(message::destruct, 2, book1, &block), 1);
  EXPECT_EQ(RecordingBook::alive, 1);
  EXPECT_EQ(host.send(message::destruct, 1, book1, &block), 1);
  EXPECT_EQ(RecordingBook::alive, 0);
  EXPECT_EQ(host.send(message::destruct, 1, book1, &block), 1);
  EXPECT_EQ(host.send(message::destruct, 1, 12345, &block), 1);
}

TEST_F(Objects, DestroyedAndUnknownHandlesHarmNothing) {
  const ObjectHandle gone = host.construct(classid::workbook);
  host.destruct(gone);
  for (ObjectHandle handle : {gone, ObjectHandle{0}, ~ObjectHandle{0}}) {
    EXPECT_EQ(host.call(handle, 2001, {textValue(U"x")}).answer, 0);
    EXPECT_FALSE(host.get(handle, 2500).value);
    EXPECT_EQ(host.get(handle, 2500).answer, 0);
    EXPECT_EQ(host.set(handle, 2504, integerValue(1)), 0);
    EXPECT_FALSE(host.canAssign(handle, 2504));
    EXPECT_EQ(copy(handle, handle, classid::workbook), 1);
  }
  EXPECT_TRUE(host.errors.empty());
}

TEST_F(Objects, GroupsKeepHandlesApart) {
  CallBlock block = host.block(classid::workbook);
  block.groupId = 1;
  EXPECT_EQ(host.send(message::construct, 0, 5, &block), 1);
  block.groupId = 2;
  EXPECT_EQ(host.send(message::construct, 0, 5, &block), 1);
  EXPECT_EQ(RecordingBook::alive, 2);
  block.groupId = 3;
  EXPECT_EQ(host.send(message::destruct, 1, 5, &block), 1);
  EXPECT_EQ(RecordingBook::alive, 2);
  block.groupId = 0;  // any group
  EXPECT_EQ(host.send(message::destruct, 1, 5, &block), 1);
  EXPECT_EQ(host.send(message::destruct, 1, 5, &block), 1);
  EXPECT_EQ(RecordingBook::alive, 0);
}

TEST_F(Objects, CopyOntoAHandleWithoutObjectGivesAnEmptyOne) {
  const ObjectHandle book1 = host.construct(classid::workbook);
  const ObjectHandle sheet1 = addSheet(book1);
  const ObjectHandle fresh = host.nextHandle++;
  host.instances[fresh] = classid::worksheet;
  EXPECT_EQ(copy(sheet1, fresh, classid::worksheet), 1);
  host.call(fresh, 3021);
  expectError({}, -2, U"Internal Error.  Object dependencies are not setup.", U"");
  // The second copy finds an object and gives it the content.
  EXPECT_EQ(copy(sheet1, fresh, classid::worksheet), 1);
  host.call(fresh, 3021);
  expectNoError();
}

TEST_F(Objects, CopiesShareWhatTheyStandFor) {
  const ObjectHandle book1 = host.construct(classid::workbook);
  const ObjectHandle sheet1 = addSheet(book1);
  const ObjectHandle source = cell(sheet1, 3, 4), target = cell(sheet1, 1, 1);
  EXPECT_EQ(copy(source, target, classid::cell), 1);
  EXPECT_EQ(host.get(target, 4105).value->integer, 3);
  EXPECT_EQ(host.get(target, 4106).value->integer, 4);

  const ObjectHandle book2 = host.construct(classid::workbook);
  EXPECT_EQ(RecordingBook::alive, 2);
  EXPECT_EQ(copy(book1, book2, classid::workbook), 1);
  EXPECT_EQ(RecordingBook::alive, 1);
  EXPECT_EQ(host.get(book2, 2501).value->integer, 1);
}

TEST_F(Objects, CopyFromAnotherClassOrOntoItselfChangesNothing) {
  const ObjectHandle book1 = host.construct(classid::workbook);
  const ObjectHandle sheet1 = addSheet(book1);
  const ObjectHandle cell1 = cell(sheet1, 2, 2);
  copy(book1, cell1, classid::cell);
  copy(cell1, cell1, classid::cell);
  EXPECT_EQ(host.get(cell1, 4105).value->integer, 2);
  CallBlock block = host.block(classid::cell);
  EXPECT_EQ(host.send(message::copyObject, 0, 0, &block), 1);
  EXPECT_EQ(host.send(message::releaseResults, 0, 0, &block), 1);
}

TEST_F(Objects, CopyAnswersWithTheStaticMethods) {
  CopyHandles handles{1, 2};
  CallBlock block = host.block(classid::cell);
  EXPECT_EQ(host.send(message::copyObject, 0, reinterpret_cast<Word>(&handles), &block), 1);
  ASSERT_NE(block.values, nullptr);
  EXPECT_EQ(reinterpret_cast<const Value*>(block.values->field)->list->rows.size(), 1U);
  host.send(message::releaseResults, 0, 0, &block);
}

TEST_F(Objects, WithoutABookEveryMethodFailsAndEveryPropertyIsEmpty) {
  struct {
    std::uint32_t classId;
    int firstMethod, lastMethod, firstProperty, lastProperty;
  } const classes[] = {{classid::worksheet, 3000, 3024, 3500, 3523},
                       {classid::cell, 4000, 4005, 4100, 4110},
                       {classid::format, 5000, 5002, 5100, 5122},
                       {classid::font, 6000, 6000, 6100, 6107}};
  for (const auto& c : classes) {
    const ObjectHandle object = host.construct(c.classId);
    for (int id = c.firstMethod; id <= c.lastMethod; ++id) {
      const Result result = host.call(object, id, {integerValue(1), integerValue(1)});
      EXPECT_FALSE(result.value);
      EXPECT_EQ(host.errors.back().target, object);
      EXPECT_TRUE(host.errors.back().text == U"Method failed.");
      expectError(result, -2, U"Internal Error.  Object dependencies are not setup.", U"");
    }
    for (int id = c.firstProperty; id <= c.lastProperty; ++id) {
      const Result result = host.get(object, id);
      EXPECT_EQ(result.answer, 1);
      ASSERT_TRUE(result.value);
      EXPECT_TRUE(result.value->isEmpty());
      EXPECT_EQ(host.set(object, id, integerValue(1)), 0);
    }
  }
  expectNoError();
}

TEST_F(Objects, ErrorsGoToTheWorkbookOfTheTree) {
  const ObjectHandle book1 = host.construct(classid::workbook);
  const ObjectHandle sheet1 = addSheet(book1);
  const ObjectHandle cell1 = cell(sheet1, 1, 1);
  const ObjectHandle format1 = objectOf(host.call(book1, 2008));
  const ObjectHandle font1 = objectOf(host.call(book1, 2009));
  for (const auto& [object, method] :
       std::vector<std::pair<ObjectHandle, int>>{{sheet1, 3000}, {cell1, 4001}, {format1, 5000}, {book1, 2005}}) {
    host.errors.clear();
    host.call(object, method);
    ASSERT_EQ(host.errors.size(), 1U);
    EXPECT_EQ(host.errors[0].target, book1);
    EXPECT_EQ(host.errors[0].code, -102);
    EXPECT_TRUE(host.errors[0].text == U"Invalid parameters");
  }
  host.call(font1, 6000, {textValue(U"x")});
  EXPECT_EQ(host.errors.back().target, book1);
  // A format that came from a format's own $self stays in the tree.
  const ObjectHandle again = objectOf(host.call(format1, 5002));
  host.call(again, 5000);
  EXPECT_EQ(host.errors.back().target, book1);
  host.errors.clear();
}

TEST_F(Objects, AnObjectMayBeDestroyedByCodeThatHandlesItsError) {
  const ObjectHandle book1 = host.construct(classid::workbook);
  host.onError = [&](ObjectHandle target) { host.destruct(target); };
  EXPECT_EQ(host.call(book1, 2001).answer, 0);
  EXPECT_EQ(RecordingBook::alive, 0);
}

TEST_F(Objects, ChildrenKeepTheirBookAlive) {
  const ObjectHandle book1 = host.construct(classid::workbook);
  const ObjectHandle sheet1 = addSheet(book1);
  const ObjectHandle cell1 = cell(sheet1, 1, 1);
  const ObjectHandle format1 = objectOf(host.call(book1, 2008));
  host.destruct(book1);
  host.destruct(sheet1);
  EXPECT_EQ(RecordingBook::alive, 1);
  host.call(cell1, 4001, {integerValue(5)});
  EXPECT_EQ(book().last("writeNum"), "writeNum(0, 0, 5, null)");
  host.destruct(cell1);
  EXPECT_EQ(RecordingBook::alive, 1);
  EXPECT_EQ(host.set(format1, 5106, booleanValue(true)), 1);
  host.destruct(format1);
  EXPECT_EQ(RecordingBook::alive, 0);
}

TEST_F(Objects, ObjectsOnADeletedSheetAreNoLongerSetUp) {
  const ObjectHandle book1 = host.construct(classid::workbook);
  const ObjectHandle first = addSheet(book1, U"A"), second = addSheet(book1, U"B");
  const ObjectHandle cell1 = cell(first, 1, 1);
  EXPECT_EQ(host.call(book1, 2007, {integerValue(1)}).value->integer, kHostTrue);
  host.call(first, 3021);
  expectError({}, -2, U"Internal Error.  Object dependencies are not setup.", U"");
  EXPECT_TRUE(host.get(cell1, 4103).value->isEmpty());
  host.call(second, 3021);
  expectNoError();
}

TEST_F(Objects, AssignablePropertiesAreExactlyThese) {
  const auto expect = [&](std::uint32_t classId, int first, int last, int firstOf, int lastOf) {
    const ObjectHandle object = host.construct(classId);
    for (int id = firstOf - 5; id <= lastOf + 5; ++id) {
      EXPECT_EQ(host.canAssign(object, id), id >= first && id <= last) << id;
    }
  };
  expect(classid::workbook, 2504, 2507, 2500, 2507);
  expect(classid::worksheet, 3504, 3523, 3500, 3523);
  expect(classid::cell, 4102, 4104, 4100, 4110);
  expect(classid::format, 5100, 5122, 5100, 5122);
  expect(classid::font, 6100, 6107, 6100, 6107);
}

TEST_F(Objects, UnknownMethodIdsAreReportedByTheWorkbookAlone) {
  const ObjectHandle book1 = host.construct(classid::workbook);
  const ObjectHandle sheet1 = addSheet(book1);
  for (int id : {0, 1999, 2019, 2020, 0xFFFF}) {
    host.call(book1, id);
    EXPECT_TRUE(host.errors.back().text == U"Invalid method called. Internal method index error.");
    expectError({}, -101, U"", U"");
  }
  host.call(sheet1, 2999);
  host.call(sheet1, 3025);
  host.call(cell(sheet1, 1, 1), 4006);
  expectNoError();
}

TEST_F(Objects, UnknownPropertyIdsGiveNothing) {
  const ObjectHandle book1 = host.construct(classid::workbook);
  EXPECT_FALSE(host.get(book1, 2508).value);
  EXPECT_EQ(host.get(book1, 2508).answer, 1);
  EXPECT_EQ(host.set(book1, 2508, integerValue(1)), 1);
  EXPECT_EQ(host.exchange(message::setProperty, 0, book1, 0, 2504, {}).answer, 0);
}

TEST_F(Objects, OverridePointOfErrorsDoesNothingItself) {
  const ObjectHandle book1 = host.construct(classid::workbook);
  const Result result = host.call(book1, 2018, {integerValue(-2), textValue(U"a"), textValue(U"b"), textValue(U"c")});
  EXPECT_EQ(result.answer, 0);
  EXPECT_FALSE(result.value);
  expectNoError();
}

TEST_F(Objects, ManyAreMadeCopiedAndDestroyedWithoutALeak) {
  const ObjectHandle book1 = host.construct(classid::workbook);
  const ObjectHandle sheet1 = addSheet(book1);
  for (int i = 0; i < 20000; ++i) {
    const ObjectHandle made = cell(sheet1, 1 + i, 1);
    const ObjectHandle other = host.construct(classid::cell);
    copy(made, other, classid::cell);
    ASSERT_EQ(host.get(other, 4105).value->integer, 1 + i);
    host.destruct(made);
    if (i % 2 == 0) host.destruct(other);
  }
  EXPECT_EQ(RecordingBook::alive, 1);
}

}  // namespace
}  // namespace rubrica::host::testing
