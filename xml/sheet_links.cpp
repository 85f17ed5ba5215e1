// Hyperlinks and ignored errors of an .xlsx sheet.
#include <algorithm>
#include <array>

#include "platform/text.h"
#include "xml/book_impl.h"
#include "xml/package_names.h"
#include "xml/sheet_impl.h"
#include "xml/sheet_range.h"
#include "xml/xstring.h"

namespace rubrica {
namespace {

// A link's text taken apart: the address of another file or page, and a place in it or in this book.
struct LinkParts {
  std::u16string_view target, location;
};

// Behind "#" stands a place. Without one, a text with a scheme is an address, one with "!" a place of this book, and
// anything else the name of a file.
LinkParts partsOf(std::u16string_view text) {
  const std::size_t hash = text.find(u'#');
  if (hash != text.npos) return {text.substr(0, hash), text.substr(hash + 1)};
  const bool isAddress = text.find(u"://") != text.npos || text.find(u'!') == text.npos;
  return isAddress ? LinkParts{text, {}} : LinkParts{{}, text};
}

// The attributes by the bits of the ignored-error feature, in the order of the bits.
template <class Ignored>
struct ErrorFlags {
  struct Flag {
    int bit;
    bool (Ignored::*get)() const;
    void (Ignored::*set)(bool);
  };
  static constexpr std::array<Flag, 8> kFlags = {
      {{1, &Ignored::get_evalError, &Ignored::set_evalError},
       {2, &Ignored::get_emptyCellReference, &Ignored::set_emptyCellReference},
       {4, &Ignored::get_numberStoredAsText, &Ignored::set_numberStoredAsText},
       {8, &Ignored::get_formulaRange, &Ignored::set_formulaRange},
       {16, &Ignored::get_formula, &Ignored::set_formula},
       {32, &Ignored::get_twoDigitTextYear, &Ignored::set_twoDigitTextYear},
       {64, &Ignored::get_unlockedFormula, &Ignored::set_unlockedFormula},
       {128, &Ignored::get_listDataValidation, &Ignored::set_listDataValidation}}};

  static int bitsOf(const Ignored& ignored) {
    int bits = 0;
    for (const Flag& flag : kFlags) bits |= (ignored.*flag.get)() ? flag.bit : 0;
    return bits;
  }
};

bool covers(const std::vector<std::string>& ranges, const SheetRange& range) {
  return std::any_of(ranges.begin(), ranges.end(), [&](const std::string& text) {
    const auto present = parseRange(text);
    return present && present->holds(range.rowFirst, range.colFirst) && present->holds(range.rowLast, range.colLast);
  });
}

}  // namespace

template <class Tag>
int XMLSheetImplT<Tag>::hyperlinkSize() {
  return guarded(_book->lastMessage(), 0, [&] {
    const auto* links = this->find_hyperlinks();
    return links == nullptr ? 0 : static_cast<int>(links->size_hyperlink());
  });
}

template <class Tag>
std::size_t XMLSheetImplT<Tag>::checkedLink(int index) const {
  const auto* links = this->find_hyperlinks();
  if (links == nullptr || index < 0 || static_cast<std::size_t>(index) >= links->size_hyperlink()) {
    throw xlerror("index is out of range");
  }
  return static_cast<std::size_t>(index);
}

template <class Tag>
typename XMLSheetImplT<Tag>::Text XMLSheetImplT<Tag>::hyperlink(int index, int* rowFirst, int* rowLast, int* colFirst,
                                                                int* colLast) {
  return guarded(_book->lastMessage(), Text{}, [&]() -> Text {
    const auto& link = this->get_hyperlinks().get_hyperlink(checkedLink(index));
    if (const auto range = parseRange(link.get_ref())) giveRange(*range, rowFirst, rowLast, colFirst, colLast);
    _text.clear();
    if (link.isset_r_id()) {
      const Relationships* links = _book->relationshipsOf(_book->partNameOf(*this));
      if (links != nullptr) _text = platform::utf16FromUtf8Lossy(links->findById(link.get_r_id()));
    }
    if (link.isset_location()) {
      if (!_text.empty()) _text += u'#';
      _text += fromXstring(link.get_location());
    }
    return _text.c_str();
  });
}

// Other programs let several links lead to one relationship. It goes with the last of them.
template <class Tag>
void XMLSheetImplT<Tag>::forgetLinkTarget(const std::string& id) {
  const auto* hyperlinks = std::as_const(*this).find_hyperlinks();
  for (std::size_t i = 0; hyperlinks != nullptr && i < hyperlinks->size_hyperlink(); ++i) {
    const auto& link = hyperlinks->get_hyperlink(i);
    if (link.isset_r_id() && link.get_r_id() == id) return;
  }
  if (Relationships* links = _book->relationshipsOf(_book->partNameOf(*this))) links->removeById(id);
}

template <class Tag>
bool XMLSheetImplT<Tag>::delHyperlink(int index) {
  return guarded(_book->lastMessage(), false, [&] {
    const std::size_t at = checkedLink(index);
    auto& links = this->get_hyperlinks();
    const auto& link = links.get_hyperlink(at);
    const std::string id = link.isset_r_id() ? link.get_r_id() : std::string();
    links.erase_hyperlink(at);
    if (links.size_hyperlink() == 0) this->unset_hyperlinks();
    if (!id.empty()) forgetLinkTarget(id);
    return true;
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::addHyperlink(Text hyperlink, int rowFirst, int rowLast, int colFirst, int colLast) {
  guarded(_book->lastMessage(), [&] {
    std::string ref = rangeText({rowFirst, rowLast, colFirst, colLast});
    const LinkParts parts = partsOf(rubrica::viewOf(hyperlink));
    std::string id;
    if (!parts.target.empty()) {
      id = _book->needRelationshipsOf(_book->partNameOf(*this))
               .add(platform::utf8FromUtf16(parts.target), relationship_type::kHyperlink, true);
    }
    auto& links = this->get_hyperlinks();
    std::decay_t<decltype(links.append_hyperlink())> link;
    link.set_ref(std::move(ref));
    if (!id.empty()) link.set_r_id(std::move(id));
    if (!parts.location.empty()) link.set_location(toXstring(parts.location));
    links.append_hyperlink() = std::move(link);
  });
}

// Kinds of errors of an area stand together; one that is covered already is refused.
template <class Tag>
bool XMLSheetImplT<Tag>::addIgnoredError(int rowFirst, int colFirst, int rowLast, int colLast, int errorSet) {
  return guarded(_book->lastMessage(), false, [&] {
    const SheetRange range{rowFirst, rowLast, colFirst, colLast};
    std::string ref = rangeText(range);
    using Ignored = std::remove_reference_t<decltype(this->get_ignoredErrors().get_ignoredError(0))>;
    using Flags = ErrorFlags<Ignored>;
    if (const auto* present = this->find_ignoredErrors()) {
      for (std::size_t i = 0; i < std::as_const(*present).size_ignoredError(); ++i) {
        const Ignored& ignored = std::as_const(*present).get_ignoredError(i);
        if (Flags::bitsOf(ignored) == errorSet && covers(ignored.get_sqref(), range)) {
          throw xlerror("ignored error already exists");
        }
      }
    }
    Ignored added;
    added.set_sqref({std::move(ref)});
    for (const auto& flag : Flags::kFlags) {
      if ((errorSet & flag.bit) != 0) (added.*flag.set)(true);
    }
    this->get_ignoredErrors().append_ignoredError() = std::move(added);
    return true;
  });
}

template class XMLSheetImplT<excelNormal_tag>;
template class XMLSheetImplT<excelStrict_tag>;

}  // namespace rubrica
