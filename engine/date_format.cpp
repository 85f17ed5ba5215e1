#include "engine/date_format.h"

#include <string_view>

namespace rubrica {
namespace {

constexpr std::u16string_view kDateLetters = u"mdyhsMDYHS";

}  // namespace

bool isDateFormatText(const char16_t* text) {
  bool quoted = false;
  bool bracketed = false;
  for (; text != nullptr && *text != u'\0'; ++text) {
    if (*text == u'"' && !bracketed) {
      quoted = !quoted;
    } else if (!quoted && *text == u'[') {
      bracketed = true;
    } else if (!quoted && *text == u']') {
      bracketed = false;
    } else if (!quoted && !bracketed && kDateLetters.find(*text) != kDateLetters.npos) {
      return true;
    }
  }
  return false;
}

DateRule dateRuleOf(int numFormat) {
  if ((numFormat >= 14 && numFormat <= 22) || (numFormat >= 45 && numFormat <= 47)) return DateRule::date;
  if ((numFormat >= 0 && numFormat <= 13) || (numFormat >= 37 && numFormat <= 44) || numFormat == 48 ||
      numFormat == 49) {
    return DateRule::noDate;
  }
  return DateRule::byText;
}

}  // namespace rubrica
