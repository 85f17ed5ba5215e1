// Samples under the text of a custom number format: the text is taken apart into what stands in it literally, date
// parts and digit places, and put together again with digits in them.
#include <algorithm>
#include <cmath>
#include <vector>

#include "engine/sample_text.h"

namespace rubrica {
namespace {

enum class Piece { literal, letters, digits, point, group, percent, exponent, general, text };

// One character of the format, or a run of one letter.
struct Element {
  Piece piece;
  std::u16string text;  // of a literal what is shown, of letters the run, of an exponent its sign
};
using Section = std::vector<Element>;

constexpr std::u16string_view kLowerDateLetters = u"mdyhs";
constexpr std::u16string_view kDigitPlaces = u"0#?";
constexpr std::u16string_view kMonth = u"September", kDay = u"Wednesday";
constexpr std::size_t kMaxPlaces = 255;  // digit places of a number; a sample stays short whatever the text says

char16_t lower(char16_t c) {
  return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 0x20) : c;
}

bool startsWith(std::u16string_view text, std::u16string_view word) {
  return text.size() >= word.size() &&
         std::equal(word.begin(), word.end(), text.begin(), [](char16_t a, char16_t b) { return lower(b) == a; });
}

// What brackets hold: a currency is shown up to its "-"; letters of an elapsed time count it in digits; colours,
// conditions and languages show nothing.
void takeBracket(std::u16string_view inside, Section& section) {
  if (!inside.empty() && inside.front() == u'$') {
    const auto currency = inside.substr(1, inside.find(u'-') - 1);
    if (inside.size() > 1) section.push_back({Piece::literal, std::u16string(currency)});
    return;
  }
  const bool isElapsed =
      !inside.empty() && std::u16string_view(u"hms").find(lower(inside.front())) != inside.npos &&
      std::all_of(inside.begin(), inside.end(), [&](char16_t c) { return lower(c) == lower(inside.front()); });
  if (isElapsed) section.push_back({Piece::letters, u"[" + std::u16string(1, lower(inside.front()))});
}

// Takes the format apart at its sections.
std::vector<Section> sectionsOf(std::u16string_view format) {
  std::vector<Section> sections(1);
  while (!format.empty()) {
    Section& section = sections.back();
    const char16_t c = format.front();
    std::size_t taken = 1;
    const auto literal = [&](std::u16string_view text) { section.push_back({Piece::literal, std::u16string(text)}); };
    if (c == u'"') {
      const std::size_t end = std::min(format.find(u'"', 1), format.size());
      literal(format.substr(1, end - 1));
      taken = end + 1;
    } else if (c == u'[') {
      const std::size_t end = std::min(format.find(u']'), format.size());
      takeBracket(format.substr(1, end - 1), section);
      taken = end + 1;
    } else if (c == u'\\') {
      literal(format.substr(1, 1));
      taken = 2;
    } else if (c == u'_' || c == u'*') {
      taken = 2;
    } else if (c == u';') {
      sections.emplace_back();
    } else if (startsWith(format, u"general")) {
      section.push_back({Piece::general, {}});
      taken = 7;
    } else if (startsWith(format, u"am/pm")) {
      literal(u"AM");
      taken = 5;
    } else if (startsWith(format, u"a/p")) {
      literal(u"A");
      taken = 3;
    } else if (startsWith(format, u"e+") || startsWith(format, u"e-")) {
      section.push_back({Piece::exponent, std::u16string(format.substr(1, 1))});
      taken = 2;
    } else if (kLowerDateLetters.find(lower(c)) != kLowerDateLetters.npos) {
      while (taken < format.size() && lower(format[taken]) == lower(c)) ++taken;
      section.push_back({Piece::letters, std::u16string(taken, lower(c))});
    } else if (kDigitPlaces.find(c) != kDigitPlaces.npos) {
      section.push_back({Piece::digits, std::u16string(1, c)});
    } else {
      const Piece piece = c == u'.'   ? Piece::point
                          : c == u',' ? Piece::group
                          : c == u'%' ? Piece::percent
                          : c == u'@' ? Piece::text
                                      : Piece::literal;
      section.push_back({piece, std::u16string(1, c)});
    }
    format.remove_prefix(std::min(taken, format.size()));
  }
  return sections;
}

// The first section shows positive numbers, the second negative ones, the third zero.
const Section& sectionFor(double value, const std::vector<Section>& sections) {
  if (value < 0 && sections.size() > 1) return sections[1];
  if (value == 0 && sections.size() > 2) return sections[2];
  return sections[0];
}

bool has(const Section& section, Piece piece) {
  return std::any_of(section.begin(), section.end(), [&](const Element& e) { return e.piece == piece; });
}

// Letters of a date or time part as what stands in for it. Serial numbers count days.
std::u16string datePart(const std::u16string& run, double value) {
  constexpr std::size_t kShort = 2, kAbbreviated = 3, kFull = 4, kInitial = 5;
  constexpr double kHours = 24, kMinutes = 1440, kSeconds = 86400;
  if (run.front() == u'[') {
    return wholeDigits(value * (run.back() == u'h' ? kHours : run.back() == u'm' ? kMinutes : kSeconds));
  }
  const std::size_t length = run.size();
  switch (run.front()) {
    case u'y':
      return std::u16string(length <= kShort ? 2 : 4, u'0');
    case u'h':
    case u's':
      return u"00";
    default:
      break;
  }
  const bool isMonth = run.front() == u'm';
  if (length <= kShort) return u"00";
  if (length == kAbbreviated) return u"000";
  if (length == kFull) return std::u16string(isMonth ? kMonth : kDay);
  if (length == kInitial && isMonth) return std::u16string(kMonth.substr(0, 1));
  return run;
}

std::u16string dateSample(const Section& section, double value) {
  std::u16string sample;
  for (const Element& element : section) {
    sample += element.piece == Piece::letters  ? datePart(element.text, value)
              : element.piece == Piece::digits ? std::u16string(1, u'0')
                                               : element.text;
  }
  return sample;
}

struct Places {
  std::size_t whole = 0, decimals = 0;
  int thousands = 0;  // commas behind the last place divide by 1000 each
  bool grouped = false, fraction = false;
};

// Counts the digit places of the number on both sides of its point. Of a fraction only the first run is a number.
Places placesOf(const Section& section) {
  Places places;
  places.fraction = std::any_of(section.begin(), section.end(),
                                [](const Element& e) { return e.piece == Piece::literal && e.text == u"/"; });
  bool behindPoint = false;
  int commas = 0;
  for (const Element& element : section) {
    if (element.piece == Piece::exponent) break;
    if (places.fraction && places.whole > 0 && element.piece == Piece::literal) break;
    if (element.piece == Piece::point) behindPoint = true;
    if (element.piece == Piece::group && places.whole > 0) ++commas;
    if (element.piece != Piece::digits) continue;
    ++(behindPoint ? places.decimals : places.whole);
    places.grouped = places.grouped || commas > 0;
    commas = 0;
  }
  places.thousands = commas;
  places.whole = std::min(places.whole, kMaxPlaces);
  return places;
}

// The number in a pattern of zeros as wide as its digit places, wider where the value needs it.
std::u16string numberIn(const Section& section, const Places& places, double value) {
  constexpr std::size_t kPercentDigits = 2, kGroup = 3;
  constexpr double kHundred = 100, kThousand = 1000;
  const bool isPercent = has(section, Piece::percent);
  const auto decimals = static_cast<int>(std::min(places.decimals, kMaxPlaces));
  double shown = std::abs(value);
  if (has(section, Piece::exponent)) return scientificDigits(shown, decimals);
  if (isPercent) shown *= kHundred;
  shown /= std::pow(kThousand, places.thousands);
  std::u16string digits = places.fraction ? wholeDigits(shown) : fixedDigits(shown, decimals);
  const std::size_t whole = std::min(digits.find(u'.'), digits.size());
  const std::size_t wanted = std::max(places.whole, isPercent ? kPercentDigits : 0);
  if (whole < wanted) digits.insert(0, wanted - whole, u'0');
  const std::size_t shownWhole = std::max(whole, wanted);
  if (places.grouped && shownWhole > kGroup) digits.append((shownWhole - 1) / kGroup, u',');
  return digits;
}

std::u16string numberSample(const Section& section, double value, bool signedByText) {
  const Places places = placesOf(section);
  std::u16string sample;
  if (value < 0 && !signedByText) sample += u'-';
  bool printed = false, behindExponent = false, behindNumber = false;
  for (const Element& element : section) {
    switch (element.piece) {
      case Piece::digits:
        if (!printed) {
          sample += numberIn(section, places, value);
        } else if (places.fraction && behindNumber) {
          sample += u'0';
        }
        printed = true;
        break;
      case Piece::exponent:
        behindExponent = true;
        break;
      case Piece::point:
        if (!printed && !has(section, Piece::digits)) sample += element.text;
        break;
      case Piece::group:
        break;
      case Piece::general:
      case Piece::text:
        sample += generalDigits(std::abs(value));
        break;
      case Piece::percent:
      case Piece::literal:
      case Piece::letters:
        behindNumber = printed;
        if (!behindExponent) sample += element.text;
        break;
    }
  }
  return sample;
}

}  // namespace

std::u16string customSample(double value, std::u16string_view formatText) {
  const std::vector<Section> sections = sectionsOf(formatText);
  const Section& section = sectionFor(value, sections);
  if (has(section, Piece::letters)) return dateSample(section, value);
  return numberSample(section, value, sections.size() > 1);
}

}  // namespace rubrica
