// The top character layer: finds the markup. It skips comments, processing instructions and the document type, reads
// tags into flat buffers that every element uses again, and knows the namespaces by number.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "lmx/c_get_with_entities.h"

namespace rubrica::lmx {

// Ids of namespaces that are always the same.
inline constexpr int kUndeclaredNamespace = 0;  // a prefix that nothing declares
inline constexpr int kNoNamespace = 1;
inline constexpr int kXmlNamespace = 2;
inline constexpr int kSchemaInstanceNamespace = 5;
inline constexpr int kFirstModuleNamespace = 1000;

// What the tokeniser and the classifier answer. Names of a schema follow from kFirstNameToken (descriptor.h).
enum token : int {
  TOKEN_END_OF_INPUT = 0,
  TOKEN_UNKNOWN = 1,  // a name that the table does not have
  TOKEN_FAILURE_IN_NAME = 2,
  TOKEN_FAILURE = 3,  // the code stands in c_error
  TOKEN_START_TAG_END = 4,
  TOKEN_TEXT = 5,
  TOKEN_ELEMENT_END = 6,  // an end tag or "/>"
  TOKEN_NAME = 7,         // a start tag or an attribute, not yet classified
  TOKEN_XSI_TYPE = 8,
  TOKEN_XSI_NIL = 9,
  TOKEN_XSI_SCHEMA_LOCATION = 10,
  TOKEN_XSI_NO_NAMESPACE_SCHEMA_LOCATION = 11,
  TOKEN_SKIPPED_ELEMENT_END = 12,
};

// One attribute of the current start tag, its value as it stands in the document.
struct raw_attribute {
  std::string_view name;
  std::string_view value;
  char quote;
  bool has_reference;  // an '&'
  bool plain = false;  // known to hold neither references nor white space
};

class c_get_for_xml : public c_get_with_entities {
 public:
  c_get_for_xml(c_read& source, c_error& errors);

  // Reads forward to a start tag (7, its name and attributes buffered), an end tag (6, its name), text (5, nothing of
  // it read yet) or the end (0); 3 on failure.
  int next_markup();
  // The end of the start tag: 4 for ">", 6 for "/>", 3 on failure.
  int start_tag_end();
  // The text up to the next tag. False when a reference in it fails or nothing more can be read.
  bool read_text(std::string& text, white_space mode);
  // The same as it stands, with CDATA sections and references to be read again later, comments dropped.
  bool read_raw_text(std::string& text, white_space mode);

  const std::string& tag_name() const { return _tag_name; }
  // Attributes and namespace declarations of the start tag, in the buffers: good until the next markup.
  void get_attributes(std::vector<raw_attribute>& attributes) const { list(_attributes, attributes); }
  void get_declarations(std::vector<raw_attribute>& declarations) const { list(_declarations, declarations); }

  int namespace_id(std::string_view uri);
  void enter_namespace(std::string_view uri, int id);
  // The URI of an id, empty for none.
  std::string_view namespace_uri(int id) const;

  bool document_type_seen() const { return _dtd_seen; }
  // Told by a tokeniser over the bytes, which sees start tags and text too.
  void mark_document_started() { _document_started = true; }
  // Whether a tokeniser over the bytes may take over (see c_get_as_utf8).
  bool at_event_boundary() const { return !_in_cdata && !entities_open(); }

 private:
  // name NUL value NUL pairs, with where each begins and the quote it stood in.
  struct pair_buffer {
    struct entry {
      std::size_t name;
      std::size_t name_size;
      std::size_t value;
      std::size_t value_size;
      char quote;
    };
    std::string text;
    std::vector<entry> entries;
    void clear() {
      text.clear();
      entries.clear();
    }
  };

  static void list(const pair_buffer& buffer, std::vector<raw_attribute>& out);

  bool malformed(elmx_error code, std::string_view text) {
    fatal(code, text);
    return false;
  }
  bool premature_end();
  int skip_space(int c);
  bool expect(std::string_view text);
  void read_name(int first, std::string& name);
  bool read_start_tag(int first);
  bool read_attribute(int first);
  bool read_end_tag();
  bool read_cdata(std::string* raw);
  bool skip_comment();
  bool skip_to(char end);
  bool skip_instruction_rest();
  // Behind "<!" and "<?" at content level. Sets `text` when character data follows.
  bool read_declaration(bool& text);
  bool read_instruction();
  bool read_markup_in_text(bool& ends);
  bool read_xml_declaration();
  bool read_quoted(std::string& value);
  bool read_document_type();
  bool read_internal_subset();
  bool read_subset_declaration();
  bool read_entity_definition();
  bool read_entity_value(int quote, std::string& value);
  bool expand_parameter(bool push, std::string* value);
  bool put_raw_reference();

  c_repository<int> _namespaces;
  int _next_namespace = kFirstModuleNamespace;
  bool _dtd_seen = false;
  bool _document_started = false;
  bool _in_cdata = false;
  std::string _tag_name;
  pair_buffer _attributes;
  pair_buffer _declarations;
};

// Whether an attribute's name declares a namespace.
inline bool is_namespace_declaration(std::string_view name) {
  return name.starts_with('x') && name.starts_with("xmlns") && (name.size() == 5 || name[5] == ':');
}

}  // namespace rubrica::lmx
