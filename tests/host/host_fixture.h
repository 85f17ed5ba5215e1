// The fixture of the component's tests: a host, a Workbook in it, and the recording book beneath.
#pragma once

#include <string>

#include <gtest/gtest.h>

#include "host/nv_obj_wnd_proc.h"
#include "tests/host/fake_host.h"
#include "tests/host/recording_book.h"

namespace rubrica::host::testing {

inline const std::string kModulePath = RUBRICA_BINARY_DIR "/tests/host/recording_component.so";

class HostTest : public ::testing::Test {
 protected:
  ~HostTest() override {
    while (!host.instances.empty()) host.destruct(host.instances.begin()->first);
    EXPECT_EQ(host.fields, 0) << "values that the component did not free";
    EXPECT_EQ(host.lists, 0) << "lists that the component did not free";
    EXPECT_EQ(RecordingBook::alive, 0) << "books that the component did not release";
  }

  // The object that a method or property gave.
  static ObjectHandle objectOf(const Result& result) { return result.value ? result.value->object : 0; }
  ObjectHandle addSheet(ObjectHandle book, const char32_t* name = U"A") {
    return objectOf(host.call(book, 2005, {textValue(name)}));
  }
  ObjectHandle cell(ObjectHandle sheet, int row, int column) {
    return objectOf(host.call(sheet, 3000, {integerValue(row), integerValue(column)}));
  }
  RecordingBook& book() { return *RecordingBook::latest; }
  RecordingSheet& sheet(int index = 0) { return *book().sheets.at(static_cast<std::size_t>(index)); }

  void expectError(const Result& result, std::int32_t code, const std::u32string& longText,
                   const std::u32string& method) {
    EXPECT_EQ(result.answer, 0);
    ASSERT_FALSE(host.errors.empty());
    EXPECT_EQ(host.errors.back().code, code);
    EXPECT_TRUE(host.errors.back().longText == longText) << utf8FromUtf32(host.errors.back().longText);
    EXPECT_TRUE(host.errors.back().method == method) << utf8FromUtf32(host.errors.back().method);
    host.errors.clear();
  }
  void expectNoError() {
    EXPECT_TRUE(host.errors.empty()) << utf8FromUtf32(host.errors.back().longText);
    host.errors.clear();
  }

  FakeHost host{&NVObjWndProc, kModulePath};
};

}  // namespace rubrica::host::testing
