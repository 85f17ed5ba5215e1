// HostList: the logic's view of a host list or row: borrowed from a value, or made new and then owned until it is
// handed to the host in a field. Rows and columns count from 1.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "host/host_field.h"

namespace rubrica::host {

class HostList {
 public:
  struct ColumnType {
    std::int32_t type = kind::character;
    std::int32_t subtype = 0;
    std::int32_t length = 0;
  };

  static HostList make(Word context);
  // An empty view when the field holds no list.
  static HostList borrow(const HostField& field);
  ~HostList();
  HostList(HostList&& other) noexcept;
  HostList& operator=(HostList&&) = delete;

  explicit operator bool() const { return _handle != 0; }
  std::int32_t rowCount() const;
  std::int16_t columnCount() const;
  // The value at a place, wrapped; without a handle outside the list.
  HostField cell(std::int32_t row, std::int32_t column) const {
    if (_handle == 0 || !isColumnNumber(column)) return {};
    return HostField::wrap(services().lists->cell(_handle, row, static_cast<std::int16_t>(column)));
  }
  // The same for writing: what is written stands in the list.
  HostField bindCell(std::int32_t row, std::int32_t column) {
    if (_handle == 0 || !isColumnNumber(column)) return {};
    return HostField::wrap(services().lists->bindCell(_handle, row, static_cast<std::int16_t>(column)));
  }
  std::u32string columnName(std::int32_t column) const;
  ColumnType columnType(std::int32_t column) const;
  bool addColumn(std::u32string_view name, const ColumnType& type);
  // The number of the new row, 0 when the list refuses.
  std::int32_t addRow();
  // Hands an owned list over to the host as the value of a field; this view is empty afterwards.
  void giveTo(HostField& field);

 private:
  HostList(ListHandle handle, bool isOwned) : _handle(handle), _isOwned(isOwned) {}

  // The host numbers columns in 16 bits.
  static bool isColumnNumber(std::int32_t column) {
    return column >= 0 && column <= std::numeric_limits<std::int16_t>::max();
  }

  ListHandle _handle = 0;
  bool _isOwned = false;
};

}  // namespace rubrica::host
