// Test support: a book of either file form, through the interfaces alone.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "engine/book_ptr.h"
#include "platform/text.h"

namespace rubrica::test {

struct Form {
  const char* name;
  Book* (*create)() noexcept;
  bool isXlsx;
};

inline constexpr Form kForms[] = {{"xls", &createBiffBook, false}, {"xlsx", &createXmlBook, true}};

inline std::string nameOfForm(const testing::TestParamInfo<Form>& info) {
  return info.param.name;
}

// A book with one sheet, "One".
struct FormBook {
  explicit FormBook(const Form& which) : form(&which), book(which.create()) { sheet = book->addSheet(u"One"); }

  std::string message() const { return book->errorMessage(); }
  // Another book with what this one saves. False when saving or loading fails.
  bool reload() {
    const void* data = nullptr;
    std::size_t size = 0;
    if (!book->saveRaw(&data, &size)) return false;
    const auto* bytes = static_cast<const char*>(data);
    const std::vector<char> file(bytes, bytes + size);
    book.reset(form->create());
    if (!book->loadRaw(file.data(), file.size())) return false;
    sheet = book->getSheet(0);
    return sheet != nullptr;
  }

  const Form* form;
  BookPtr book;
  Sheet* sheet = nullptr;
};

// Text of a result for people: UTF-8, "<none>" for null.
inline std::string shown(const char16_t* text) {
  return text == nullptr ? "<none>" : platform::utf8FromUtf16Lossy(text);
}

}  // namespace rubrica::test
