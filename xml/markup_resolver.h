// The work behind ResolvedMarkup, for a text that mentions the namespace of markup compatibility. One object serves one
// text, which must outlive it; names and URIs are views into the text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "lmx/descriptor.h"

namespace rubrica {

inline constexpr std::string_view kCompatibilityUri = "http://schemas.openxmlformats.org/markup-compatibility/2006";

class MarkupResolver {
 public:
  MarkupResolver(std::string_view text, const lmx::root_descriptor& root) : _text(text), _root(root) {}

  // Whether any element could be an alternative or ignorable. Ignorable attributes alone are no reason: the binding
  // passes over attributes that it doesn't know, and the sheets of today have one in every row.
  bool isNeeded() const;
  // Writes the text as it is bound into `out`, which is empty; false when that is the text as it was.
  bool resolve(std::string& out);
  std::size_t dropped() const { return _dropped; }

 private:
  enum class FrameKind : char { element, wrapper, alternatives };

  struct Declaration {
    std::string_view prefix, uri;
  };
  // A name of a namespace; "*" for all of them.
  struct QualifiedName {
    std::string_view uri, local;
  };
  struct Attribute {
    std::string_view name, value;
    std::size_t begin, end;  // with the white space before it
  };
  struct Tag {
    std::size_t begin, end;  // of all from '<' to past '>'
    std::size_t nameEnd;
    std::string_view name;
    bool isEmpty;  // "/>"
  };
  // An open element. Wrappers are elements whose tags go while their content stays.
  struct Frame {
    FrameKind kind;
    bool isChosen;  // alternatives: one of them has been taken
    std::string_view local;
    std::size_t declarations, ignorables, processed;  // how many there were before it
  };

  bool walk(std::string& out);
  bool startTag(std::string& out);
  bool endTag(std::string& out);
  bool passOther();
  void emitElement(const Tag& tag, std::string& out);
  void redeclare(const Tag& tag, std::string& out);
  bool skipElement(const Tag& tag, std::string& out);
  bool keepElementAsItIs(const Tag& tag);
  bool takeAlternative(const Tag& tag, std::string_view local, std::string& out);
  void enter(FrameKind kind, const Tag& tag, const Frame& before);
  void leave(const Frame& frame);
  void dropTag(const Tag& tag, std::string& out);
  void flushTo(std::size_t position, std::string& out);

  bool readTag(std::size_t begin, Tag& tag) const;
  bool readAttributes(const Tag& tag);
  bool readScopes();
  std::size_t afterElement(const Tag& tag) const;
  std::size_t afterOther(std::size_t position) const;
  const std::string_view* findUri(std::string_view prefix) const;
  std::string_view uriOf(std::string_view name, bool isElement) const;
  bool isUnderstood(std::string_view uri) const;
  bool isIgnorable(std::string_view uri) const;
  bool isProcessed(std::string_view uri, std::string_view local) const;
  bool areAllUnderstood(std::string_view prefixes) const;

  std::string_view _text;
  const lmx::root_descriptor& _root;
  std::size_t _position = 0;  // all before it has been looked at
  std::size_t _run = 0;       // all before it has been written or dropped
  std::vector<Frame> _frames;
  std::vector<Declaration> _declarations;
  std::vector<std::string_view> _ignorables;  // URIs
  std::vector<QualifiedName> _processed;      // ignorable elements whose content stays
  std::vector<Attribute> _attributes;         // of the current start tag
  std::size_t _dropped = 0;
  bool _isChanged = false;
};

}  // namespace rubrica
