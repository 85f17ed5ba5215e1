#include "xml/cell_errors.h"

#include <algorithm>
#include <iterator>

namespace rubrica {
namespace {

struct ErrorWord {
  ErrorType error;
  std::string_view word;
};
constexpr ErrorWord kErrors[] = {{ErrorType::null, "#NULL!"},      {ErrorType::divByZero, "#DIV/0!"},
                                 {ErrorType::value, "#VALUE!"},    {ErrorType::ref, "#REF!"},
                                 {ErrorType::name, "#NAME?"},      {ErrorType::num, "#NUM!"},
                                 {ErrorType::notAvailable, "#N/A"}};

}  // namespace

std::string_view wordOfError(ErrorType error) {
  const auto* found = std::find_if(std::begin(kErrors), std::end(kErrors),
                                   [error](const ErrorWord& row) { return row.error == error; });
  return found == std::end(kErrors) ? std::string_view() : found->word;
}

ErrorType errorOfWord(std::string_view word) {
  const auto* found =
      std::find_if(std::begin(kErrors), std::end(kErrors), [word](const ErrorWord& row) { return row.word == word; });
  return found == std::end(kErrors) ? ErrorType::noError : found->error;
}

}  // namespace rubrica
