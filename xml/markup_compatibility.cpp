#include "xml/markup_compatibility.h"

#include <algorithm>
#include <functional>

#include "xml/markup_resolver.h"
#include "xml/part_encoding.h"

namespace rubrica {
namespace {

bool mentionsMarkupCompatibility(std::string_view text) {
  static const std::boyer_moore_horspool_searcher searcher(kMarkupSign.begin(), kMarkupSign.end());
  return std::search(text.begin(), text.end(), searcher) != text.end();
}

}  // namespace

ResolvedMarkup::ResolvedMarkup(std::string_view text, const lmx::root_descriptor& root) : _given(text) {
  const auto converted = utf8OfUtf16(text);
  const std::string_view readable = converted ? *converted : text;
  if (!mentionsMarkupCompatibility(readable)) return;
  MarkupResolver resolver(readable, root);
  if (!resolver.isNeeded()) return;
  _isChanged = resolver.resolve(_resolved);
  if (_isChanged) _dropped = resolver.dropped();
}

}  // namespace rubrica
