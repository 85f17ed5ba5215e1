#include "xml/markup_compatibility.h"

namespace rubrica {

ResolvedMarkup::ResolvedMarkup(std::string_view text, const lmx::root_descriptor& /*root*/) : _given(text) {}

}  // namespace rubrica
