#include "xml/part_repair.h"

#include <algorithm>
#include <array>
#include <utility>

#include "lmx/text.h"
#include "xml/part_encoding.h"
#include "xml/tag_scan.h"

namespace rubrica {
namespace {

constexpr std::string_view kMainUri = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
constexpr std::string_view kStrictMainUri = "http://purl.oclc.org/ooxml/spreadsheetml/main";
constexpr std::array<std::string_view, 2> kEarlyMainUris = {
    "http://schemas.openxmlformats.org/spreadsheetml/2006/5/main",
    "http://schemas.openxmlformats.org/spreadsheetml/2006/7/main"};
constexpr std::string_view kColour = "rgb";
constexpr std::size_t kColourDigits = 6;
constexpr std::string_view kOpaque = "FF";

bool isHexDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

class PartRepair {
 public:
  PartRepair(std::string_view text, const lmx::root_descriptor& root) : _text(text) {
    for (const lmx::namespace_row* row = root.type->module->namespaces; row->uri != nullptr; ++row) {
      _isTransitional = _isTransitional || row->uri == kMainUri;
      _isStrict = _isStrict || row->uri == kStrictMainUri;
    }
    const std::string_view name = root.name;
    _hasBorders = name == "styleSheet";
    _isComments = name == "comments";
    _isStrictSheet = _isStrict && name == "worksheet";
  }

  std::optional<std::string> run() {
    for (std::size_t position = _text.find('<'); position < _text.size(); position = _text.find('<', position)) {
      position = pass(position);
    }
    if (_out.empty()) return std::nullopt;
    _out.append(_text.substr(_copied));
    return std::move(_out);
  }

 private:
  // Answers where to go on, npos at a tag without an end or at a document type.
  std::size_t pass(std::size_t begin) {
    const std::string_view rest = _text.substr(begin);
    if (rest.starts_with("<!--")) return after(begin, "-->");
    if (rest.starts_with("<![CDATA[")) return after(begin, "]]>");
    if (rest.starts_with("<?")) return after(begin, "?>");
    if (rest.starts_with("<!")) return std::string_view::npos;
    const bool isEnd = rest.starts_with("</");
    const std::size_t nameBegin = begin + (isEnd ? 2 : 1);
    std::size_t nameEnd = nameBegin;
    while (nameEnd < _text.size() && lmx::is_name_char(static_cast<unsigned char>(_text[nameEnd]))) ++nameEnd;
    const std::size_t end = endOfTag(_text, nameEnd);
    if (end == std::string_view::npos) return end;
    const std::string_view name = _text.substr(nameBegin, nameEnd - nameBegin);
    const std::size_t colon = lmx::find_colon(name);
    const std::size_t localBegin = colon == name.npos ? nameBegin : nameBegin + colon + 1;
    const bool isEmpty = _text[end - 2] == '/';
    const std::string_view local = _text.substr(localBegin, nameEnd - localBegin);
    if (local == "extLst" && !isEnd && !isEmpty) return after(end, std::string("</").append(name));
    if (local == "border") _isInBorder = !isEnd && !isEmpty;
    if (_isStrictSheet && (local == "legacyDrawing" || local == "legacyDrawingHF")) replace(begin, end - begin, {});
    if (_hasBorders && _isInBorder) renameSide(localBegin, local);
    if (!isEnd) {
      renameNamespaces(nameEnd, end);
      completeColour(nameEnd, end);
    }
    return end;
  }

  std::size_t after(std::size_t position, std::string_view what) const {
    const std::size_t found = _text.find(what, position);
    return found == _text.npos ? found : found + what.size();
  }

  void renameSide(std::size_t begin, std::string_view local) {
    static constexpr std::array<std::pair<std::string_view, std::string_view>, 2> kSides = {
        {{"left", "start"}, {"right", "end"}}};
    for (const auto& [transitional, strict] : kSides) {
      if (_isTransitional && local == strict) replace(begin, local.size(), transitional);
      if (_isStrict && local == transitional) replace(begin, local.size(), strict);
    }
  }

  void renameNamespaces(std::size_t begin, std::size_t end) {
    if (!_isTransitional) return;
    for (const std::string_view early : kEarlyMainUris) renameNamespace(begin, end, early);
    if (_isComments) renameNamespace(begin, end, kStrictMainUri);
  }

  void renameNamespace(std::size_t begin, std::size_t end, std::string_view uri) {
    const std::size_t found = _text.substr(begin, end - begin).find(uri);
    if (found == _text.npos) return;
    const std::size_t at = begin + found;
    const bool isWhole = _text[at - 1] == _text[at + uri.size()] && (_text[at - 1] == '"' || _text[at - 1] == '\'');
    if (isWhole) replace(at, uri.size(), kMainUri);
  }

  void completeColour(std::size_t begin, std::size_t end) {
    const std::string_view attributes = _text.substr(begin, end - begin);
    for (std::size_t at = attributes.find(kColour); at != attributes.npos; at = attributes.find(kColour, at + 1)) {
      if (at == 0 || !lmx::is_space(attributes[at - 1])) continue;
      std::size_t p = at + kColour.size();
      while (p < attributes.size() && (lmx::is_space(attributes[p]) || attributes[p] == '=')) ++p;
      const std::string_view value = attributes.substr(p);
      if (value.size() < kColourDigits + 2 || (value[0] != '"' && value[0] != '\'')) continue;
      const std::string_view digits = value.substr(1, kColourDigits);
      const bool isShort =
          value[kColourDigits + 1] == value[0] && std::all_of(digits.begin(), digits.end(), isHexDigit);
      if (isShort) replace(begin + p + 1, 0, kOpaque);
    }
  }

  // Places come in their order in the text, but for namespaces and colours of one tag, which no tag has both of.
  void replace(std::size_t begin, std::size_t size, std::string_view with) {
    if (begin < _copied) return;
    _out.append(_text.substr(_copied, begin - _copied)).append(with);
    _copied = begin + size;
  }

  std::string_view _text;
  bool _isTransitional = false, _isStrict = false, _hasBorders = false, _isComments = false, _isStrictSheet = false;
  bool _isInBorder = false;
  std::string _out;
  std::size_t _copied = 0;  // all before it is in _out
};

}  // namespace

std::optional<std::string> repairedPart(std::string_view text, const lmx::root_descriptor& root, lmx::elmx_error code) {
  const bool isKnown =
      code == lmx::ELMX_LENGTH_TOO_SHORT || code == lmx::ELMX_BAD_END_OF_ELEMENT || code == lmx::ELMX_ELEMENT_NOT_FOUND;
  if (!isKnown) return std::nullopt;
  const auto converted = utf8OfUtf16(text);
  return PartRepair(converted ? *converted : text, root).run();
}

}  // namespace rubrica
