#include "xml/markup_resolver.h"

#include <algorithm>

#include "engine/xlerror.h"
#include "lmx/limits.h"
#include "lmx/text.h"
#include "xml/tag_scan.h"

namespace rubrica {
namespace {

constexpr std::string_view kXmlUri = "http://www.w3.org/XML/1998/namespace";
constexpr std::string_view kRequires = "Requires";
// Namespaces, or names of ProcessContent, that are ignorable at one place; real parts name up to twenty.
constexpr std::size_t kMaxIgnorables = 256;
// Declarations of tags that go are repeated on what stays inside: this is the room for them beyond the text's own size.
constexpr std::size_t kMaxGrowth = std::size_t{1} << 20U;

std::string_view localPart(std::string_view name) {
  const std::size_t colon = lmx::find_colon(name);
  return colon == name.npos ? name : name.substr(colon + 1);
}

std::string_view prefixPart(std::string_view name) {
  const std::size_t colon = lmx::find_colon(name);
  return colon == name.npos ? std::string_view() : name.substr(0, colon);
}

// Calls `use` with each word of a list that white space separates, until it answers false.
template <class Use>
bool forEachWord(std::string_view list, const Use& use) {
  for (std::size_t i = 0; i < list.size();) {
    while (i < list.size() && lmx::is_space(list[i])) ++i;
    const std::size_t begin = i;
    while (i < list.size() && !lmx::is_space(list[i])) ++i;
    if (i > begin && !use(list.substr(begin, i - begin))) return false;
  }
  return true;
}

}  // namespace

bool MarkupResolver::isUnderstood(std::string_view uri) const {
  if (uri == kXmlUri) return true;
  for (const lmx::namespace_row* row = _root.type->module->namespaces; row->uri != nullptr; ++row) {
    if (uri == row->uri) return true;
  }
  return false;
}

const std::string_view* MarkupResolver::findUri(std::string_view prefix) const {
  for (std::size_t i = _declarations.size(); i-- > 0;) {
    if (_declarations[i].prefix == prefix) return &_declarations[i].uri;
  }
  return nullptr;
}

std::string_view MarkupResolver::uriOf(std::string_view name, bool isElement) const {
  const std::string_view prefix = prefixPart(name);
  if (prefix.empty() && !isElement) return {};
  const std::string_view* uri = findUri(prefix);
  return uri == nullptr ? std::string_view() : *uri;
}

bool MarkupResolver::isIgnorable(std::string_view uri) const {
  return std::find(_ignorables.begin(), _ignorables.end(), uri) != _ignorables.end() && !isUnderstood(uri);
}

bool MarkupResolver::isProcessed(std::string_view uri, std::string_view local) const {
  return std::any_of(_processed.begin(), _processed.end(), [&](const QualifiedName& name) {
    return name.uri == uri && (name.local == local || name.local == "*");
  });
}

bool MarkupResolver::areAllUnderstood(std::string_view prefixes) const {
  bool isAny = false;
  const bool areAll = forEachWord(prefixes, [&](std::string_view prefix) {
    isAny = true;
    const std::string_view* uri = findUri(prefix);
    return uri != nullptr && isUnderstood(*uri);
  });
  return isAny && areAll;
}

bool MarkupResolver::resolve(std::string& out) {
  out.reserve(_text.size());
  // Where the walk ends early the text is not well-formed, or refused by the binding for its depth.
  walk(out);
  if (!_isChanged) return false;
  out.append(_text.substr(_run));
  return true;
}

bool MarkupResolver::walk(std::string& out) {
  while (true) {
    _position = _text.find('<', _position);
    if (_position == _text.npos || _position + 1 == _text.size()) return true;
    const char next = _text[_position + 1];
    const bool isRead = next == '!' || next == '?' ? passOther() : next == '/' ? endTag(out) : startTag(out);
    if (!isRead) return false;
    if (out.size() > 2 * _text.size() + kMaxGrowth) throw xlerror("markup compatibility expands too far");
  }
}

// Comments, CDATA sections and instructions; npos where one has no end, and for a document type, whose entities only
// the reader knows.
std::size_t MarkupResolver::afterOther(std::size_t position) const {
  const auto after = [&](std::string_view end) {
    const std::size_t found = _text.find(end, position);
    return found == _text.npos ? found : found + end.size();
  };
  const std::string_view rest = _text.substr(position);
  if (rest.starts_with("<!--")) return after("-->");
  if (rest.starts_with("<![CDATA[")) return after("]]>");
  if (rest.starts_with("<?")) return after("?>");
  return _text.npos;
}

bool MarkupResolver::passOther() {
  const std::size_t after = afterOther(_position);
  if (after == _text.npos) return false;
  _position = after;
  return true;
}

bool MarkupResolver::readTag(std::size_t begin, Tag& tag) const {
  std::size_t p = begin + 1;
  while (p < _text.size() && lmx::is_name_char(static_cast<unsigned char>(_text[p]))) ++p;
  tag.begin = begin;
  tag.nameEnd = p;
  tag.name = _text.substr(begin + 1, p - begin - 1);
  tag.end = endOfTag(_text, p);
  if (tag.end == _text.npos) return false;
  tag.isEmpty = _text[tag.end - 2] == '/';
  return !tag.name.empty();
}

// Only tags with a colon, with a declaration or with an alternative's requirements have attributes that matter here.
bool MarkupResolver::readAttributes(const Tag& tag) {
  _attributes.clear();
  const std::string_view inner = _text.substr(tag.nameEnd, tag.end - tag.nameEnd);
  const bool isOfInterest =
      inner.find(':') != inner.npos || inner.find("xmlns") != inner.npos || inner.find(kRequires) != inner.npos;
  if (!isOfInterest) return true;
  const std::size_t end = tag.end - (tag.isEmpty ? 2 : 1);
  const auto skipSpace = [&](std::size_t p) {
    while (p < end && lmx::is_space(_text[p])) ++p;
    return p;
  };
  for (std::size_t p = tag.nameEnd;;) {
    const std::size_t begin = p;
    p = skipSpace(p);
    if (p == end) return true;
    const std::size_t nameBegin = p;
    while (p < end && lmx::is_name_char(static_cast<unsigned char>(_text[p]))) ++p;
    const std::string_view name = _text.substr(nameBegin, p - nameBegin);
    p = skipSpace(p);
    if (name.empty() || p == end || _text[p] != '=') return false;
    p = skipSpace(p + 1);
    if (p == end || (_text[p] != '"' && _text[p] != '\'')) return false;
    const std::size_t close = _text.find(_text[p], p + 1);
    if (close >= end) return false;
    _attributes.push_back({name, _text.substr(p + 1, close - p - 1), begin, close + 1});
    p = close + 1;
  }
}

// What the current start tag declares: namespaces first, since the lists are written with their prefixes.
bool MarkupResolver::readScopes() {
  for (const Attribute& attribute : _attributes) {
    if (attribute.name == "xmlns") {
      _declarations.push_back({{}, attribute.value});
    } else if (prefixPart(attribute.name) == "xmlns") {
      _declarations.push_back({localPart(attribute.name), attribute.value});
    }
  }
  for (const Attribute& attribute : _attributes) {
    const std::string_view local = localPart(attribute.name);
    if (uriOf(attribute.name, false) != kCompatibilityUri) continue;
    forEachWord(attribute.value, [&](std::string_view word) {
      const std::string_view* uri = findUri(local == "Ignorable" ? word : prefixPart(word));
      if (uri == nullptr) return true;
      if (local == "Ignorable") _ignorables.push_back(*uri);
      if (local == "ProcessContent") _processed.push_back({*uri, localPart(word)});
      return _ignorables.size() <= kMaxIgnorables && _processed.size() <= kMaxIgnorables;
    });
  }
  return _declarations.size() <= lmx::kMaxNamespacesInScope && _ignorables.size() <= kMaxIgnorables &&
         _processed.size() <= kMaxIgnorables;
}

bool MarkupResolver::startTag(std::string& out) {
  Tag tag{};
  if (!readTag(_position, tag) || !readAttributes(tag)) return false;
  const Frame before{FrameKind::element, false, {}, _declarations.size(), _ignorables.size(), _processed.size()};
  if (!readScopes() || _frames.size() >= lmx::kMaxElementDepth) return false;
  const std::string_view uri = uriOf(tag.name, true);
  const std::string_view local = localPart(tag.name);
  const bool isInAlternatives = !_frames.empty() && _frames.back().kind == FrameKind::alternatives;
  if (isInAlternatives) {
    if (uri != kCompatibilityUri || !takeAlternative(tag, local, out)) {
      leave(before);
      return skipElement(tag, out);
    }
    enter(FrameKind::wrapper, tag, before);
  } else if (uri == kCompatibilityUri && local == "AlternateContent") {
    dropTag(tag, out);
    enter(FrameKind::alternatives, tag, before);
  } else if (isIgnorable(uri)) {
    if (!isProcessed(uri, local)) {
      leave(before);
      return skipElement(tag, out);
    }
    ++_dropped;
    dropTag(tag, out);
    enter(FrameKind::wrapper, tag, before);
  } else {
    emitElement(tag, out);
    // What an extension holds is its owner's: it stays as it is, ignorable or not.
    const bool isExtension = local == "ext" && !_frames.empty() && _frames.back().local == "extLst";
    if (isExtension) {
      leave(before);
      return keepElementAsItIs(tag);
    }
    enter(FrameKind::element, tag, before);
  }
  _position = tag.end;
  return true;
}

bool MarkupResolver::takeAlternative(const Tag& tag, std::string_view local, std::string& out) {
  if (_frames.back().isChosen) return false;
  if (local == "Choice") {
    const auto requires_ = std::find_if(_attributes.begin(), _attributes.end(),
                                        [](const Attribute& attribute) { return attribute.name == kRequires; });
    if (requires_ == _attributes.end() || !areAllUnderstood(requires_->value)) return false;
  } else if (local != "Fallback") {
    return false;
  }
  _frames.back().isChosen = true;
  dropTag(tag, out);
  return true;
}

void MarkupResolver::enter(FrameKind kind, const Tag& tag, const Frame& before) {
  if (tag.isEmpty) {
    leave(before);
    return;
  }
  Frame frame = before;
  frame.kind = kind;
  frame.local = localPart(tag.name);
  _frames.push_back(frame);
}

void MarkupResolver::leave(const Frame& frame) {
  _declarations.resize(frame.declarations);
  _ignorables.resize(frame.ignorables);
  _processed.resize(frame.processed);
}

bool MarkupResolver::endTag(std::string& out) {
  const std::size_t close = _text.find('>', _position);
  if (close == _text.npos || _frames.empty()) return false;
  if (_frames.back().kind != FrameKind::element) {
    flushTo(_position, out);
    _run = close + 1;
  }
  leave(_frames.back());
  _frames.pop_back();
  _position = close + 1;
  return true;
}

// Text between alternatives belongs to none of them.
void MarkupResolver::flushTo(std::size_t position, std::string& out) {
  const bool isBetween = !_frames.empty() && _frames.back().kind == FrameKind::alternatives;
  if (!isBetween) out.append(_text.substr(_run, position - _run));
  _run = position;
}

void MarkupResolver::dropTag(const Tag& tag, std::string& out) {
  flushTo(tag.begin, out);
  _run = tag.end;
  _isChanged = true;
}

bool MarkupResolver::skipElement(const Tag& tag, std::string& out) {
  const std::size_t after = afterElement(tag);
  if (after == _text.npos) return false;
  flushTo(tag.begin, out);
  _run = _position = after;
  _isChanged = true;
  ++_dropped;
  return true;
}

bool MarkupResolver::keepElementAsItIs(const Tag& tag) {
  const std::size_t after = afterElement(tag);
  if (after == _text.npos) return false;
  _position = after;
  return true;
}

std::size_t MarkupResolver::afterElement(const Tag& tag) const {
  std::size_t p = tag.end;
  for (std::size_t depth = tag.isEmpty ? 0 : 1; depth > 0;) {
    p = _text.find('<', p);
    if (p == _text.npos || p + 1 == _text.size()) return _text.npos;
    const char next = _text[p + 1];
    if (next == '!' || next == '?') {
      p = afterOther(p);
    } else if (next == '/') {
      --depth;
      p = _text.find('>', p);
      if (p != _text.npos) ++p;
    } else {
      Tag inner{};
      if (!readTag(p, inner)) return _text.npos;
      if (!inner.isEmpty) ++depth;
      p = inner.end;
    }
    if (p == _text.npos) return p;
  }
  return p;
}

void MarkupResolver::emitElement(const Tag& tag, std::string& out) {
  redeclare(tag, out);
  for (const Attribute& attribute : _attributes) {
    if (prefixPart(attribute.name) == "xmlns") continue;
    const std::string_view uri = uriOf(attribute.name, false);
    const bool isOwn = uri == kCompatibilityUri;
    if (!isOwn && !isIgnorable(uri)) continue;
    flushTo(attribute.begin, out);
    _run = attribute.end;
    _isChanged = true;
    if (!isOwn) ++_dropped;
  }
}

// An element inside tags that went takes over what those declared.
void MarkupResolver::redeclare(const Tag& tag, std::string& out) {
  std::size_t first = _declarations.size();
  for (std::size_t i = _frames.size(); i-- > 0 && _frames[i].kind != FrameKind::element;) {
    first = _frames[i].declarations;
  }
  bool isFlushed = false;
  for (std::size_t i = first; i < _declarations.size(); ++i) {
    const auto isLater = [&](const Declaration& other) { return other.prefix == _declarations[i].prefix; };
    // The element's own stand in its tag and, being last, hide what was before.
    const auto next = _declarations.begin() + static_cast<std::ptrdiff_t>(i) + 1;
    if (std::any_of(next, _declarations.end(), isLater)) continue;
    const char* own = _declarations[i].uri.data();
    if (own >= _text.data() + tag.begin && own < _text.data() + tag.end) continue;
    if (!isFlushed) flushTo(tag.nameEnd, out);
    isFlushed = true;
    out.append(_declarations[i].prefix.empty() ? " xmlns" : " xmlns:").append(_declarations[i].prefix);
    const char quote = _declarations[i].uri.find('"') == std::string_view::npos ? '"' : '\'';
    out.append(1, '=').append(1, quote).append(_declarations[i].uri).append(1, quote);
  }
}

}  // namespace rubrica
