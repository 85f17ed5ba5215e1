#include <limits>

#include "tests/host/host_fixture.h"
#include "tests/host/loaded_module.h"
#include "tests/support/working_directory.h"

namespace rubrica::host::testing {
namespace {

// Over the recording book, and over the module with the real ones.
class AbsurdCalls : public ::testing::TestWithParam<bool> {
 protected:
  ~AbsurdCalls() override {
    while (!host.instances.empty()) host.destruct(host.instances.begin()->first);
    EXPECT_EQ(host.fields, 0);
    EXPECT_EQ(host.lists, 0);
  }
  static ObjectHandle objectOf(const Result& result) { return result.value ? result.value->object : 0; }

  // $save takes each of the values below for a path.
  test::TemporaryWorkingDirectory workingDirectory;
  FakeHost host{GetParam() ? loadedModule() : &NVObjWndProc, kTabulixPath};
  ObjectHandle workbook = host.construct(classid::workbook);
  ObjectHandle worksheet = objectOf(host.call(workbook, 2005, {textValue(U"A")}));
  ObjectHandle cell1 = objectOf(host.call(worksheet, 3000, {integerValue(1), integerValue(1)}));
  ObjectHandle format = objectOf(host.call(workbook, 2008));
  ObjectHandle font = objectOf(host.call(workbook, 2009));

  std::vector<Value> values() {
    const double infinity = std::numeric_limits<double>::infinity();
    Value brokenDate = dateTimeValue(-32768, 255, 255, 255, 255, 255);
    Value emptyList = listValue(nullptr);
    return {Value{},
            integerValue(0),
            integerValue(1),
            integerValue(std::numeric_limits<std::int32_t>::min()),
            integerValue(std::numeric_limits<std::int32_t>::max()),
            numberValue(std::numeric_limits<double>::quiet_NaN()),
            numberValue(-infinity),
            numberValue(1e300),
            booleanValue(true),
            textValue(U""),
            textValue(std::u32string(40000, U'\uFFFF')),
            textValue({U'A', U'\0', static_cast<char32_t>(0xFFFFFFFF)}),
            binaryValue(std::string(3, '\0')),
            brokenDate,
            emptyList,
            listValue(makeList({{U"a"}}, {{integerValue(1)}})),
            listValue(makeList({{U"a"}}, {{objectValue(99)}}), kind::row),
            objectValue(0),
            objectValue(0xDEAD),
            objectValue(workbook),
            objectValue(worksheet),
            referenceValue(format),
            objectValue(font),
            constantValue(-1)};
  }
};

TEST_P(AbsurdCalls, NoMethodIsHarmedByAnyParameters) {
  const std::vector<std::tuple<ObjectHandle, int, int>> methods = {
      {workbook, 1999, 2021}, {worksheet, 2999, 3026}, {cell1, 3999, 4007}, {format, 4999, 5004}, {font, 5999, 6002}};
  const std::vector<Value> all = values();
  std::size_t calls = 0;
  for (const auto& [object, first, last] : methods) {
    for (int id = first; id <= last; ++id) {
      for (std::size_t count = 0; count <= 7; ++count) {
        for (std::size_t i = 0; i < all.size(); ++i) {
          std::vector<Value> parameters;
          for (std::size_t n = 0; n < count; ++n) parameters.push_back(all[(i + n * 5) % all.size()]);
          EXPECT_EQ(host.call(object, id, std::move(parameters)).answer, 0);
          ++calls;
        }
      }
      // $initialize, $load and $loadRaw gave the Workbook new books; the other objects stay on theirs.
      while (host.instances.size() > 200) host.destruct(host.instances.rbegin()->first);
    }
  }
  EXPECT_GT(calls, 10000U);
  if (GetParam()) {
    EXPECT_GT(workingDirectory.entryCount(), 0U) << "where else did $save put its files?";
  }
  for (const FiredError& error : host.errors) {
    EXPECT_TRUE(error.code == -2 || error.code == -101 || error.code == -102 || error.code == -104 ||
                error.code == -105)
        << error.code;
  }
  host.errors.clear();
}

TEST_P(AbsurdCalls, NoPropertyIsHarmedByAnyValue) {
  const std::vector<std::tuple<ObjectHandle, int, int>> properties = {
      {workbook, 2499, 2509}, {worksheet, 3499, 3525}, {cell1, 4099, 4112}, {format, 5099, 5124}, {font, 6099, 6109}};
  for (const auto& [object, first, last] : properties) {
    for (int id = first; id <= last; ++id) {
      for (const Value& value : values()) {
        EXPECT_EQ(host.set(object, id, value), 1);
        EXPECT_EQ(host.get(object, id).answer, 1);
      }
    }
  }
  EXPECT_TRUE(host.errors.empty());
}

INSTANTIATE_TEST_SUITE_P(RecordingAndReal, AbsurdCalls, ::testing::Bool());

class OddChains : public HostTest {
 protected:
  ObjectHandle workbook = host.construct(classid::workbook);
  ObjectHandle cell1 = cell(addSheet(workbook), 1, 1);
};

TEST_F(OddChains, RecordsWithoutAFieldCountAsAbsent) {
  ValueRecord second{};
  second.number = 1;
  ValueRecord first{};
  first.first = 0xABCD0000 + 2001;  // the id stands in the low half
  first.number = 1;
  first.next = &second;
  CallBlock block = host.block();
  block.values = &first;
  EXPECT_EQ(host.send(message::callMethod, 0, workbook, &block), 0);
  expectError({}, -102, U"", U"$load");
}

TEST_F(OddChains, ParametersAreCountedWithoutGapsInAnyOrder) {
  Value id = integerValue(5), height = integerValue(50), width = integerValue(100);
  ValueRecord third{};
  third.number = 1;
  third.field = reinterpret_cast<FieldHandle>(&id);
  ValueRecord second{};
  second.number = 2;
  second.field = reinterpret_cast<FieldHandle>(&height);
  second.next = &third;
  ValueRecord first{};
  first.first = 4000;
  first.number = 3;
  first.field = reinterpret_cast<FieldHandle>(&width);
  first.next = &second;
  CallBlock block = host.block();
  block.values = &first;
  host.send(message::callMethod, 0, cell1, &block);
  EXPECT_EQ(book().last("setPicture"), "setPicture(0, 0, 5, 100, 50, 0, 0)");
  expectNoError();
  second.number = 4;  // now 1, 3, 4: one parameter
  host.send(message::callMethod, 0, cell1, &block);
  expectError({}, -102, U"Invalid number of parameters. Takes 2 or 3 parameters.", U"$setPicture");
}

}  // namespace
}  // namespace rubrica::host::testing
