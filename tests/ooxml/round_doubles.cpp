#include "tests/ooxml/round_doubles.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "source/ooxml/sharedStringTable.h"
#include "source/ooxml/sheet.h"
#include "source/ooxml/strict.h"

namespace rubrica::ooxml_tests {

namespace {

using lmx::particle_kind;

double rounded(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.14g", value);
  return std::strtod(text, nullptr);
}

void roundAt(const lmx::simple_type& type, std::byte* at) {
  if (type.kind != lmx::value_kind::float64) return;
  auto& value = *reinterpret_cast<double*>(at);
  value = rounded(value);
}

void roundIn(lmx::owned& child) {
  if (child) roundDoubles(*child.get());
}

// The inline string is all that has doubles inside a packed cell.
template <class Cell>
bool roundCell(lmx::object& object) {
  auto* cell = dynamic_cast<Cell*>(&object);
  if (cell && cell->find_is()) roundDoubles(*cell->find_is());
  return cell != nullptr;
}

// Only the described form has any.
bool roundString(lmx::object& object) {
  auto* item = dynamic_cast<sharedStringTable::c_CT_Rst*>(&object);
  if (item && item->find_full()) roundDoubles(item->get_full());
  return item != nullptr;
}

void roundParticle(const lmx::particle& row, std::byte* at) {
  switch (row.kind) {
    case particle_kind::value:
      return roundAt(*row.type, at);
    case particle_kind::child:
    case particle_kind::group:
      return roundIn(*reinterpret_cast<lmx::owned*>(at));
    case particle_kind::children:
    case particle_kind::groups:
      for (lmx::owned& child : *reinterpret_cast<std::vector<lmx::owned>*>(at)) roundIn(child);
      return;
    case particle_kind::block:
      for (std::size_t i = 0; i < row.target->block->size(at); ++i) {
        roundDoubles(const_cast<lmx::object&>(row.target->block->at(at, i)));
      }
      return;
    default:
      return;
  }
}

}  // namespace

void roundDoubles(lmx::object& object) {
  if (roundCell<sheet::c_CT_Cell>(object) || roundCell<strict::c_CT_Cell>(object) || roundString(object)) return;
  const lmx::class_descriptor& type = object.descriptor();
  auto* base = static_cast<std::byte*>(object.field_base());
  for (std::uint16_t i = 0; i < type.attribute_count; ++i) {
    roundAt(*type.attributes[i].type, base + type.attributes[i].offset);
  }
  for (std::uint16_t i = 0; i < type.particle_count; ++i) {
    roundParticle(type.particles[i], base + type.particles[i].offset);
  }
}

}  // namespace rubrica::ooxml_tests
