// The pull reader of XML parts: events in document order, names classified against the tables of the binding classes,
// values with their entities expanded. One reader serves one document from start to end, on one thread at a time.
//
//   c_xml_reader_memory reader(data, size);
//   workbook::c_workbook book;
//   elmx_error code = book.unmarshal(reader);
//
// Two lanes lead through a document. The character layers (c_get_for_xml) know what every byte means. Over a block of
// UTF-8 in memory the fast lane (fast_lane.h) reads the common markup where it stands and steps aside, event by event,
// for whatever is rare. Both give the same events, values, lines and errors.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "lmx/c_get_for_xml.h"
#include "lmx/c_xml.h"
#include "lmx/fast_lane.h"

namespace rubrica::lmx {

// Which repeated children of one class are kept: those that are not are dropped as soon as they are read, so that they
// cost no memory. A sheet of which only some rows are wanted is read this way.
struct child_filter {
  const class_descriptor* type = nullptr;
  bool (*keep)(void* context, const object& child) = nullptr;
  void* context = nullptr;
};

class c_xml_reader : public c_xml {
 public:
  ~c_xml_reader() override;

  bool is_open() const { return _source.is_open(); }

  // Enters the table of a schema module, ended by a null URI. A URI that is known takes the new id.
  void add_namespace_mapping(const namespace_row* table);

  // Reads forward to the next start tag (7), end tag (6) or text (5); 0 at the end of the input, 3 on failure.
  // What is left of an event that was not asked for (attributes, the end of a start tag) is passed over.
  int get_element_event();
  // The next attribute of the start tag as 7, then its end: 4 for ">", 6 for "/>"; 3 on failure.
  int get_attribute_event();
  // The same without the end: null behind the last attribute.
  const raw_attribute* next_attribute() {
    if (!_in_start_tag || _next_attribute == _attributes.size()) return nullptr;
    const raw_attribute& next = _attributes[_next_attribute++];
    _name = next.name;
    _token = TOKEN_NAME;
    return &next;
  }
  // Classifies the current name against a table ended by a null name.
  int tokenise(const name_row* table, bool is_element);

  int current_token() const { return _token; }
  // The current name as written, and its parts. Good until the next event.
  std::string_view name() const { return _name; }
  std::string_view local_name() const;
  int namespace_id(bool is_element) const;
  std::string_view namespace_uri(int id) const { return _layers.namespace_uri(id); }
  // Whether the end that was just read bears the name of its start tag.
  bool end_matches_start() const { return _end_matches; }
  // The name of the element that the last end closed, or that the last start tag opened.
  std::string_view open_element_name() const;

  // The value of the current attribute, or the text up to the next tag. False when it can't be read: for an attribute
  // that is code 28, for text the code of failure(). The view is good until the next call of the reader.
  bool get_attribute_value(std::string_view& value, white_space mode);
  bool get_simple_type_value(std::string_view& value, white_space mode);

  // Takes the element that has just started, whole, as XML text. Declarations of namespaces that it uses from elements
  // around it are folded into its start tag. False on failure. The current event is the element's end afterwards.
  bool capture_element(any_item& item, white_space mode);
  // Passes over the element that has just started. False on failure.
  bool skip_element();

  // Keeps the problem in the record and asks the handler: 0 to go on.
  elmx_error report(elmx_error code, std::string_view item_name);
  // The same for input that can't be read further. The first fatal problem of the layers stands before `code`; the
  // answer is never 0.
  elmx_error report_end(elmx_error code, std::string_view item_name);

  void set_child_filter(const child_filter& filter) { _child_filter = filter; }
  bool keeps(const object& child) const {
    return _child_filter.type == nullptr || &child.descriptor() != _child_filter.type ||
           _child_filter.keep(_child_filter.context, child);
  }

  // What follows in the document, for code that reads plain markup by itself: elements of this namespace, written
  // without a prefix, `depth` of them inside each other. Empty when this is not the place for that. pass_plain says up
  // to where all has been read; elements that were begun must have been ended.
  std::string_view plain_text(int namespace_id, std::size_t depth) const;
  void pass_plain(const char* position) { _lane.set_position(position); }
  // How many objects the last vector of a repeated child got, for the room of the next.
  std::size_t last_count() const { return _last_count; }
  void set_last_count(std::size_t count) { _last_count = count; }

