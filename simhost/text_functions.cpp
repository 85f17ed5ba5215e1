#include <algorithm>
#include <array>

#include "simhost/functions.h"
#include "simhost/jst.h"
#include "simhost/script_error.h"

namespace rubrica::simhost {

namespace {

using Args = std::span<const Value>;

Value checkedText(TextView text) {
  if (text.size() > maxTextLength) throw ScriptError("The text is longer than a text may be");
  return Value::text(text);
}

// A count or position from a script, with negative ones as 0.
std::size_t count(const Value& value) {
  return static_cast<std::size_t>(std::clamp<std::int64_t>(value.toInteger(), 0, maxTextLength));
}

Value con(Args arguments) {
  Text text;
  for (const Value& value : arguments) {
    text += value.toText();
    if (text.size() > maxTextLength) throw ScriptError("The text is longer than a text may be");
  }
  return Value::text(std::move(text));
}

Value len(Args a) {
  return Value::integer(static_cast<std::int64_t>(a[0].toText().size()));
}

Value mid(Args a) {
  const Text text = a[0].toText();
  const std::size_t start = std::max<std::size_t>(count(a[1]), 1) - 1;
  if (start >= text.size()) return Value::text(Text());
  return Value::text(text.substr(start, a.size() > 2 ? count(a[2]) : Text::npos));
}

Value left(Args a) {
  return Value::text(a[0].toText().substr(0, count(a[1])));
}

Value right(Args a) {
  const Text text = a[0].toText();
  return Value::text(text.substr(text.size() - std::min(count(a[1]), text.size())));
}

Value pos(Args a) {
  const std::size_t found = a[1].toText().find(a[0].toText());
  return Value::integer(found == Text::npos ? 0 : static_cast<std::int64_t>(found) + 1);
}

Value upp(Args a) {
  return Value::text(upperCase(a[0].toText()));
}
Value low(Args a) {
  return Value::text(lowerCase(a[0].toText()));
}
Value cap(Args a) {
  return Value::text(justified(Value::text(a[0].toText()), U"C"));
}

Value trim(Args a) {
  const Text text = a[0].toText();
  const bool leading = a.size() < 2 || a[1].toBoolean();
  const bool trailing = a.size() < 3 || a[2].toBoolean();
  const Text given = a.size() > 3 ? a[3].toText() : Text();
  const auto drops = [&given](char32_t c) { return given.empty() ? isSpace(c) : c == given.front(); };
  TextView view = text;
  while (leading && !view.empty() && drops(view.front())) view.remove_prefix(1);
  while (trailing && !view.empty() && drops(view.back())) view.remove_suffix(1);
  return Value::text(Text(view));
}

Value replaced(Args a, bool all) {
  const Text text = a[0].toText();
  const Text target = a[1].toText();
  const Text with = a[2].toText();
  if (target.empty()) return Value::text(text);
  Text result;
  std::size_t from = 0;
  for (std::size_t at = text.find(target); at != Text::npos; at = text.find(target, from)) {
    result.append(text, from, at - from).append(with);
    if (result.size() > maxTextLength) throw ScriptError("The text is longer than a text may be");
    from = at + target.size();
    if (!all) break;
  }
  return checkedText(result.append(text, from, Text::npos));
}

Value replace(Args a) {
  return replaced(a, false);
}
Value replaceAll(Args a) {
  return replaced(a, true);
}

Value chr(Args arguments) {
  Text text;
  for (const Value& value : arguments)
    text.push_back(static_cast<char32_t>(std::clamp<std::int64_t>(value.toInteger(), 0, 0x10FFFF)));
  return Value::text(std::move(text));
}

Value asc(Args a) {
  const Text text = a[0].toText();
  const std::size_t at = a.size() > 1 ? count(a[1]) : 1;
  return Value::integer(at >= 1 && at <= text.size() ? static_cast<std::int64_t>(text[at - 1]) : -1);
}

Value jst(Args a) {
  Text text;
  for (std::size_t i = 0; i < a.size(); i += 2) text += justified(a[i], i + 1 < a.size() ? a[i + 1].toText() : Text());
  return checkedText(text);
}

Value isNumber(Args a) {
  if (a[0].isNumeric()) return Value::boolean(true);
  const Text text = a[0].toText();
  const TextView view = trimmed(text);
  double number = 0;
  const bool plain = std::all_of(view.begin(), view.end(), [](char32_t c) {
    return (c >= U'0' && c <= U'9') || TextView(U"+-.eE").find(c) != TextView::npos;
  });
  return Value::boolean(plain && numberFromText(view, number) && !(view.back() == U'e' || view.back() == U'E'));
}

Value binLength(Args a) {
  return Value::integer(static_cast<std::int64_t>(a[0].toBinary().size()));
}

Value charToUtf8(Args a) {
  const std::string bytes = a[0].toUtf8();
  return Value::binary(Bytes(bytes.begin(), bytes.end()));
}

Value utf8ToChar(Args a) {
  const Bytes bytes = a[0].toBinary();
  return Value::text(textFromUtf8({reinterpret_cast<const char*>(bytes.data()), bytes.size()}));
}

Value binToHex(Args a) {
  constexpr TextView hex = U"0123456789ABCDEF";
  Text text;
  for (const std::uint8_t byte : a[0].toBinary()) {
    text.push_back(hex[byte >> 4u]);
    text.push_back(hex[byte & 0xFu]);
  }
  return checkedText(text);
}

constexpr std::array table = {
    Function{"con", 1, anyNumber, con},
    Function{"len", 1, 1, len},
    Function{"mid", 2, 3, mid},
    Function{"left", 2, 2, left},
    Function{"right", 2, 2, right},
    Function{"pos", 2, 2, pos},
    Function{"upp", 1, 1, upp},
    Function{"low", 1, 1, low},
    Function{"cap", 1, 1, cap},
    Function{"trim", 1, 4, trim},
    Function{"replace", 3, 3, replace},
    Function{"replaceall", 3, 3, replaceAll},
    Function{"chr", 1, anyNumber, chr},
    Function{"asc", 1, 2, asc},
    Function{"jst", 1, anyNumber, jst},
    Function{"isnumber", 1, 1, isNumber},
    Function{"binlength", 1, 1, binLength},
    Function{"chartoutf8", 1, 1, charToUtf8},
    Function{"utf8tochar", 1, 1, utf8ToChar},
    Function{"bintohex", 1, 1, binToHex},
};

}  // namespace

std::span<const Function> textFunctions() {
  return table;
}

}  // namespace rubrica::simhost
