#include "simhost/functions.h"

#include <array>
#include <unordered_map>

namespace rubrica::simhost {

namespace {

using FunctionMap = std::unordered_map<std::string, const Function*>;

FunctionMap allFunctions() {
  FunctionMap map;
  for (const auto table : {textFunctions(), numberFunctions(), dateFunctions(), specialFunctions()}) {
    for (const Function& function : table) map.emplace(nameKey(function.name), &function);
  }
  return map;
}

struct NamedNumber {
  const char* name;
  int value;
};

constexpr std::array namedNumbers = {
    NamedNumber{"kCharacter", static_cast<int>(Kind::Character)},
    NamedNumber{"kBoolean", static_cast<int>(Kind::Boolean)},
    NamedNumber{"kDate", static_cast<int>(Kind::Date)},
    NamedNumber{"kNumber", static_cast<int>(Kind::Number)},
    NamedNumber{"kInteger", static_cast<int>(Kind::Integer)},
    NamedNumber{"kBinary", static_cast<int>(Kind::Binary)},
    NamedNumber{"kList", static_cast<int>(Kind::List)},
    NamedNumber{"kRow", static_cast<int>(Kind::Row)},
    NamedNumber{"kObject", static_cast<int>(Kind::Object)},
    NamedNumber{"kObjref", static_cast<int>(Kind::ObjectReference)},
    NamedNumber{"kSimplechar", 0},
    NamedNumber{"kNatchar", 1},
    NamedNumber{"kDate1900", 0},
    NamedNumber{"kDate1980", shortDate},
    NamedNumber{"kDate2000", 2},
    NamedNumber{"kDatetime", dateAndTime},
    NamedNumber{"kTime", shortTime},
    // Units of dadd(), ddiff(), dpart() and dname().
    NamedNumber{"kYear", 1},
    NamedNumber{"kQuarter", 2},
    NamedNumber{"kMonth", 3},
    NamedNumber{"kWeek", 4},
    NamedNumber{"kDay", 5},
    NamedNumber{"kHour", 6},
    NamedNumber{"kMinute", 7},
    NamedNumber{"kSecond", 8},
    NamedNumber{"kCentiSecond", 9},
    NamedNumber{"kDayofWeek", 10},
    NamedNumber{"kDayofYear", 11},
    NamedNumber{"kSunday", 0},
    NamedNumber{"kMonday", 1},
    NamedNumber{"kTuesday", 2},
    NamedNumber{"kWednesday", 3},
    NamedNumber{"kThursday", 4},
    NamedNumber{"kFriday", 5},
    NamedNumber{"kSaturday", 6},
};

struct NamedText {
  const char* name;
  char32_t text;
};

constexpr std::array namedTexts = {NamedText{"kCr", U'\r'}, NamedText{"kLf", U'\n'}, NamedText{"kTab", U'\t'},
                                   NamedText{"kDq", U'"'}, NamedText{"kSq", U'\''}};

}  // namespace

const Function* findFunction(std::string_view name) {
  static const FunctionMap functions = allFunctions();
  const auto found = functions.find(nameKey(name));
  return found == functions.end() ? nullptr : found->second;
}

bool findConstant(std::string_view name, Value& value) {
  if (sameName(name, "kTrue") || sameName(name, "kFalse")) {
    value = Value::boolean(sameName(name, "kTrue"));
    return true;
  }
  if (sameName(name, "kNull")) {
    value = Value::null();
    return true;
  }
  for (const NamedNumber& constant : namedNumbers) {
    if (!sameName(name, constant.name)) continue;
    value = Value::constant(constant.value);
    return true;
  }
  for (const NamedText& constant : namedTexts) {
    if (!sameName(name, constant.name)) continue;
    value = Value::text(Text(1, constant.text));
    return true;
  }
  return false;
}

}  // namespace rubrica::simhost
