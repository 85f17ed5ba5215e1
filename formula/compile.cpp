#include "formula/compile.h"

#include "formula/infix.h"
#include "formula/postfix.h"
#include "formula/ptg.h"

namespace rubrica::formula {

std::span<const std::uint8_t> Compiler::compile(std::u16string_view text, BookAccess& book, int sheetIndex, int scope) {
  if (errorCode(text)) return compilePostfix(text, book, sheetIndex, scope);
  const auto items = _builder.build(textWithoutBlanks(text, _prepared));
  // What begins a quote that nothing ends takes the postfix text behind it in as well, blanks and all.
  if (_builder.endsInsideQuotes()) return compilePostfix(postfixText(items), book, sheetIndex, scope);
  _writer.begin(book, sheetIndex, scope);
  _writer.write(items);
  return _writer.tokens();
}

std::span<const std::uint8_t> Compiler::compilePostfix(std::u16string_view postfix, BookAccess& book, int sheetIndex,
                                                       int scope) {
  _writer.begin(book, sheetIndex, scope);
  PostfixItems items(postfix);
  for (std::u16string_view item; items.next(item);) _writer.write(item);
  return _writer.tokens();
}

std::vector<std::uint8_t> tokensFromPostfix(std::u16string_view postfix, BookAccess& book, int sheetIndex, int scope) {
  Compiler compiler;
  const auto tokens = compiler.compilePostfix(postfix, book, sheetIndex, scope);
  return {tokens.begin(), tokens.end()};
}

std::vector<std::uint8_t> compileFormula(std::u16string_view text, BookAccess& book, int sheetIndex, int scope) {
  Compiler compiler;
  const auto tokens = compiler.compile(text, book, sheetIndex, scope);
  return {tokens.begin(), tokens.end()};
}

}  // namespace rubrica::formula
