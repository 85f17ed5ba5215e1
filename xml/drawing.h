// The drawing part of a sheet: its pictures, shapes and charts with their anchors, as a bound tree. The book's part map
// owns it; xml/picture_anchors.h has what is done with the tree.
#pragma once

#include <cstdint>

#include "source/ooxml/drawing.h"
#include "source/ooxml/strictdrawing.h"
#include "xml/flavour.h"
#include "xml/part.h"
#include "xml/picture_anchors.h"

namespace rubrica {

template <class Tag>
class Drawing : public XmlFile<typename Flavour<Tag>::DrawingRoot> {
 public:
  using Root = typename Flavour<Tag>::DrawingRoot;
  using XmlFile<Root>::XmlFile;

  // The id of an object to be added: the tree is searched once, not for every object.
  std::uint32_t takeObjectId() {
    if (_nextObjectId == 0) _nextObjectId = freeObjectId(static_cast<const Root&>(*this));
    return _nextObjectId++;
  }

 private:
  std::uint32_t _nextObjectId = 0;
};

}  // namespace rubrica
