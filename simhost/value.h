// One value of the substitute host: its kind, its content, and the conversions that an Omnis developer expects. Used
// by the script language and by the services that a component calls. Copies are values: lists and binaries share their
// content until one of the copies is written to; objects are shared by handle and copied by the variable that owns one.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "simhost/compact_content.h"
#include "simhost/date.h"
#include "simhost/text.h"

namespace rubrica::simhost {

class Instance;
class List;

using Bytes = std::vector<std::uint8_t>;

// The codes that values, parameters and table rows carry across to the component.
enum class Kind : std::uint8_t {
  None = 20,
  Character = 21,
  Boolean = 22,
  Date = 23,
  Number = 25,
  Integer = 26,
  Binary = 28,
  List = 29,
  Constant = 35,
  Row = 36,
  Object = 37,
  ObjectReference = 38,
};

const char* kindName(Kind kind);

// Codes of a host boolean.
enum BooleanCode : int { booleanUnset = 0, booleanFalse = 1, booleanTrue = 2 };

class Value {
 public:
  // Empty, of no kind: an unset return value.
  Value() = default;

  static Value null();
  static Value text(TextView text);
  static Value utf8(std::string_view text) { return Value::text(textFromUtf8(text)); }
  static Value boolean(bool value) { return booleanCode(value ? booleanTrue : booleanFalse); }
  // Keeps the code as it stands, also one that means neither false nor true.
  static Value booleanCode(std::int64_t code);
  static Value integer(std::int64_t value);
  static Value number(double value);
  static Value constant(std::int64_t value);
  static Value date(const DateTime& date);
  static Value binary(Bytes bytes);
  static Value list(List list);
  static Value row(List row);
  // `instance` may be empty: an object variable that has none yet.
  static Value object(std::shared_ptr<Instance> instance);
  static Value reference(std::shared_ptr<Instance> instance);
  // What a variable of the kind holds before anything is assigned to it.
  static Value emptyOf(Kind kind, int subtype = 0);

  Kind kind() const { return _kind; }
  bool isNull() const { return _null; }
  // Null, of no kind, or without content: '', 0, no date, a list without lines.
  bool isClear() const;
  bool isNumeric() const { return _kind == Kind::Number || isWhole(); }
  bool isWhole() const { return _kind == Kind::Integer || _kind == Kind::Constant; }
  bool isList() const { return _kind == Kind::List || _kind == Kind::Row; }
  bool isObject() const { return _kind == Kind::Object || _kind == Kind::ObjectReference; }

  // Conversions: what can't be converted gives '', 0, false, an empty date.
  Text toText() const;
  std::string toUtf8() const { return utf8FromText(toText()); }
  double toNumber() const;
  std::int64_t toInteger() const;
  bool toBoolean() const;
  DateTime toDate() const;
  Bytes toBinary() const;

  // The stored text in characters, and its first `count`; only where kind() is Character.
  std::size_t textLength() const { return std::get<SharedText>(_content).size(); }
  void copyText(char32_t* buffer, std::size_t count) const { std::get<SharedText>(_content).copyTo(buffer, count); }
  std::int64_t storedBoolean() const;
  const std::shared_ptr<const Bytes>& bytes() const;
  // The list or row; only where isList(). mutableList() makes the content this value's own first.
  const List& listRef() const;
  List& mutableList();
  const std::shared_ptr<Instance>& instance() const;

  // The same content as another kind, as an assignment to a variable of that kind converts it. Objects only become
  // objects or references, lists only lists or rows; anything else becomes empty.
  Value as(Kind kind, int subtype = 0) const;

 private:
  using Content = std::variant<std::monostate, SharedText, std::int64_t, double, CompactDate,
                               std::shared_ptr<const Bytes>, std::shared_ptr<List>, std::shared_ptr<Instance>>;

  Value(Kind kind, Content content) : _content(std::move(content)), _kind(kind) {}

  // Kind and null stand in what would be the content's padding: lists hold values by the million.
  [[no_unique_address]] Content _content;
  Kind _kind = Kind::None;
  bool _null = false;
};

// Up to 15 significant digits, without an exponent where the number has a plain form.
std::string textFromNumber(double value);
// The number that the text begins with, after spaces; false when it begins with none.
bool numberFromText(TextView text, double& value);

// The order of two values: by number when either is one, by date, else by character codes. 2 when one is null, so that
// no comparison holds.
int compareValues(const Value& a, const Value& b);

}  // namespace rubrica::simhost
