// The text forms of simple values: what is accepted at reading, with the checks of a simple type in their order (form,
// conversion, value), and what is written. Numbers know no locale.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "lmx/descriptor.h"

namespace rubrica::lmx {

// Reads `text`, whose white space the reader has dealt with, into the T of the type's kind at `target`. On failure the
// target is left in some valid state.
elmx_error parse_value(const simple_type& type, std::string_view text, void* target);

// The same for a list: items between blanks into the std::vector of T at `target`, which is emptied first.
elmx_error parse_list(const simple_type& type, std::string_view text, void* target);

// Looks at a value in memory as parse_value would at its text.
elmx_error check_value(const simple_type& type, const void* value);

// Appends the written form, with text escaped.
void append_value(std::string& out, const simple_type& type, const void* value);
void append_list(std::string& out, const simple_type& type, const void* values);

bool equal_values(value_kind kind, const void* left, const void* right);
bool equal_lists(value_kind kind, const void* left, const void* right);

// The repeated simple elements of a particle: its std::vector of T, item by item.
std::size_t list_size(value_kind kind, const void* values);
elmx_error parse_list_item(const simple_type& type, std::string_view text, void* values);  // appended
void append_list_item(std::string& out, const simple_type& type, const void* values, std::size_t index);
elmx_error check_list(const simple_type& type, const void* values);

// Puts a default back: `text` as parse_value takes it, or the value-initialised T for null.
void assign_default(const simple_type& type, const char* text, void* target);

// Text with the characters escaped that may not stand as they are in attribute values and element text: both quotes,
// '&', '<', and the '>' of "]]>". `wide` text stops before a high surrogate without its low one.
void append_escaped(std::string& out, std::string_view text);
void append_escaped(std::string& out, std::u16string_view wide);

void append_number(std::string& out, double value);
void append_number(std::string& out, std::int64_t value);
void append_number(std::string& out, std::uint64_t value);
inline void append_bool(std::string& out, bool value) {
  out.append(value ? "true" : "false");
}
void append_base64(std::string& out, const c_binary& value);
void append_hex(std::string& out, const c_binary& value);

// The forms of xsd:double and xsd:dateTime. The number is correctly rounded; beyond the range it is an infinity or 0.
bool parse_double(std::string_view text, double& value);
bool is_datetime(std::string_view text);
bool parse_base64(std::string_view text, c_binary& value);
bool parse_hex(std::string_view text, c_binary& value);

}  // namespace rubrica::lmx
