#include "host/host_field.h"

#include <algorithm>
#include <utility>

#include "host/text.h"

namespace rubrica::host {
namespace {

// Texts up to this length, in characters, cross by way of the stack.
constexpr std::size_t kShortText = 256;

}  // namespace

HostField HostField::make(Word context) {
  return HostField(services().values->create(context), true);
}

HostField::HostField(HostField&& other) noexcept
    : _handle(std::exchange(other._handle, 0)), _isOwned(std::exchange(other._isOwned, false)) {}

HostField& HostField::operator=(HostField&& other) noexcept {
  std::swap(_handle, other._handle);
  std::swap(_isOwned, other._isOwned);
  return *this;
}

FieldHandle HostField::release() {
  _isOwned = false;
  return std::exchange(_handle, 0);
}

std::int32_t HostField::subtype() const {
  std::int32_t subtype = 0;
  if (_handle != 0) services().values->type(_handle, &subtype);
  return subtype;
}

bool HostField::boolean() const {
  return _handle != 0 && services().values->readBoolean(_handle, nullptr) == kHostTrue;
}

bool HostField::readsAsBoolean() const {
  std::int32_t succeeded = 0;
  if (_handle != 0) services().values->readBoolean(_handle, &succeeded);
  return succeeded != 0;
}

std::optional<bool> HostField::optionalBoolean() const {
  const std::int32_t type = this->type();
  if (type == kind::boolean) return boolean();
  if (type != kind::integer && type != kind::constant) return std::nullopt;
  const std::int32_t value = integer();
  if (value != 0 && value != 1) return std::nullopt;
  return value == 1;
}

std::u32string HostField::utf32() const {
  if (_handle == 0) return {};
  char32_t buffer[kShortText];
  const std::size_t length = services().values->readText(_handle, buffer, kShortText);
  if (length <= kShortText) return {buffer, length};
  std::u32string text(length, U'\0');
  services().values->readText(_handle, text.data(), text.size());
  return text;
}

std::u16string HostField::text() const {
  return utf16FromUtf32(utf32());
}

const char16_t* HostField::text(std::vector<char16_t>& room) const {
  if (_handle == 0) return u"";
  char32_t buffer[kShortText];
  const std::size_t length = services().values->readText(_handle, buffer, kShortText);
  room.resize(std::max(room.size(), kShortText + 1));
  if (length <= kShortText && copyPlain(std::u32string_view(buffer, length), room.data())) {
    room[length] = u'\0';
    return room.data();
  }
  const std::u16string whole = text();
  room.assign(whole.c_str(), whole.c_str() + whole.size() + 1);
  return room.data();
}

std::string HostField::utf8() const {
  return utf8FromUtf32(utf32());
}

DateParts HostField::date() const {
  DateParts parts{};
  if (_handle != 0) services().values->readDate(_handle, &parts);
  return parts;
}

std::vector<unsigned char> HostField::binary() const {
  if (_handle == 0) return {};
  std::vector<unsigned char> bytes(services().values->readBinary(_handle, nullptr, 0));
  if (!bytes.empty()) services().values->readBinary(_handle, bytes.data(), bytes.size());
  return bytes;
}

bool HostField::isListOrRow() const {
  const std::int32_t type = this->type();
  return type == kind::list || type == kind::row;
}

void HostField::setBoolean(bool value) {
  setRawBoolean(value ? kHostTrue : kHostFalse);
}

void HostField::setRawBoolean(std::int32_t code) {
  if (_handle != 0) services().values->writeBoolean(_handle, code);
}

void HostField::setText(std::u16string_view text) {
  char32_t buffer[kShortText];
  if (text.size() <= kShortText) {
    setUtf32({buffer, utf32FromUtf16(text, buffer)});
  } else {
    setUtf32(utf32FromUtf16(text));
  }
}

void HostField::setUtf8(std::string_view text) {
  setUtf32(utf32FromUtf8(text));
}

void HostField::setUtf32(std::u32string_view text) {
  if (_handle != 0) services().values->writeText(_handle, text.data(), text.size());
}

void HostField::setDate(const DateParts& parts, std::int32_t subtype) {
  if (_handle != 0) services().values->writeDate(_handle, &parts, subtype);
}

void HostField::setBinary(const void* data, std::size_t size) {
  if (_handle != 0) services().values->writeBinary(_handle, data, size);
}

void HostField::setObject(ObjectHandle object) {
  if (_handle != 0) services().values->writeObject(_handle, object);
}

void HostField::setReference(ObjectHandle object) {
  if (_handle != 0) services().values->writeReference(_handle, object);
}

void HostField::setConstant(std::u32string_view name) {
  if (_handle != 0) services().values->writeConstant(_handle, name.data(), name.size());
}

}  // namespace rubrica::host