  // Where the objects that are made out of the document stand.
  object_arena& objects() { return _objects; }

  int line() const;

  // Reads everything by the character layers from here on, as tests do that compare the lanes.
  void disable_fast_lane();

 protected:
  // `memory` is the same source where it is a block in memory, else null.
  c_xml_reader(c_read& source, c_read_memory* memory);

 private:
  struct open_element {
    const char* fast_name;  // into the block, or null: then at name_offset of _slow_names
    std::size_t name_offset;
    std::size_t name_size;
    std::size_t bindings;   // namespace bindings before it
    int default_namespace;  // before it
  };
  struct binding {
    std::string prefix;
    std::uint64_t prefix_key;
    int id;
    std::string uri;
  };
  struct capture_state;

  // What a name was found to be, for the next time that it stands where the same namespaces are declared.
  struct classified_name {
    std::uint64_t begin;  // the first eight bytes
    std::uint64_t end;    // the last eight of a longer name
    std::size_t size;     // 0: nothing is known here
    const name_row* table;
    std::uint64_t context;
    int token = TOKEN_UNKNOWN;
  };
  static constexpr std::size_t kClassifiedNames = 64;

  int classify(const name_row* table, bool is_element) const;
  std::string_view name_of(const open_element& element) const;
  int start_event(bool fast);
  int end_event(bool from_tag);
  void close_element(const open_element& closed);
  bool pass_expected_end();
  int slow_element_event();
  void fatal(elmx_error code, std::string_view text);
  bool enter_declarations();
  const binding* find_binding(std::string_view prefix, std::size_t& index) const;
  int prefix_id(std::string_view prefix) const;
  void enter_fast_lane();
  void leave_fast_lane();
  bool normalise(std::string_view raw, white_space mode, bool has_reference, std::string_view& value);

  bool capture_start_tag(capture_state& state);
  bool capture_content(capture_state& state, white_space mode);
  void note_prefix(capture_state& state, std::string_view prefix);
  void note_prefixes_of_value(capture_state& state, std::string_view attribute, std::string_view value);
  std::string folded_declarations(const capture_state& state) const;

  object_arena _objects;
  child_filter _child_filter;
  std::size_t _last_count = 0;
  c_read& _source;
  c_read_memory* _memory;
  c_error _own_errors;
  c_get_for_xml _layers;
  fast_lane _lane;
  bool _fast_allowed;
  bool _fast = false;     // the position is the lane's, not the layers'
  int _fast_tag_end = 0;  // end of the current start tag when the lane has read it
  int _token = TOKEN_UNKNOWN;
  bool _in_start_tag = false;  // the end of the start tag has not been given out
  bool _end_matches = true;
  std::string_view _name;
  std::vector<raw_attribute> _attributes;
  std::vector<raw_attribute> _declarations;
  std::size_t _next_attribute = 0;
  std::vector<open_element> _open;  // the first _depth are open; the one behind them was closed last
  std::size_t _depth = 0;
  std::string _slow_names;  // names of open elements that the layers have read
  std::size_t _slow_names_used = 0;
  std::vector<binding> _bindings;
  int _default_namespace = kNoNamespace;
  std::uint64_t _scope = 0;  // counts the changes of bindings
  std::array<classified_name, kClassifiedNames> _classified{};
  std::string _value;
};

class c_xml_reader_file final : public c_xml_reader {
 public:
  explicit c_xml_reader_file(std::u16string_view path);
  explicit c_xml_reader_file(std::string_view utf8_path);
  ~c_xml_reader_file() override;

 private:
  explicit c_xml_reader_file(std::unique_ptr<c_read_file> file);
  std::unique_ptr<c_read_file> _file;
};

class c_xml_reader_memory final : public c_xml_reader {
 public:
  c_xml_reader_memory(const char* data, std::size_t size);
  ~c_xml_reader_memory() override;

 private:
  explicit c_xml_reader_memory(std::unique_ptr<c_read_memory> memory);
  std::unique_ptr<c_read_memory> _block;
};

}  // namespace rubrica::lmx
