#include "engine/list_separator.h"

#include <algorithm>
#include <iterator>

namespace rubrica {
namespace {

// The country as Windows names it in a locale ("German_Germany.1252") and as POSIX does ("de_DE.UTF-8").
struct CountryWords {
  std::string_view word;
  std::string_view tag;
};

constexpr CountryWords kSemicolonCountries[] = {
    {"Azerbaijan", "_AZ."},  {"Belarus", "_BY."},        {"Bulgaria", "_BG."},   {"Bosnia and Herzegovina", "_BA."},
    {"Spain", "_ES."},       {"Czech Republic", "_CZ."}, {"Denmark", "_DK."},    {"Austria", "_AT."},
    {"Belgium", "_BE."},     {"Germany", "_DE."},        {"Luxembourg", "_LU."}, {"Cyprus", "_CY."},
    {"Greece", "_GR."},      {"Latin America", "_AN."},  {"Estonia", "_EE."},    {"Finland", "_FI."},
    {"Canada", "_CA."},      {"France", "_FR."},         {"Croatia", "_HR."},    {"Hungary", "_HU."},
    {"Indonesia", "_ID."},   {"Iceland", "_IS."},        {"Italy", "_IT."},      {"Georgia", "_GE."},
    {"Kazakhstan", "_KZ."},  {"Kyrgyzstan", "_KG."},     {"Lithuania", "_LT."},  {"Latvia", "_LV."},
    {"Madagascar", "_MG."},  {"Mongolia", "_MN."},       {"Macedonia", "_MK."},  {"Norway", "_NO."},
    {"Netherlands", "_NL."}, {"Afghanistan", "_AW."},    {"Poland", "_PL."},     {"Brazil", "_BR."},
    {"Portugal", "_PT."},    {"Romania", "_RO."},        {"Russia", "_RU."},     {"Ukraine", "_UA."},
    {"Kinyarwanda", "_RW."}, {"Slovakia", "_SK."},       {"Slovenia", "_SI."},   {"Montenegro", "_ME."},
    {"Albania", "_AL."},     {"Serbia", "_RS."},         {"Sweden", "_SE."},     {"Tajikistan", "_TJ."},
    {"Turkey", "_TR."},      {"Senegal", "_SN."},        {"Morocco", "_MA."},    {"South Africa", "_ZA."}};

}  // namespace

char listSeparatorOf(std::string_view localeName) {
  if (localeName.empty()) return ';';
  const bool semicolon =
      std::any_of(std::begin(kSemicolonCountries), std::end(kSemicolonCountries), [&](const auto& country) {
        return localeName.find(country.word) != std::string_view::npos ||
               localeName.find(country.tag) != std::string_view::npos;
      });
  return semicolon ? ';' : ',';
}

}  // namespace rubrica
