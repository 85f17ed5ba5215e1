// How the driver handles packed string items. Those that are text alone are read and written by hand, since there are
// many; all else goes through the described form of the type (Worker), so that both give what the driver gives.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "lmx/c_xml_reader.h"
#include "lmx/c_xml_writer.h"
#include "lmx/driver.h"
#include "source/ooxml/block_hooks.h"
#include "source/ooxml/packed_string.h"
#include "source/ooxml/plain_cells.h"

namespace rubrica::ooxml {

// Reads the item that a text begins with, `<si><t>text</t></si>` of printable characters without references, and gives
// its size and what is in it; 0 when it is another one.
std::size_t readPlainString(std::string_view text, std::string_view& content);
// Appends an item of that form.
void writePlainString(std::string_view content, std::string& out);

template <class String, class Worker>
lmx::elmx_error unmarshalString(lmx::object& self, lmx::c_xml_reader& reader, std::string_view element_name) {
  Worker worker;
  const lmx::elmx_error code = lmx::unmarshal(worker, reader, element_name);
  static_cast<String&>(self).pack(std::move(worker));
  return code;
}

template <class String>
lmx::elmx_error marshalString(const lmx::object& self, lmx::c_xml_writer& writer, const char* element_name) {
  const auto& item = static_cast<const String&>(self);
  if (const auto* full = item.find_full()) return lmx::marshal(*full, writer, element_name);
  return lmx::marshal(item.unpacked(), writer, element_name);
}

template <class String>
bool equalStrings(const lmx::object& left, const lmx::object& right) {
  const auto &a = static_cast<const String&>(left), &b = static_cast<const String&>(right);
  if (a.view_t() && b.view_t()) return a.view_t() == b.view_t();
  return lmx::equal(a.unpacked(), b.unpacked());
}

template <class String>
lmx::elmx_error checkString(const lmx::object& self, std::string& item_name) {
  return lmx::check(static_cast<const String&>(self).unpacked(), item_name);
}

template <class String, class Worker>
constexpr lmx::class_hooks stringHooks() {
  return {&unmarshalString<String, Worker>, &marshalString<String>, &equalStrings<String>, &checkString<String>};
}

// Item and text, inside each other.
inline constexpr std::size_t kStringDepth = 2;

template <class String, class Worker>
std::size_t readPlainStrings(void* vector, lmx::c_xml_reader& reader, std::size_t /*expected*/) {
  auto& items = *static_cast<std::vector<String>*>(vector);
  const std::size_t before = items.size();
  std::string_view text = reader.plain_text(Worker::kDescriptor.element_names->namespace_id, kStringDepth);
  std::string_view content;
  text.remove_prefix(blanksBefore(text));
  while (const std::size_t size = readPlainString(text, content)) {
    items.emplace_back().set_t(content);
    text.remove_prefix(size);
    text.remove_prefix(blanksBefore(text));
  }
  if (items.size() == before) return 0;
  reader.pass_plain(text.data());
  reader.set_program_line(Worker::kDescriptor.particles->target->body->line);
  return items.size() - before;
}

template <class String>
std::size_t writePlainStrings(const void* vector, std::size_t first, lmx::c_xml_writer& writer) {
  const auto& items = *static_cast<const std::vector<String>*>(vector);
  std::size_t i = first;
  // Asked before each item, as this is where a writer to a stream hands its text on.
  for (; i < items.size() && items[i].view_t() && writer.start_raw_children(); ++i) {
    writePlainString(*items[i].view_t(), writer.raw());
  }
  return i - first;
}

template <class String, class Worker>
constexpr lmx::block_hooks stringBlockHooks() {
  return blockHooks<String>(&readPlainStrings<String, Worker>, &writePlainStrings<String>);
}

}  // namespace rubrica::ooxml
