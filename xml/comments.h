// The comments part of a sheet, as a bound tree: comments of a workbook are read and follow their cells, but are not
// written. The book's part map owns it. Functions over the bound root do the work.
#pragma once

#include "source/ooxml/comments.h"
#include "xml/part.h"

namespace rubrica {

class Comments : public XmlFile<comments::c_comments> {
 public:
  using XmlFile::XmlFile;
};

}  // namespace rubrica
