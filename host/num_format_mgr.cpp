#include "host/num_format_mgr.h"

#include <utility>

namespace rubrica::host {
namespace {

// The built-in number formats that every book has.
constexpr int kFirstRange[] = {0, 22}, kSecondRange[] = {37, 49};

}  // namespace

NumFormatMgr::NumFormatMgr(BookPtr book) : _book(std::move(book)) {
  for (const auto& range : {kFirstRange, kSecondRange}) {
    for (int id = range[0]; id <= range[1]; ++id) _formats[id] = nullptr;
  }
}

Format* NumFormatMgr::formatForNumFormat(int id) {
  Format*& format = _formats[id];
  if (format == nullptr) {
    format = _book->addFormat(nullptr);
    if (format != nullptr) format->setNumFormat(id);
  }
  return format;
}

}  // namespace rubrica::host
