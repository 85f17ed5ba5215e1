// The one driver of all binding classes: it reads, writes, compares and checks an object from its class's constant
// tables (descriptor.h), or hands it to the hooks of a class laid out by hand. Generated classes forward to these
// functions; nothing here keeps state or throws.
#pragma once

#include <string>
#include <string_view>

#include "lmx/c_error.h"
#include "lmx/descriptor.h"

namespace rubrica::lmx {

// Reads one element into `self`, which is in its default state. The reader's current event is the element's start tag
// (named `element_name`, as written in the document); afterwards it is the element's end.
elmx_error unmarshal(object& self, c_xml_reader& reader, std::string_view element_name);

// Writes `self` as one element.
elmx_error marshal(const object& self, c_xml_writer& writer, const char* element_name);

// Whether two objects of the same class would marshal alike: the same members present with the same values.
bool equal(const object& left, const object& right);

// Looks for required members that are missing, numbers of occurrences outside their bounds and values that their types
// refuse, without writing anything. On failure `item_name` names the member ("@name" for an attribute).
elmx_error check(const object& self, std::string& item_name);

// The root forms. A record, where one is given, receives the code and where the problem was.
// Unmarshal compares namespace and name of the document's first element with the root's: code 16 if they differ.
elmx_error unmarshal_root(object& self, const root_descriptor& root, c_xml_reader& reader);
elmx_error unmarshal_root(object& self, const root_descriptor& root, const char* data, std::size_t size,
                          c_error_record* out = nullptr);
elmx_error unmarshal_root_file(object& self, const root_descriptor& root, const char* path,
                               c_error_record* out = nullptr);
elmx_error marshal_root(const object& self, const root_descriptor& root, c_xml_writer& writer);
// `text` is assigned on success only.
elmx_error marshal_root(const object& self, const root_descriptor& root, std::string& text,
                        c_error_record* out = nullptr);
// On failure the file is removed again. `path` is UTF-8.
elmx_error marshal_root_file(const object& self, const root_descriptor& root, const char* path,
                             c_error_record* out = nullptr);

}  // namespace rubrica::lmx
