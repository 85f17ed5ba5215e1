// Members of an object by the offsets of its descriptor. Internal to the driver.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "lmx/descriptor.h"

namespace rubrica::lmx {

template <class T>
T& member(void* fields, std::uint32_t offset) {
  return *reinterpret_cast<T*>(static_cast<char*>(fields) + offset);
}
template <class T>
const T& member(const void* fields, std::uint32_t offset) {
  return *reinterpret_cast<const T*>(static_cast<const char*>(fields) + offset);
}

inline bool is_set(const class_descriptor& type, const void* fields, std::uint16_t bit) {
  return is_present(&member<std::uint32_t>(fields, type.present_offset), bit);
}
inline void set(const class_descriptor& type, void* fields, std::uint16_t bit) {
  set_present(&member<std::uint32_t>(fields, type.present_offset), bit);
}

inline const particle* rows_begin(const class_descriptor& type) {
  return type.particles;
}
inline const particle* rows_end(const class_descriptor& type) {
  return type.particles + type.particle_count;
}

// The row after `row` and all that is inside it.
inline const particle* next_row(const particle* row) {
  return row + 1 + row->span;
}

// How reports name an attribute. Appended, since g++ 12 takes "@" + std::string for an overlapping copy.
inline std::string attribute_item(std::string_view name) {
  return std::string("@").append(name);
}

// Whether an object holds anything for this row.
bool has_content(const class_descriptor& type, const void* fields, const particle& row);

// Whether a document may have nothing for this row.
bool may_be_empty(const particle& row);
bool may_all_be_empty(const particle* begin, const particle* end);

}  // namespace rubrica::lmx
