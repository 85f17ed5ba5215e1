// One value of the substitute host: its kind, its content, and the conversions that an Omnis developer expects. Used
// by the script language and by the services that a component calls. Copies are values: lists and binaries share their
// content until one of the copies is written to; objects are shared by handle and copied by the variable that owns one.
#pragma once

#include <cassert>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "simhost/compact_content.h"
#include "simhost/date.h"
#include "simhost/kind.h"
#include "simhost/text.h"

namespace rubrica::simhost {

class Instance;
class List;

using Bytes = std::vector<std::uint8_t>;

// Codes of a host boolean.
enum BooleanCode : int { booleanUnset = 0, booleanFalse = 1, booleanTrue = 2 };

class Value {
 public:
  // Empty, of no kind: an unset return value.
  Value() = default;
  Value(const Value& other) : _content(other._content) {
    if (isShared()) ++_content.block->uses;
  }
  Value(Value&& other) noexcept : _content(std::exchange(other._content, Content())) {}
  Value& operator=(Value other) noexcept {
    std::swap(_content, other._content);
    return *this;
  }
  ~Value() {
    if (isShared()) release();
  }

  static Value null();
  static Value text(TextView text) {
    Value value;
    value.assignText(text);
    return value;
  }
  static Value utf8(std::string_view text) { return Value::text(textFromUtf8(text)); }
  static Value boolean(bool value) { return booleanCode(value ? booleanTrue : booleanFalse); }
  // Keeps the code as it stands, also one that means neither false nor true.
  static Value booleanCode(std::int64_t code) { return {Kind::Boolean, code}; }
  static Value integer(std::int64_t value) { return {Kind::Integer, value}; }
  static Value number(double number) {
    Value value(Kind::Number);
    value._content.number = number;
    return value;
  }
  static Value constant(std::int64_t value) { return {Kind::Constant, value}; }
  static Value date(const DateTime& date) {
    Value value(Kind::Date);
    value._content.setDate(date);
    return value;
  }
  static Value binary(Bytes bytes);
  static Value list(List list);
  static Value row(List row);
  // `instance` may be empty: an object variable that has none yet.
  static Value object(std::shared_ptr<Instance> instance);
  static Value reference(std::shared_ptr<Instance> instance);
  // What a variable of the kind holds before anything is assigned to it.
  static Value emptyOf(Kind kind, int subtype = 0);

  // Becomes a number, an integer, a boolean or a text. In a list's cell it is made where it stays: one that was put
  // together elsewhere would have to be moved as a whole before its parts have reached memory, which holds up the
  // processor.
  void assignNumber(double number) {
    become(Kind::Number);
    _content.number = number;
  }
  void assignInteger(std::int64_t value) {
    become(Kind::Integer);
    _content.integer = value;
  }
  void assignBooleanCode(std::int64_t code) {
    become(Kind::Boolean);
    _content.integer = code;
  }
  void assignText(TextView text) {
    Content content;
    content.kind = Kind::Character;
    if (!content.takeText(text)) {
      content.block = TextBlock::make(text);
      content.form = Content::kShared;
    }
    if (isShared()) release();
    _content = content;
  }

  Kind kind() const { return _content.kind; }
  bool isNull() const { return _content.isNull; }
  // Null, of no kind, or without content: '', 0, no date, a list without lines.
  bool isClear() const;
  bool isNumeric() const { return kind() == Kind::Number || isWhole(); }
  bool isWhole() const { return kind() == Kind::Integer || kind() == Kind::Constant; }
  bool isList() const { return kind() == Kind::List || kind() == Kind::Row; }
  bool isObject() const { return kind() == Kind::Object || kind() == Kind::ObjectReference; }

  // Conversions: what can't be converted gives '', 0, false, an empty date.
  Text toText() const;
  std::string toUtf8() const { return utf8FromText(toText()); }
  double toNumber() const;
  std::int64_t toInteger() const;
  bool toBoolean() const;
  DateTime toDate() const;
  Bytes toBinary() const;

  // The stored text in characters, and its first `count`; only where kind() is Character.
  std::size_t textLength() const {
    assert(kind() == Kind::Character);
    return isShared() ? textBlock().length : _content.form;
  }
  void copyText(char32_t* buffer, std::size_t count) const {
    assert(kind() == Kind::Character);
    if (isShared()) {
      textBlock().copyTo(buffer, count);
    } else {
      _content.copyText(buffer, count);
    }
  }
  // The stored content as it stands, each only where kind() is the one that it is for.
  std::int64_t storedBoolean() const {
    assert(kind() == Kind::Boolean);
    return _content.integer;
  }
  int dateSubtype() const {
    assert(kind() == Kind::Date);
    return _content.dateSubtype();
  }
  const Bytes& bytes() const;
  // The list or row; only where isList(). mutableList() makes the content this value's own first.
  const List& listRef() const;
  List& mutableList();
  // Empty for an object variable that has none; only where isObject().
  const std::shared_ptr<Instance>& instance() const;

  // The same content as another kind, as an assignment to a variable of that kind converts it. Objects only become
  // objects or references, lists only lists or rows; anything else becomes empty.
  Value as(Kind kind, int subtype = 0) const;

 private:
  explicit Value(Kind kind) { _content.kind = kind; }
  Value(Kind kind, std::int64_t integer) : Value(kind) { _content.integer = integer; }
  // The block becomes the value's.
  Value(Kind kind, SharedBlock* block) : Value(kind) {
    _content.block = block;
    _content.form = Content::kShared;
  }

  bool isShared() const { return _content.form == Content::kShared; }
  void release();
  // Of a kind that stands in a word of the content, which is to be set.
  void become(Kind kind) {
    if (isShared()) release();
    _content.more = 0;
    _content.form = 0;
    _content.kind = kind;
    _content.isNull = false;
  }
  const TextBlock& textBlock() const { return static_cast<const TextBlock&>(*_content.block); }

  Content _content;
};

// Up to 15 significant digits, without an exponent where the number has a plain form.
std::string textFromNumber(double value);
// The number that the text begins with, after spaces; false when it begins with none.
bool numberFromText(TextView text, double& value);

// The order of two values: by number when either is one, by date, else by character codes. 2 when one is null, so that
// no comparison holds.
int compareValues(const Value& a, const Value& b);

}  // namespace rubrica::simhost
