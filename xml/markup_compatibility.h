// Markup compatibility of OOXML parts (ECMA-376 Part 3), resolved in the text of a part before it is bound: of an
// mc:AlternateContent the one alternative that the binding knows stays, and what the document calls ignorable goes.
// Most parts have none of it; they pass through without a copy.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "lmx/descriptor.h"

namespace rubrica {

// A tail of the namespace's URI: it stands in every part that has such markup.
inline constexpr std::string_view kMarkupSign = "/markup-compatibility/";

class ResolvedMarkup {
 public:
  // `text`, UTF-8 or UTF-16, must outlive this object; what changes is UTF-8. The namespaces that `root`'s module binds
  // count as understood. Text that is not well-formed stays as it is from there on, for the binding to report.
  ResolvedMarkup(std::string_view text, const lmx::root_descriptor& root);

  std::string_view text() const { return _isChanged ? std::string_view(_resolved) : _given; }
  // Elements and attributes that were taken out, alternatives not chosen among them.
  std::size_t dropped() const { return _dropped; }

 private:
  std::string_view _given;
  std::string _resolved;
  bool _isChanged = false;
  std::size_t _dropped = 0;
};

}  // namespace rubrica
