#include "simhost/value.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "simhost/instance.h"
#include "simhost/list.h"

namespace rubrica::simhost {

namespace {

constexpr double int64Limit = 9223372036854775808.0;

std::int64_t integerFrom(double value) {
  if (std::isnan(value)) return 0;
  if (value >= int64Limit) return std::numeric_limits<std::int64_t>::max();
  if (value < -int64Limit) return std::numeric_limits<std::int64_t>::min();
  return static_cast<std::int64_t>(value);
}

struct BytesBlock : SharedBlock {
  explicit BytesBlock(Bytes given) : bytes(std::move(given)) {}

  const Bytes bytes;
};

struct ListBlock : SharedBlock {
  explicit ListBlock(List given) : list(std::move(given)) {}

  List list;
};

struct InstanceBlock : SharedBlock {
  explicit InstanceBlock(std::shared_ptr<Instance> given) : instance(std::move(given)) {}

  const std::shared_ptr<Instance> instance;
};

bool booleanFromText(TextView text) {
  const std::string word = nameKey(utf8FromText(trimmed(text)));
  double number = 0;
  return word == "yes" || word == "y" || word == "true" || word == "ktrue" ||
         (numberFromText(text, number) && number != 0);
}

}  // namespace

const char* kindName(Kind kind) {
  switch (kind) {
    case Kind::None:
      return "Empty";
    case Kind::Character:
      return "Character";
    case Kind::Boolean:
      return "Boolean";
    case Kind::Date:
      return "Date";
    case Kind::Number:
      return "Number";
    case Kind::Integer:
      return "Integer";
    case Kind::Binary:
      return "Binary";
    case Kind::List:
      return "List";
    case Kind::Constant:
      return "Constant";
    case Kind::Row:
      return "Row";
    case Kind::Object:
      return "Object";
    case Kind::ObjectReference:
      return "Object reference";
  }
  return "";
}

Value Value::null() {
  Value value;
  value._content.isNull = true;
  return value;
}
Value Value::binary(Bytes bytes) {
  return {Kind::Binary, new BytesBlock(std::move(bytes))};
}
Value Value::list(List list) {
  return {Kind::List, new ListBlock(std::move(list))};
}
Value Value::object(std::shared_ptr<Instance> instance) {
  return {Kind::Object, new InstanceBlock(std::move(instance))};
}
Value Value::reference(std::shared_ptr<Instance> instance) {
  return {Kind::ObjectReference, new InstanceBlock(std::move(instance))};
}

Value Value::row(List row) {
  if (row.lineCount() != 1) row.setLineCount(1);
  row.setCurrentLine(1);
  return {Kind::Row, new ListBlock(std::move(row))};
}

void Value::release() {
  if (--_content.block->uses == 0) delete _content.block;
}

Value Value::emptyOf(Kind kind, int subtype) {
  switch (kind) {
    case Kind::None:
      return {};
    case Kind::Character:
      return text({});
    case Kind::Boolean:
      return booleanCode(booleanUnset);
    case Kind::Date: {
      DateTime date;
      date.subtype = subtype;
      return Value::date(date);
    }
    case Kind::Number:
      return number(0);
    case Kind::Integer:
      return integer(0);
    case Kind::Constant:
      return constant(0);
    case Kind::Binary:
      return binary({});
    case Kind::List:
      return list({});
    case Kind::Row:
      return row({});
    case Kind::Object:
      return object(nullptr);
    case Kind::ObjectReference:
      return reference(nullptr);
  }
  return {};
}

bool Value::isClear() const {
  if (isNull()) return true;
  switch (this->kind()) {
    case Kind::None:
      return true;
    case Kind::Character:
      return textLength() == 0;
    case Kind::Boolean:
      return storedBoolean() == booleanUnset;
    case Kind::Date:
      return toDate().empty();
    case Kind::Binary:
      return bytes().empty();
    case Kind::List:
      return listRef().lineCount() == 0;
    case Kind::Row:
      return listRef().columnCount() == 0;
    case Kind::Object:
    case Kind::ObjectReference:
      return instance() == nullptr;
    default:
      return toNumber() == 0;
  }
}

const Bytes& Value::bytes() const {
  assert(kind() == Kind::Binary);
  return static_cast<const BytesBlock&>(*_content.block).bytes;
}
const List& Value::listRef() const {
  assert(isList());
  return static_cast<const ListBlock&>(*_content.block).list;
}
const std::shared_ptr<Instance>& Value::instance() const {
  assert(isObject());
  return static_cast<const InstanceBlock&>(*_content.block).instance;
}

List& Value::mutableList() {
  assert(isList());
  if (_content.block->uses > 1) *this = Value(kind(), new ListBlock(listRef()));
  return static_cast<ListBlock&>(*_content.block).list;
}

Text Value::toText() const {
  if (isNull()) return {};
  switch (this->kind()) {
    case Kind::Character: {
      Text text(textLength(), U'\0');
      copyText(text.data(), text.size());
      return text;
    }
    case Kind::Boolean: {
      const std::int64_t code = storedBoolean();
      return code == booleanTrue ? U"YES" : code == booleanFalse ? U"NO" : U"";
    }
    case Kind::Date:
      return textFromUtf8(textFromDate(toDate()));
    case Kind::Number:
      return textFromUtf8(textFromNumber(toNumber()));
    case Kind::Integer:
    case Kind::Constant:
      return textFromUtf8(std::to_string(toInteger()));
    case Kind::Binary:
      return textFromUtf8({reinterpret_cast<const char*>(bytes().data()), bytes().size()});
    default:
      return {};
  }
}

double Value::toNumber() const {
  switch (kind()) {
    case Kind::Number:
      return _content.number;
    case Kind::Integer:
    case Kind::Constant:
      return static_cast<double>(_content.integer);
    case Kind::Boolean:
      return toBoolean() ? 1 : 0;
    case Kind::Character: {
      double value = 0;
      numberFromText(toText(), value);
      return value;
    }
    default:
      return 0;
  }
}

std::int64_t Value::toInteger() const {
  return isWhole() ? _content.integer : integerFrom(toNumber());
}

bool Value::toBoolean() const {
  if (isNull()) return false;
  if (kind() == Kind::Boolean) return storedBoolean() == booleanTrue;
  if (kind() == Kind::Character) return booleanFromText(toText());
  return toNumber() != 0;
}

DateTime Value::toDate() const {
  if (kind() == Kind::Date) return _content.date();
  if (kind() == Kind::Character) {
    if (const auto date = dateFromText(toText())) return *date;
  }
  return {};
}

Bytes Value::toBinary() const {
  if (kind() == Kind::Binary) return bytes();
  const std::string text = toUtf8();
  return Bytes(text.begin(), text.end());
}

Value Value::as(Kind kind, int subtype) const {
  if (isNull()) {
    Value value = emptyOf(kind, subtype);
    value._content.isNull = true;
    return value;
  }
  const Kind own = this->kind();
  if (own == Kind::None) return emptyOf(kind, subtype);
  switch (kind) {
    case Kind::None:
      return *this;
    case Kind::Character:
      return own == kind ? *this : text(toText());
    case Kind::Boolean:
      if (own == kind || isClear()) return own == kind ? *this : emptyOf(kind);
      return boolean(toBoolean());
    case Kind::Date:
      return date(dateAsSubtype(toDate(), subtype));
    case Kind::Number:
      return number(toNumber());
    case Kind::Integer:
      return integer(toInteger());
    case Kind::Constant:
      return constant(toInteger());
    case Kind::Binary:
      return own == kind ? *this : binary(toBinary());
    case Kind::List:
      if (!isList()) return emptyOf(kind);
      {
        Value list = *this;
        list._content.kind = kind;
        return list;
      }
    case Kind::Row: {
      if (!isList()) return emptyOf(kind);
      if (own == kind) return *this;
      const List& source = listRef();
      if (source.lineCount() == 0) return row(source);
      return row(source.rowOf(source.currentLine() == 0 ? 1 : source.currentLine()));
    }
    case Kind::Object:
    case Kind::ObjectReference:
      return {kind, new InstanceBlock(isObject() ? instance() : nullptr)};
  }
  return {};
}

std::string textFromNumber(double value) {
  constexpr int significantDigits = 15;
  constexpr int mostZerosBefore = 9;
  constexpr int mostDigitsBefore = 21;
  if (value == 0) return "0";
  std::array<char, 64> buffer{};
  char* const last = buffer.data() + buffer.size();
  const char* end = std::to_chars(buffer.data(), last, value, std::chars_format::scientific, significantDigits - 1).ptr;
  const std::string_view shown(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
  const std::size_t e = shown.find('e');
  int exponent = 0;
  const char* exponentText = shown.data() + e + (e + 1 < shown.size() && shown[e + 1] == '+' ? 2 : 1);
  if (e == std::string_view::npos || std::from_chars(exponentText, end, exponent).ec != std::errc()) {
    return std::string(shown);  // infinity, or not a number
  }
  const std::string sign = value < 0 ? "-" : "";
  std::string digits;
  for (const char c : shown.substr(0, e)) {
    if (c >= '0' && c <= '9') digits.push_back(c);
  }
  digits.erase(digits.find_last_not_of('0') + 1);
  if (exponent < -mostZerosBefore || exponent >= mostDigitsBefore) {
    if (digits.size() > 1) digits.insert(1, ".");
    return sign + digits + "e" + (exponent < 0 ? "-" : "+") + std::to_string(std::abs(exponent));
  }
  if (exponent < 0) return sign + "0." + std::string(static_cast<std::size_t>(-exponent) - 1, '0') + digits;
  const std::size_t whole = static_cast<std::size_t>(exponent) + 1;
  if (digits.size() <= whole) return sign + digits + std::string(whole - digits.size(), '0');
  return sign + digits.insert(whole, ".");
}

bool numberFromText(TextView text, double& value) {
  constexpr std::size_t longestNumber = 400;
  text = trimmed(text);
  std::string digits;
  for (const char32_t c : text.substr(0, longestNumber)) {
    if (c >= 0x80) break;
    digits.push_back(static_cast<char>(c));
  }
  const char* first = digits.data();
  const char* last = first + digits.size();
  if (first != last && *first == '+') ++first;
  if (first == last || !(*first == '-' || *first == '.' || (*first >= '0' && *first <= '9'))) return false;
  double parsed = 0;
  const auto result = std::from_chars(first, last, parsed);
  if (result.ec != std::errc() || !std::isfinite(parsed)) return false;
  value = parsed;
  return true;
}

int compareValues(const Value& a, const Value& b) {
  if (a.isNull() || b.isNull()) return 2;
  const auto order = [](const auto& x, const auto& y) { return x < y ? -1 : (y < x ? 1 : 0); };
  if (a.kind() == Kind::Date || b.kind() == Kind::Date) {
    const DateTime x = a.toDate();
    const DateTime y = b.toDate();
    if (x.empty() || y.empty()) return order(!x.empty(), !y.empty());
    return order(hundredthsOf(x), hundredthsOf(y));
  }
  if (a.kind() == Kind::Boolean || b.kind() == Kind::Boolean) return order(a.toBoolean(), b.toBoolean());
  if (a.isWhole() && b.isWhole()) return order(a.toInteger(), b.toInteger());
  if (a.isNumeric() || b.isNumeric()) return order(a.toNumber(), b.toNumber());
  if (a.isObject() && b.isObject()) return order(a.instance().get(), b.instance().get());
  return order(a.toText(), b.toText());
}

}  // namespace rubrica::simhost
