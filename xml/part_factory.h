// What an entry of a package becomes: its bytes, held in memory or in a temporary file, go to the class that its
// content type names.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include "xml/deflate.h"
#include "xml/part.h"

namespace rubrica {

// The bytes of an entry on their way to a part.
struct PartBytes {
  ByteBlock block;
  std::string path;  // UTF-8; not empty: the bytes stand in this file

  // Makes a part by its constructor from memory or from a path, with what comes before and after.
  template <class Part, class... Before, class... After>
  std::unique_ptr<Part> make(std::tuple<Before...> before = {}, std::tuple<After...> after = {}) const;
};

// Whether the type is one of the four of a workbook's main part.
bool isMainType(std::string_view contentType);
// Whether an entry declared as plain XML begins as a sheet does.
bool looksLikeWorksheet(std::string_view text);
bool looksLikeWorksheet(const PartBytes& bytes);
// Every part but the main part, sheets, styles and shared strings, which need their book. A part of an unknown kind
// stays as it is.
template <class Tag>
std::unique_ptr<XFile> makePart(std::string_view contentType, const PartBytes& bytes);

template <class Part, class... Before, class... After>
std::unique_ptr<Part> PartBytes::make(std::tuple<Before...> before, std::tuple<After...> after) const {
  const auto create = [](auto&&... arguments) {
    return std::make_unique<Part>(std::forward<decltype(arguments)>(arguments)...);
  };
  const char* data = block.bytes.get();
  return path.empty() ? std::apply(create, std::tuple_cat(before, std::make_tuple(data, block.size), after))
                      : std::apply(create, std::tuple_cat(before, std::tie(path), after));
}

}  // namespace rubrica
