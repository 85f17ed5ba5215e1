#include "biff/hyperlink_object.h"

#include <algorithm>

#include "platform/text.h"

namespace rubrica {
namespace {

// 79EAC9E0-BAF9-11CE-8C82-00AA004BA90B and 00000303-0000-0000-C000-000000000046 in file order.
constexpr ClassId kUrlMoniker = {0xE0, 0xC9, 0xEA, 0x79, 0xF9, 0xBA, 0xCE, 0x11,
                                 0x8C, 0x82, 0x00, 0xAA, 0x00, 0x4B, 0xA9, 0x0B};
constexpr ClassId kFileMoniker = {0x03, 0x03, 0, 0, 0, 0, 0, 0, 0xC0, 0, 0, 0, 0, 0, 0, 0x46};

// File moniker: up-levels, the path in 8-bit characters, two version words, 20 reserved bytes, then optionally the path
// in 16-bit characters without a terminator.
constexpr std::uint16_t kEndServer = 0xFFFF, kFileVersion = 0xDEAD, kUnicodeKey = 3;
constexpr std::size_t kFileReserved = 20, kUnicodeHead = sizeof(std::uint32_t) + sizeof(std::uint16_t);
constexpr std::uint16_t kAnsiPage = 1252;
constexpr std::u16string_view kUpLevel = u"..\\";

constexpr char kObjectError[] = "error in reading HyperlinkObj";
constexpr char kMonikerError[] = "error in reading HyperlinkMoniker";

void putText(std::vector<std::byte>& bytes, std::u16string_view text) {
  appendBytes(bytes, std::as_bytes(std::span(text)));
}

std::u16string wideText(std::span<const std::byte> bytes) {
  std::u16string text(bytes.size() / sizeof(char16_t), u'\0');
  std::memcpy(text.data(), bytes.data(), text.size() * sizeof(char16_t));
  return text;
}

std::u16string upToTerminator(std::u16string text) {
  text.resize(std::min(text.find(u'\0'), text.size()));
  return text;
}

HyperlinkString readString(RecordBody& body) {
  std::uint32_t count = 0;
  if (!body.take(count) || count > body.left() / sizeof(char16_t)) throw xlerror(kObjectError);
  return {wideText(body.takeBytes(std::size_t{count} * sizeof(char16_t)))};
}

void appendString(std::vector<std::byte>& bytes, const HyperlinkString& string) {
  appendField(bytes, static_cast<std::uint32_t>(string.units.size()));
  putText(bytes, string.units);
}

std::vector<std::byte> urlBody(std::u16string_view url) {
  std::vector<std::byte> body;
  appendField(body, static_cast<std::uint32_t>((url.size() + 1) * sizeof(char16_t)));
  putText(body, url);
  appendField(body, char16_t{0});
  return body;
}

std::vector<std::byte> fileBody(std::u16string_view path) {
  std::vector<std::byte> body;
  appendField(body, std::uint16_t{0});
  appendField(body, static_cast<std::uint32_t>(path.size() + 1));
  for (const char16_t c : path) body.push_back(static_cast<std::byte>(c < 0x80 ? c : u'?'));
  body.push_back(std::byte{0});
  appendField(body, kEndServer);
  appendField(body, kFileVersion);
  body.resize(body.size() + kFileReserved);
  if (std::all_of(path.begin(), path.end(), [](char16_t c) { return c < 0x80; })) {
    appendField(body, std::uint32_t{0});
    return body;
  }
  const std::size_t size = path.size() * sizeof(char16_t);
  appendField(body, static_cast<std::uint32_t>(kUnicodeHead + size));
  appendField(body, static_cast<std::uint32_t>(size));
  appendField(body, kUnicodeKey);
  putText(body, path);
  return body;
}

// The bytes that a URL or file moniker's body takes; nothing when it is broken.
std::optional<std::size_t> bodySize(const ClassId& classId, RecordBody body) {
  const std::size_t all = body.left();
  std::uint16_t word = 0;
  std::uint32_t length = 0;
  if (classId == kFileMoniker) {
    if (!body.take(word) || !body.take(length) || length > body.left()) return std::nullopt;
    body.takeBytes(length);
    if (body.left() < 2 * sizeof(word) + kFileReserved) return std::nullopt;
    body.takeBytes(2 * sizeof(word) + kFileReserved);
  }
  if (!body.take(length) || length > body.left()) return std::nullopt;
  body.takeBytes(length);
  return all - body.left();
}

std::u16string urlOf(std::span<const std::byte> bytes) {
  return upToTerminator(wideText(bytes.subspan(sizeof(std::uint32_t))));
}

std::u16string pathOf(std::span<const std::byte> bytes) {
  RecordBody body(bytes);
  std::uint16_t upLevels = 0;
  std::uint32_t length = 0;
  body.take(upLevels);
  body.take(length);
  const auto ansi = body.takeBytes(length);
  body.takeBytes(2 * sizeof(std::uint16_t) + kFileReserved + sizeof(std::uint32_t));
  std::u16string path;
  for (; upLevels > 0; --upLevels) path += kUpLevel;
  std::uint32_t unicodeSize = 0;
  std::uint16_t key = 0;
  if (body.take(unicodeSize) && body.take(key)) return path + upToTerminator(wideText(body.takeBytes(unicodeSize)));
  const std::string narrow(reinterpret_cast<const char*>(ansi.data()), ansi.size());
  return path + upToTerminator(platform::utf16FromCodePage(kAnsiPage, narrow));
}

}  // namespace

HyperlinkString HyperlinkString::of(std::u16string_view text) {
  return {std::u16string(text) + u'\0'};
}

std::u16string_view HyperlinkString::text() const {
  const std::u16string_view all = units;
  return all.substr(0, all.empty() ? 0 : std::min(all.find(u'\0'), all.size() - 1));
}

HyperlinkMoniker HyperlinkMoniker::of(std::u16string_view target) {
  const std::size_t hash = target.find(u'#');
  if (hash == target.npos) return {kUrlMoniker, urlBody(target)};
  return {kFileMoniker, fileBody(target.substr(hash + 1))};
}

HyperlinkMoniker HyperlinkMoniker::read(RecordBody& body) {
  HyperlinkMoniker moniker;
  if (!body.take(moniker.classId)) throw xlerror(kMonikerError);
  const bool isKnown = moniker.classId == kUrlMoniker || moniker.classId == kFileMoniker;
  const auto size = isKnown ? bodySize(moniker.classId, body) : std::nullopt;
  const auto bytes = body.takeBytes(size.value_or(body.left()));
  moniker.body.assign(bytes.begin(), bytes.end());
  return moniker;
}

std::u16string HyperlinkMoniker::target() const {
  if ((classId != kUrlMoniker && classId != kFileMoniker) || !bodySize(classId, RecordBody(body))) return {};
  return classId == kUrlMoniker ? urlOf(body) : pathOf(body);
}

HyperlinkObject HyperlinkObject::of(std::u16string_view text) {
  HyperlinkObject object;
  std::u16string_view target = text;
  const std::size_t hash = text.find(u'#');
  const bool isUrl = text.find(u"://") != text.npos;
  if (!isUrl && hash != text.npos) {
    target = text.substr(0, hash);
    object._location = HyperlinkString::of(text.substr(hash + 1));
  } else if (!isUrl && text.find(u'!') != text.npos) {
    target = {};
    object._location = HyperlinkString::of(text);
  }
  if (object._location) object._flags |= kHasLocation;
  object._flags &= ~kMonikerAsText;
  if (target.empty()) {
    object._flags &= ~kHasMoniker;
  } else {
    object._moniker = HyperlinkMoniker::of(target);
  }
  object._displayName = HyperlinkString::of(text);
  return object;
}

HyperlinkObject HyperlinkObject::read(RecordBody& body) {
  HyperlinkObject object;
  if (!body.take(object._streamVersion) || !body.take(object._flags)) throw xlerror(kObjectError);
  const auto has = [&](std::uint32_t flag) { return (object._flags & flag) != 0; };
  if (has(kHasDisplayName)) object._displayName = readString(body);
  if (has(kHasFrameName)) object._frameName = readString(body);
  if (has(kHasMoniker) && has(kMonikerAsText)) object._monikerText = readString(body);
  if (has(kHasMoniker) && !has(kMonikerAsText)) object._moniker = HyperlinkMoniker::read(body);
  // A moniker whose end isn't known has taken all that follows it.
  const bool isUsedUp = object._moniker && body.left() == 0;
  if (has(kHasLocation) && !isUsedUp) object._location = readString(body);
  if (has(kHasGuid) && !isUsedUp && !body.take(object._guid.emplace())) throw xlerror(kObjectError);
  if (has(kHasCreationTime) && !isUsedUp && !body.take(object._creationTime.emplace())) throw xlerror(kObjectError);
  object._rest.assign(body.rest().begin(), body.rest().end());
  body.takeBytes(body.left());
  return object;
}

void HyperlinkObject::append(std::vector<std::byte>& bytes) const {
  appendField(bytes, _streamVersion);
  appendField(bytes, _flags);
  if (_displayName) appendString(bytes, *_displayName);
  if (_frameName) appendString(bytes, *_frameName);
  if (_monikerText) appendString(bytes, *_monikerText);
  if (_moniker) {
    appendField(bytes, _moniker->classId);
    appendBytes(bytes, _moniker->body);
  }
  if (_location) appendString(bytes, *_location);
  if (_guid) appendField(bytes, *_guid);
  if (_creationTime) appendField(bytes, *_creationTime);
  appendBytes(bytes, _rest);
}

std::size_t HyperlinkObject::size() const {
  std::size_t size = sizeof(_streamVersion) + sizeof(_flags) + _rest.size();
  for (const auto& string : {&_displayName, &_frameName, &_monikerText, &_location}) {
    if (*string) size += (*string)->size();
  }
  if (_moniker) size += _moniker->size();
  if (_guid) size += sizeof(*_guid);
  if (_creationTime) size += sizeof(*_creationTime);
  return size;
}

std::u16string HyperlinkObject::target() const {
  if (_monikerText) return std::u16string(_monikerText->text());
  return _moniker ? _moniker->target() : std::u16string();
}

std::u16string HyperlinkObject::text() const {
  std::u16string text = target();
  if (!_location) return text;
  if (hasMoniker()) text += u'#';
  return text.append(location());
}

}  // namespace rubrica
