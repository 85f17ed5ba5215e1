// Data validation of an .xlsx sheet: which values its cells take, and what is said to who types them.
#include <array>
#include <charconv>

#include "xml/book_impl.h"
#include "xml/sheet_impl.h"
#include "xml/sheet_range.h"
#include "xml/xstring.h"

namespace rubrica {
namespace {

constexpr std::array<std::string_view, 8> kTypes = {"none", "whole", "decimal",    "list",
                                                    "date", "time",  "textLength", "custom"};
constexpr std::array<std::string_view, 8> kOperators = {
    "between", "notBetween", "equal", "notEqual", "lessThan", "lessThanOrEqual", "greaterThan", "greaterThanOrEqual"};
constexpr std::array<std::string_view, 3> kErrorStyles = {"stop", "warning", "information"};

// A number that names nothing means the first, which is the format's default.
template <std::size_t N, class Enum>
std::string token(const std::array<std::string_view, N>& tokens, Enum value) {
  const auto number = static_cast<std::size_t>(value);
  return std::string(tokens[number < N ? number : 0]);
}

// Formulas stand without "=". The entries of a list are a text of the formula language, in quotes; a list may also be a
// range, which is plain, or any formula, which begins with "=".
std::string formulaOf(std::u16string_view value, ValidationType type) {
  if (!value.empty() && value.front() == u'=') return toXstring(value.substr(1));
  std::string text = toXstring(value);
  if (type != ValidationType::list || (!text.empty() && text.front() == '"') || parseRange(text)) return text;
  if (text.find('!') != text.npos) return text;
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"') quoted += c;
    quoted += c;
  }
  return quoted + '"';
}

std::u16string textOf(double value) {
  std::array<char, 32> buffer{};
  const auto end = std::to_chars(buffer.begin(), buffer.end(), value).ptr;
  return {buffer.begin(), end};
}

}  // namespace

template <class Tag>
bool XMLSheetImplT<Tag>::addDataValidation(ValidationType type, ValidationOperator op, int rowFirst, int rowLast,
                                           int colFirst, int colLast, Text value1, Text value2, bool allowBlank,
                                           bool hideDropDown, bool showInputMessage, bool showErrorMessage,
                                           Text promptTitle, Text prompt, Text errorTitle, Text error,
                                           ValidationErrorStyle errorStyle) {
  return guarded(_book->lastMessage(), false, [&] {
    checkOrder(rowFirst, rowLast, colFirst, colLast);
    std::string ref = rangeText({rowFirst, rowLast, colFirst, colLast});
    auto& validations = this->get_dataValidations();
    std::decay_t<decltype(validations.append_dataValidation())> added;
    added.set_type(token(kTypes, type));
    added.set_operator(token(kOperators, op));
    added.set_errorStyle(token(kErrorStyles, errorStyle));
    added.set_allowBlank(allowBlank);
    added.set_showDropDown(hideDropDown);  // the format's attribute means the opposite of its name
    added.set_showInputMessage(showInputMessage);
    added.set_showErrorMessage(showErrorMessage);
    if (promptTitle != nullptr) added.set_promptTitle(toXstring(promptTitle));
    if (prompt != nullptr) added.set_prompt(toXstring(prompt));
    if (errorTitle != nullptr) added.set_errorTitle(toXstring(errorTitle));
    if (error != nullptr) added.set_error(toXstring(error));
    added.set_sqref({std::move(ref)});
    if (value1 != nullptr) added.set_formula1(formulaOf(value1, type));
    if (value2 != nullptr) added.set_formula2(formulaOf(value2, type));
    validations.append_dataValidation() = std::move(added);
    validations.set_count(static_cast<std::uint32_t>(validations.size_dataValidation()));
    return true;
  });
}

// Only the operators of a range compare with two values.
template <class Tag>
bool XMLSheetImplT<Tag>::addDataValidationDouble(ValidationType type, ValidationOperator op, int rowFirst, int rowLast,
                                                 int colFirst, int colLast, double value1, double value2,
                                                 bool allowBlank, bool hideDropDown, bool showInputMessage,
                                                 bool showErrorMessage, Text promptTitle, Text prompt, Text errorTitle,
                                                 Text error, ValidationErrorStyle errorStyle) {
  const bool isRange = op == ValidationOperator::between || op == ValidationOperator::notBetween;
  const std::u16string first = textOf(value1), second = textOf(value2);
  return addDataValidation(type, op, rowFirst, rowLast, colFirst, colLast, first.c_str(),
                           isRange ? second.c_str() : nullptr, allowBlank, hideDropDown, showInputMessage,
                           showErrorMessage, promptTitle, prompt, errorTitle, error, errorStyle);
}

template <class Tag>
bool XMLSheetImplT<Tag>::removeDataValidations() {
  return guarded(_book->lastMessage(), false, [&] {
    if (!this->isset_dataValidations()) throw xlerror("data validations are not found");
    this->unset_dataValidations();
    return true;
  });
}

template class XMLSheetImplT<excelNormal_tag>;
template class XMLSheetImplT<excelStrict_tag>;

}  // namespace rubrica
