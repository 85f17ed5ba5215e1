// How the driver handles a packed cell: the hooks of its class. What is not done by the million goes through the
// described form of the type.
#pragma once

#include <string>
#include <string_view>

#include "lmx/driver.h"

namespace rubrica::ooxml {

template <class Cell, class Worker>
lmx::elmx_error unmarshalCell(lmx::object& self, lmx::c_xml_reader& reader, std::string_view element_name) {
  Worker worker;
  const lmx::elmx_error error = lmx::unmarshal(worker, reader, element_name);
  if (error == lmx::ELMX_OK) static_cast<Cell&>(self).pack(worker);
  return error;
}

template <class Cell, class Worker>
lmx::elmx_error marshalCell(const lmx::object& self, lmx::c_xml_writer& writer, const char* element_name) {
  Worker worker;
  static_cast<const Cell&>(self).unpack(worker);
  return lmx::marshal(worker, writer, element_name);
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

}  // namespace rubrica::ooxml
