// Holds one value of each kind that scripts/gdb_views.py shows, for the test to stop at.
#include <cstdio>

#include "biff/cell_store.h"
#include "biff/rk_value.h"
#include "source/ooxml/sml-sheet.h"

namespace {

[[gnu::noinline]] int look(const rubrica::CellWord& none, const rubrica::CellWord& word, const rubrica::RkCell& rk,
                           const rubrica::XLUnicodeString& text, const rubrica::ooxml::packed_cell& brief,
                           const rubrica::ooxml::packed_cell& packed, const rubrica::ooxml::packed_cell& formula,
                           const rubrica::ooxml::packed_cell& object) {
  return static_cast<int>(none.bits + word.bits + rk.row + text.cch + brief.row() + packed.row() + formula.row() +
                          object.row());
}

}  // namespace

int main() {
  rubrica::XLUnicodeString text;
  text.cch = 4;
  text.text = u"caf\u00e9";
  rubrica::sheet::c_CT_Cell brief, packed, formula, object;
  brief.set_position(4, 27);
  brief.set_t("str");
  brief.set_v("tea");
  packed.set_position(0, 0);
  packed.set_s(3);
  packed.set_v("-0.1234567890123456");
  formula.set_position(2, 2);
  formula.set_f("A1*2");
  formula.set_v("28");
  object.set_position(3, 3);
  object.get_f().set_value("A1*2");
  object.set_v("29");
  const rubrica::RkCell rk{2, 1, 15, 0, rubrica::encodeRk(14.5).value()};
  std::printf("%d\n",
              look({}, rubrica::CellWord::of(rubrica::CellKind::number, 7), rk, text, brief, packed, formula, object));
}
