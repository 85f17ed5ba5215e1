#include "host/host_list.h"

#include <utility>

namespace rubrica::host {

HostList HostList::make(Word context) {
  return HostList(services().lists->create(context), true);
}

HostList HostList::borrow(const HostField& field) {
  return HostList(field ? services().lists->fromField(field.handle()) : 0, false);
}

HostList::~HostList() {
  if (_isOwned && _handle != 0) services().lists->destroy(_handle);
}

HostList::HostList(HostList&& other) noexcept
    : _handle(std::exchange(other._handle, 0)), _isOwned(std::exchange(other._isOwned, false)) {}

std::int32_t HostList::rowCount() const {
  return _handle != 0 ? services().lists->rowCount(_handle) : 0;
}
std::int16_t HostList::columnCount() const {
  return _handle != 0 ? services().lists->columnCount(_handle) : std::int16_t{0};
}

std::u32string HostList::columnName(std::int32_t column) const {
  if (_handle == 0 || !isColumnNumber(column)) return {};
  char32_t buffer[256];
  const auto at = static_cast<std::int16_t>(column);
  const std::size_t length = services().lists->columnName(_handle, at, buffer, std::size(buffer));
  if (length <= std::size(buffer)) return {buffer, length};
  std::u32string name(length, U'\0');
  services().lists->columnName(_handle, at, name.data(), name.size());
  return name;
}

HostList::ColumnType HostList::columnType(std::int32_t column) const {
  ColumnType result;
  if (_handle != 0 && isColumnNumber(column)) {
    services().lists->columnType(_handle, static_cast<std::int16_t>(column), &result.type, &result.subtype,
                                 &result.length);
  }
  return result;
}

bool HostList::addColumn(std::u32string_view name, const ColumnType& type) {
  return _handle != 0 &&
         services().lists->addColumn(_handle, type.type, type.subtype, type.length, name.data(), name.size()) != 0;
}

std::int32_t HostList::addRow() {
  return _handle != 0 ? services().lists->addRow(_handle) : 0;
}

void HostList::giveTo(HostField& field) {
  if (!_isOwned || _handle == 0 || !field) return;
  services().values->writeList(field.handle(), std::exchange(_handle, 0));
  _isOwned = false;
}

}  // namespace rubrica::host
