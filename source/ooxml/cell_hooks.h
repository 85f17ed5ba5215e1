// How the driver handles packed cells. Reading and writing are by hand, since a sheet does them by the million; they do
// what the driver does for the described form of the type (Worker), in the same order and with the same errors. What is
// done rarely goes through that form.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "lmx/c_xml_reader.h"
#include "lmx/c_xml_writer.h"
#include "lmx/driver.h"
#include "source/ooxml/block_hooks.h"
#include "source/ooxml/packed_cell.h"
#include "source/ooxml/plain_cells.h"

namespace rubrica::ooxml {

// The members of a cell that are elements, in schema order.
enum class cell_member { f, v, is, extLst };

// Makes the child of a cell that the member is, for the reader to fill.
using make_cell_child = lmx::object& (*)(packed_cell&, cell_member);
// The child of a cell, null when there is none or it is not an object.
using find_cell_child = const lmx::object* (*)(const packed_cell&, cell_member);

lmx::elmx_error readCell(packed_cell& cell, lmx::c_xml_reader& reader, std::string_view element_name,
                         const lmx::class_descriptor& described, make_cell_child make);
lmx::elmx_error writeCell(const packed_cell& cell, lmx::c_xml_writer& writer, const char* element_name,
                          const lmx::class_descriptor& described, find_cell_child find);

template <class Cell>
lmx::object& makeCellChild(packed_cell& base, cell_member member) {
  auto& cell = static_cast<Cell&>(base);
  if (member == cell_member::f) return cell.get_f();
  if (member == cell_member::is) return cell.get_is();
  return cell.get_extLst();
}

template <class Cell>
const lmx::object* findCellChild(const packed_cell& base, cell_member member) {
  const auto& cell = static_cast<const Cell&>(base);
  if (member == cell_member::f) return cell.find_full_f();
  if (member == cell_member::is) return cell.find_is();
  return cell.find_extLst();
}

template <class Cell, class Worker>
lmx::elmx_error unmarshalCell(lmx::object& self, lmx::c_xml_reader& reader, std::string_view element_name) {
  return readCell(static_cast<Cell&>(self), reader, element_name, Worker::kDescriptor, &makeCellChild<Cell>);
}

template <class Cell, class Worker>
lmx::elmx_error marshalCell(const lmx::object& self, lmx::c_xml_writer& writer, const char* element_name) {
  return writeCell(static_cast<const Cell&>(self), writer, element_name, Worker::kDescriptor, &findCellChild<Cell>);
}

template <class Cell, class Worker>
bool equalCells(const lmx::object& left, const lmx::object& right) {
  Worker left_worker, right_worker;
  static_cast<const Cell&>(left).unpack(left_worker);
  static_cast<const Cell&>(right).unpack(right_worker);
  return lmx::equal(left_worker, right_worker);
}

template <class Cell, class Worker>
lmx::elmx_error checkCell(const lmx::object& self, std::string& item_name) {
  Worker worker;
  static_cast<const Cell&>(self).unpack(worker);
  return lmx::check(worker, item_name);
}

template <class Cell, class Worker>
constexpr lmx::class_hooks cellHooks() {
  return {&unmarshalCell<Cell, Worker>, &marshalCell<Cell, Worker>, &equalCells<Cell, Worker>,
          &checkCell<Cell, Worker>};
}

// Cell and value, inside each other.
inline constexpr std::size_t kCellDepth = 2;

// The line of the description that reports name behind a cell, which is that of what was read last.
template <class Cell, class Worker>
int lineOfLast(plain_cell::part last) {
  const lmx::class_descriptor& described = Worker::kDescriptor;
  switch (last) {
    case plain_cell::part::f:
      return Cell::c_f::kDescriptor.body->line;
    case plain_cell::part::v:
      return described.particles[static_cast<int>(cell_member::v)].line;
    default:
      return described.attributes[static_cast<int>(last)].line;
  }
}

template <class Cell, class Worker>
std::size_t readPlainCells(void* vector, lmx::c_xml_reader& reader, std::size_t expected) {
  auto& cells = *static_cast<std::vector<Cell>*>(vector);
  const std::size_t before = cells.size();
  std::string_view text = reader.plain_text(Worker::kDescriptor.element_names->namespace_id, kCellDepth);
  auto last = plain_cell::part::r;
  for (text.remove_prefix(blanksBefore(text)); beginsPlainCell(text); text.remove_prefix(blanksBefore(text))) {
    if (cells.empty()) cells.reserve(expected);
    Cell& cell = cells.emplace_back();
    const plain_cell found = readPlainCell(text, cell);
    if (found.size == 0) {
      cells.pop_back();
      break;
    }
    last = found.last;
    text.remove_prefix(found.size);
  }
  if (cells.size() == before) return 0;
  reader.pass_plain(text.data());
  reader.set_program_line(lineOfLast<Cell, Worker>(last));
  return cells.size() - before;
}

template <class Cell>
std::size_t writePlainCells(const void* vector, std::size_t first, lmx::c_xml_writer& writer) {
  const auto& cells = *static_cast<const std::vector<Cell>*>(vector);
  plain_cell_buffer buffer;
  std::size_t i = first;
  if (cells.size() == first || !writer.start_raw_children()) return 0;
  for (; i < cells.size() && buffer.append(cells[i]); ++i) {
    if (buffer.is_full()) buffer.move_to(writer.raw());
  }
  buffer.move_to(writer.raw());
  return i - first;
}

template <class Cell, class Worker>
constexpr lmx::block_hooks cellBlockHooks() {
  return blockHooks<Cell>(&readPlainCells<Cell, Worker>, &writePlainCells<Cell>);
}

}  // namespace rubrica::ooxml
