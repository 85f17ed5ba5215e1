#include "simhost/type_parser.h"

#include <cmath>

#include "simhost/instance.h"

namespace rubrica::simhost {

namespace {

int optionalLength(ExpressionParser& words) {
  if (words.peek().kind != Token::Kind::Number) return 0;
  return static_cast<int>(std::min<std::int64_t>(words.next().value.toInteger(), maxTextLength));
}

void parseNumber(ExpressionParser& words, TypeSpec& type) {
  constexpr std::int64_t mostPlaces = 14;
  type.kind = Kind::Number;
  if (words.peek().kind == Token::Kind::Number) {
    const std::int64_t places = words.next().value.toInteger();
    if (places > mostPlaces) words.fail("A Number has at most 14 decimal places");
    type.places = static_cast<int>(places);
    words.expect("dp");
  } else if (words.take("floating")) {
    words.expect("dp");
  }
}

void parseObject(ExpressionParser& words, TypeSpec& type, const ObjectSource* source) {
  type.kind = words.take("reference") ? Kind::ObjectReference : Kind::Object;
  std::string name = words.takeWord();
  if (name.empty()) return;
  if (words.take(".")) {
    const std::string library = name;
    name = words.takeWord();
    if (source == nullptr || !sameName(library, source->libraryName())) {
      words.fail("Unknown library '" + library + "'");
    }
  }
  if (source == nullptr || !source->hasClass(name)) words.fail("Unknown object class '" + name + "'");
  type.className = name;
}

}  // namespace

TypeSpec parseType(ExpressionParser& words, const ObjectSource* source) {
  TypeSpec type;
  const bool bracketed = words.take("(");
  const std::string word = words.takeWord();
  const auto is = [&word](std::string_view name) { return sameName(word, name); };
  if (is("Character") || is("National")) {
    type.kind = Kind::Character;
    type.length = optionalLength(words);
  } else if (is("Boolean")) {
    type.kind = Kind::Boolean;
  } else if (is("Number")) {
    parseNumber(words, type);
  } else if (is("Integer")) {
    type.kind = Kind::Integer;
  } else if ((is("Long") || is("Short")) && words.take("integer")) {
    type.kind = Kind::Integer;
  } else if (is("Date")) {
    type.kind = Kind::Date;
    type.subtype = words.take("time") ? dateAndTime : shortDate;
  } else if (is("Datetime")) {
    type.kind = Kind::Date;
    type.subtype = dateAndTime;
  } else if (is("Time") || (is("Short") && words.take("time"))) {
    type.kind = Kind::Date;
    type.subtype = shortTime;
  } else if (is("Short") && words.take("date")) {
    type.kind = Kind::Date;
    type.subtype = shortDate;
  } else if (is("Binary")) {
    type.kind = Kind::Binary;
  } else if (is("List")) {
    type.kind = Kind::List;
  } else if (is("Row")) {
    type.kind = Kind::Row;
  } else if (is("Object")) {
    parseObject(words, type, source);
  } else if (is("Field") && words.take("reference")) {
    type.fieldReference = true;
  } else {
    words.fail(word.empty() ? "A declaration needs a type" : "Unknown type '" + word + "'");
  }
  if (bracketed) words.expect(")");
  return type;
}

Value emptyOf(const TypeSpec& type) {
  return Value::emptyOf(type.kind, type.subtype);
}

Value convertedTo(const Value& value, const TypeSpec& type) {
  Value result = value.as(type.kind, type.subtype);
  if (type.kind == Kind::Number && type.places >= 0 && !result.isNull()) {
    const double factor = std::pow(10.0, type.places);
    const double scaled = result.toNumber() * factor;
    if (std::isfinite(scaled)) result = Value::number(std::round(scaled) / factor);
  }
  if (type.kind == Kind::Character && type.length > 0 && result.textLength() > static_cast<std::size_t>(type.length)) {
    result = Value::text(result.toText().substr(0, static_cast<std::size_t>(type.length)));
  }
  return result;
}

}  // namespace rubrica::simhost
