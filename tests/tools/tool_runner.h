// Runs a tool as a process, as a shell does, and catches what it prints; makes the books that it is run on.
#pragma once

#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include "engine/book.h"
#include "tests/support/temporary_directory.h"
#include "tools/book_opener.h"

namespace rubrica::test {

struct ToolResult {
  int exitCode = -1;  // -1: ended by a signal
  std::string out, err;
};

inline std::string quoted(const std::string& word) {
  return "'" + word + "'";
}

inline ToolResult runTool(const std::string& tool, const std::vector<std::string>& words) {
  const TemporaryDirectory directory;
  const auto out = directory.file("out"), err = directory.file("err");
  std::string command = quoted(tool == "omnis-run" ? RUBRICA_OMNIS_RUN : std::string(RUBRICA_TOOLS_DIR) + "/" + tool);
  for (const std::string& word : words) command += " " + quoted(word);
  command += " >" + quoted(out.string()) + " 2>" + quoted(err.string());
  const int status = std::system(command.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readText(out), readText(err)};
}

// A directory with books in it, each made by the engine.
class ToolTest : public testing::Test {
 protected:
  std::string path(const std::string& name) const { return _directory.file(name).string(); }

  // A new .xls book with one sheet, "Prices".
  static tools::BookPtr newBook() {
    tools::BookPtr book = tools::createBook("xls");
    if (book == nullptr || book->addSheet(u"Prices") == nullptr) throw std::runtime_error("no book");
    return book;
  }
  std::string save(Book& book, const std::string& name) {
    if (!book.save(tools::wideText(path(name)).c_str())) throw std::runtime_error(book.errorMessage());
    return path(name);
  }
  tools::BookPtr load(const std::string& file) {
    tools::OpenedBook opened = tools::openBook(file);
    if (opened.book == nullptr) throw std::runtime_error(opened.error);
    return std::move(opened.book);
  }

  TemporaryDirectory _directory;
};

}  // namespace rubrica::test
