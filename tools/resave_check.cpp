#include "tools/resave_check.h"

#include "tools/book_complaints.h"
#include "tools/book_diff.h"

namespace rubrica::tools {
namespace {

constexpr int kBiff5Version = 0x0500;

std::string formText(Book& book, const std::string& form) {
  const bool old = book.biffVersion() == kBiff5Version;
  const std::string kind = form == "xlsx" ? "OOXML" : old ? "BIFF5" : "BIFF8";
  return kind + " workbook, " + std::to_string(book.sheetCount()) + (book.sheetCount() == 1 ? " sheet" : " sheets") +
         (old ? "; a save makes it BIFF8" : "");
}

}  // namespace

std::vector<std::byte> checkResave(std::span<const std::byte> file, const std::string& form, CheckReport& report,
                                   Progress& progress) {
  OpenedBook opened, again;
  opened.form = again.form = form;
  opened.book = createBook(form);
  again.book = createBook(form);
  progress.begin("loading the book");
  if (!opened.book->loadRaw(file.data(), file.size())) {
    report.damage.push_back(std::string("the book can't be loaded: ") + opened.book->errorMessage());
    return {};
  }
  report.form = formText(*opened.book, form);
  for (const std::string& complaint : bookComplaints(*opened.book, form)) report.complaints.push_back(complaint);
  progress.begin("saving the book");
  const void* data = nullptr;
  std::size_t size = 0;
  if (!opened.book->saveRaw(&data, &size)) {
    report.damage.push_back(std::string("the book can't be saved: ") + opened.book->errorMessage());
    return {};
  }
  const auto* bytes = static_cast<const std::byte*>(data);
  const std::vector<std::byte> saved(bytes, bytes + size);
  if (!again.book->loadRaw(saved.data(), saved.size())) {
    report.damage.push_back(std::string("the saved book can't be loaded: ") + again.book->errorMessage());
    return saved;
  }
  BookDiff(opened, again, {}, [&](const std::string& difference) {
    report.changed.push_back(difference);
  }).run(progress);
  return saved;
}

}  // namespace rubrica::tools
