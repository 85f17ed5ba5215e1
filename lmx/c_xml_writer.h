// The streaming writer of XML parts, the counterpart of c_xml_reader: elements go out as the binding classes visit
// them. One writer serves one document; it does not own its target and never closes elements that a failure left open.
//
//   std::string text;
//   c_xml_writer writer(text, c_xml_writer::kDeclaration);
//   c_xml_writer::frame frame(writer);
//   writer.start_element("a");
//   writer.write_attribute("n", std::uint64_t{1});
//   writer.write_element_body("text");
//   writer.end_element("a");
#pragma once

#include <concepts>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "lmx/c_xml.h"
#include "lmx/descriptor.h"
#include "lmx/value.h"

namespace rubrica::lmx {

// Indentation and line ends, all empty unless given. An absent attribute string follows the element string.
struct writer_layout {
  const char* tab = nullptr;
  const char* nl = nullptr;
  const char* attribute_tab = nullptr;
  const char* attribute_nl = nullptr;
};

class c_xml_writer : public c_xml {
 public:
  // What the constructor writes: nothing, the declaration, the declaration with standalone="yes".
  static constexpr unsigned kNoDeclaration = 0;
  static constexpr unsigned kDeclaration = 1;
  static constexpr unsigned kStandaloneDeclaration = 2;

  // An element that is open, on the stack of the function that writes it.
  class frame {
   public:
    explicit frame(c_xml_writer& writer) : _writer(writer), _parent(writer._top) { writer._top = this; }
    ~frame() { _writer._top = _parent; }
    frame(const frame&) = delete;
    frame& operator=(const frame&) = delete;

   private:
    friend class c_xml_writer;
    c_xml_writer& _writer;
    frame* _parent;
    bool _body_started = false;  // the '>' of the start tag stands
    bool _has_child_elements = false;
  };

  // Appends to `target`, which the caller must not touch meanwhile.
  explicit c_xml_writer(std::string& target, unsigned flags = kDeclaration, const writer_layout& strings = {});
  // The same to a stream, which is given the classic locale. All is in the stream whenever no element is open.
  explicit c_xml_writer(std::ostream& target, unsigned flags = kDeclaration, const writer_layout& strings = {});
  ~c_xml_writer() override;

  // " " before the first attribute of an element; what stands before a later one is up to the layout.
  virtual void write_attribute_separator();
  // Captured XML as it stands, as a child of the open element.
  virtual void write_any_text(const any_item& item);

  // The table of the first caller stands; later ones are ignored.
  void set_namespaces(const namespace_row* table);
  void add_namespace(std::string_view prefix, std::string_view uri);
  void add_schema_location(std::string_view uri, std::string_view location);

  void start_element(const char* name);
  // Writes all declarations once, in the first element that asks.
  void write_namespaces(bool force_xsi);
  void end_element(const char* name);

  void write_attribute(const char* name, std::string_view value);
  void write_attribute(const char* name, std::u16string_view value);
  void write_attribute(const char* name, double value);
  template <std::integral T>
  void write_attribute(const char* name, T value) {
    open_attribute(name);
    append_integer(value);
    close_attribute();
  }
  // A simple value or list by its type; nothing when the member is not set.
  void write_attribute(const char* name, const simple_type& type, const void* value, bool is_value_set);
  void write_list_attribute(const char* name, const simple_type& type, const void* values, bool is_value_set);

  void write_element_body(std::string_view value);
  void write_element_body(std::u16string_view value);
  void write_element_body(double value);
  template <std::integral T>
  void write_element_body(T value) {
    start_body();
    append_integer(value);
  }
  void write_element_body(const simple_type& type, const void* value);
  // One element a list item.
  void write_simple_elements(const char* name, const simple_type& type, const void* values,
                             const namespace_row* namespaces = nullptr);

  // The target's text, for code that writes what it knows to need no escaping. Only between the start of an element
  // and its end.
  std::string& raw() { return _out; }
  // Writes the '>' of the start tag unless it stands.
  void start_body();
  // The same for children that are about to be written into raw(), with no white space and no declarations. False, with
  // nothing done, when they have to be written one by one because the layout or the namespaces ask for more.
  bool start_raw_children();

  // Keeps the problem in the record; the line of XML is unknown.
  elmx_error report_error(elmx_error code, std::string_view item_name) { return keep_error(code, item_name, -1); }

  int depth() const { return _depth; }
  // Hands to the stream what is still held back.
  void flush();

 private:
  friend class frame;

  template <std::integral T>
  void append_integer(T value) {
    if constexpr (std::is_same_v<T, bool>) {
      append_bool(_out, value);
    } else if constexpr (std::unsigned_integral<T>) {
      append_number(_out, static_cast<std::uint64_t>(value));
    } else {
      append_number(_out, static_cast<std::int64_t>(value));
    }
  }
  void prepare(unsigned flags, const writer_layout& strings);
  void indent(int depth);
  void open_attribute(const char* name);
  void close_attribute() { _out.push_back('"'); }
  void start_child();

  c_error _own_errors;
  std::string _buffer;  // of a writer to a stream
  std::string& _out;
  std::ostream* _stream;
  frame* _top = nullptr;
  int _depth = 0;
  std::string _tab;
  std::string _nl;
  std::string _attribute_tab;
  std::string _attribute_nl;
  bool _first_attribute = true;
  bool _namespaces_written = false;
  const namespace_row* _namespaces = nullptr;
  std::vector<std::pair<std::string, std::string>> _extra_namespaces;
  std::vector<std::pair<std::string, std::string>> _schema_locations;
};

}  // namespace rubrica::lmx
