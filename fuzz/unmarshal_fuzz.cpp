// Any bytes as any bound part: unmarshal answers, and what it accepts is written, read again and written to the same
// text. The first byte chooses the root, the rest is the document.
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>
#include <vector>

#include "lmx/driver.h"
#include "source/ooxml/comments.h"
#include "source/ooxml/contentypes.h"
#include "source/ooxml/drawing.h"
#include "source/ooxml/relationships.h"
#include "source/ooxml/sharedStringTable.h"
#include "source/ooxml/sheet.h"
#include "source/ooxml/strict.h"
#include "source/ooxml/strictdrawing.h"
#include "source/ooxml/styles.h"
#include "source/ooxml/table.h"
#include "source/ooxml/workbook.h"

namespace {

using namespace rubrica;

const std::vector<const lmx::root_descriptor*>& allRoots() {
  static const std::vector<const lmx::root_descriptor*> all = [] {
    std::vector<const lmx::root_descriptor*> found;
    for (const auto roots : {workbook::roots(), sheet::roots(), styles::roots(), sharedStringTable::roots(),
                             comments::roots(), table::roots(), contentypes::roots(), relationships::roots(),
                             drawing::roots(), strict::roots(), strictdrawing::roots()}) {
      found.insert(found.end(), roots.begin(), roots.end());
    }
    return found;
  }();
  return all;
}

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const lmx::root_descriptor& root = *allRoots()[data[0] % allRoots().size()];
  const lmx::owned tree(root.type->create());
  const auto* document = reinterpret_cast<const char*>(data + 1);
  if (lmx::unmarshal_root(*tree.get(), root, document, size - 1) != lmx::ELMX_OK) return 0;
  std::string text, again;
  require(lmx::marshal_root(*tree.get(), root, text) == lmx::ELMX_OK);
  const lmx::owned read(root.type->create());
  require(lmx::unmarshal_root(*read.get(), root, text.data(), text.size()) == lmx::ELMX_OK);
  require(lmx::marshal_root(*read.get(), root, again) == lmx::ELMX_OK);
  require(again == text);
  return 0;
}
