// Styles: the part "/xl/styles.xml". It hands out a format for each xf of cellXfs and a font for each font, in their
// order; both are views of the tree, so that saving needs no step of its own. Nothing is ever removed or shared: an
// added format has an xf and a border of its own. Owned by the book's part map, together with what it hands out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <boost/unordered/unordered_flat_map.hpp>

#include "engine/font.h"
#include "engine/format.h"
#include "engine/last_message.h"
#include "xml/flavour.h"
#include "xml/part.h"
#include "xml/style_classes.h"

namespace rubrica {

template <class Tag>
class XMLFormatImplT;
template <class Tag>
class XMLFontImplT;

template <class Tag>
class Styles final : public XmlFile<typename Flavour<Tag>::StyleSheetRoot> {
 public:
  using Root = typename Flavour<Tag>::StyleSheetRoot;
  using Base = XmlFile<Root>;
  using Classes = StyleClasses<Tag>;

  // A new stylesheet, which is what a new book starts from. `last` is the book's and outlives the part.
  explicit Styles(LastMessage& last);
  Styles(LastMessage& last, const char* data, std::size_t size);
  Styles(LastMessage& last, const std::string& path);
  ~Styles() override;
  Styles(const Styles&) = delete;
  Styles& operator=(const Styles&) = delete;

  // A new entry, plain or a copy of one of any book of either file form.
  XMLFormatImplT<Tag>* addFormat(IFormatT<char16_t>* initial);
  XMLFontImplT<Tag>* addFont(IFontT<char16_t>* initial);
  // Throw xlerror "index is out of range".
  XMLFormatImplT<Tag>* format(int index);
  XMLFontImplT<Tag>* font(int index);
  int formatCount() const { return static_cast<int>(_formats.size()); }
  int fontCount() const { return static_cast<int>(_fonts.size()); }
  // The index of a format or font of this book; nothing for one of another.
  std::optional<std::uint32_t> indexOf(const IFormatT<char16_t>* format) const;
  std::optional<std::uint32_t> positionOf(const IFontT<char16_t>* font) const;

  // The id of a format text: that of an equal one, or the first free one from 166 on. Throws xlerror "maximum number of
  // custom formats is exceeded" when that would be above 392.
  int addCustomNumFormat(std::u16string_view text);
  // The text of an id, good until the next call; null where there is none.
  const char16_t* findCustomNumFormat(int id);
  // The same, but throws xlerror "custom number format not found".
  const char16_t* customNumFormat(int id);
  bool isDateNumFormat(int id);

  // Name and size of the first font; throw xlerror "fonts is empty". `size` may be null.
  const char16_t* defaultFont(int* size);
  void setDefaultFont(const char16_t* name, int size);

  bool rgbMode() const { return _rgbMode; }
  void setRgbMode(bool rgbMode) { _rgbMode = rgbMode; }
  LastMessage& lastMessage() { return *_last; }

  // Under RGB mode colours are 0x00RRGGBB, otherwise palette indexes. -1 where the element gives none of the kind;
  // throws xlerror "rgb color is invalid" for an rgb of neither 3 nor 4 bytes.
  Color readColor(const typename Classes::Color& element) const;
  void writeColor(typename Classes::Color& element, Color color) const;

  // ---- For the formats and fonts: elements by index, null past the end, and new ones at the end
  const typename Classes::Border* borderAt(std::uint32_t index) const;
  const typename Classes::Fill* fillAt(std::uint32_t index) const;
  typename Classes::Border& appendBorder(std::uint32_t& index);
  typename Classes::Fill& appendFill(std::uint32_t& index);
  typename Classes::Xf& appendXf();
  typename Classes::Font& appendFont();

 private:
  void createDefaults();
  // A format or font for each element of the tree.
  void adoptTree();
  void append(std::unique_ptr<XMLFormatImplT<Tag>> format);
  void append(std::unique_ptr<XMLFontImplT<Tag>> font);

  LastMessage* _last;
  std::vector<std::unique_ptr<XMLFormatImplT<Tag>>> _formats;
  std::vector<std::unique_ptr<XMLFontImplT<Tag>>> _fonts;
  boost::unordered_flat_map<const IFormatT<char16_t>*, std::uint32_t> _formatPositions;
  boost::unordered_flat_map<const IFontT<char16_t>*, std::uint32_t> _fontPositions;
  std::u16string _numFormatText;                 // of the last customNumFormat
  boost::unordered_flat_map<int, bool> _isDate;  // number formats that were asked about, by id
  bool _rgbMode = false;
};

extern template class Styles<excelNormal_tag>;
extern template class Styles<excelStrict_tag>;

}  // namespace rubrica
