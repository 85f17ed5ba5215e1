// HostField: the logic's view of one host value: a parameter, a list cell, or a value that the component made. A made
// value is owned and freed here unless it is released into a call; a wrapped one stays the host's. A field without a
// handle reads as nothing and swallows what is written.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/host_services.h"
#include "host/omnis_abi.h"

namespace rubrica::host {

class HostField {
 public:
  HostField() = default;
  static HostField make(Word context);
  static HostField wrap(FieldHandle handle) { return HostField(handle, false); }
  ~HostField() {
    if (_isOwned && _handle != 0) services().values->destroy(_handle);
  }
  HostField(HostField&& other) noexcept;
  HostField& operator=(HostField&& other) noexcept;
  HostField(const HostField&) = delete;
  HostField& operator=(const HostField&) = delete;

  explicit operator bool() const { return _handle != 0; }
  FieldHandle handle() const { return _handle; }
  // Gives up ownership.
  FieldHandle release();

  // kind::none for a field without a handle.
  std::int32_t type() const { return _handle != 0 ? services().values->type(_handle, nullptr) : kind::none; }
  std::int32_t subtype() const;
  std::int32_t integer() const { return _handle != 0 ? services().values->readInteger(_handle) : 0; }
  double number() const { return _handle != 0 ? services().values->readNumber(_handle) : 0.0; }
  // The host's 2 is true, everything else false.
  bool boolean() const;
  // Whether the host can read the value as a boolean.
  bool readsAsBoolean() const;
  // A boolean parameter that may be left out: a boolean, or a whole number or constant of 0 or 1. Nothing otherwise.
  std::optional<bool> optionalBoolean() const;
  std::u32string utf32() const;
  std::u16string text() const;
  // The same, zero-terminated, in room that the caller keeps for the next text.
  const char16_t* text(std::vector<char16_t>& room) const;
  std::string utf8() const;
  DateParts date() const;
  std::vector<unsigned char> binary() const;
  bool isListOrRow() const;

  void setInteger(std::int32_t value) {
    if (_handle != 0) services().values->writeInteger(_handle, value);
  }
  void setNumber(double value) {
    if (_handle != 0) services().values->writeNumber(_handle, value, kFloatingPlaces);
  }
  void setBoolean(bool value);
  // The host's boolean code as it stands.
  void setRawBoolean(std::int32_t code);
  void setText(std::u16string_view text);
  void setUtf8(std::string_view text);
  void setUtf32(std::u32string_view text);
  void setDate(const DateParts& parts, std::int32_t subtype);
  void setBinary(const void* data, std::size_t size);
  void setObject(ObjectHandle object);
  void setReference(ObjectHandle object);
  // A constant by its full name.
  void setConstant(std::u32string_view name);

 private:
  HostField(FieldHandle handle, bool isOwned) : _handle(handle), _isOwned(isOwned) {}

  FieldHandle _handle = 0;
  bool _isOwned = false;
};

}  // namespace rubrica::host
