// The part of one table of a sheet, as a bound tree. The book's part map owns it; xml/table_tree.h has what is done
// with the tree. Tables come from files: no operation adds one.
#pragma once

#include "source/ooxml/strict.h"
#include "source/ooxml/table.h"
#include "xml/flavour.h"
#include "xml/part.h"

namespace rubrica {

template <class Tag>
class Table : public XmlFile<typename Flavour<Tag>::TableRoot> {
 public:
  using XmlFile<typename Flavour<Tag>::TableRoot>::XmlFile;
};

}  // namespace rubrica
