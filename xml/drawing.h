// The drawing part of a sheet: its pictures, shapes and charts with their anchors, as a bound tree. The book's part map
// owns it; xml/picture_anchors.h has what is done with the tree.
#pragma once

#include "source/ooxml/drawing.h"
#include "source/ooxml/strictdrawing.h"
#include "xml/flavour.h"
#include "xml/part.h"

namespace rubrica {

template <class Tag>
class Drawing : public XmlFile<typename Flavour<Tag>::DrawingRoot> {
 public:
  using XmlFile<typename Flavour<Tag>::DrawingRoot>::XmlFile;
};

}  // namespace rubrica
