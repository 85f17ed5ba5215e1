// NumFormatMgr: one cell format a number format id, per book, so that a thousand dates share one format. Made with its
// book by a Workbook and shared by the Worksheets and Cells; the book owns the formats.
#pragma once

#include <map>

#include <boost/shared_ptr.hpp>

#include "engine/format.h"
#include "host/book_share.h"

namespace rubrica::host {

class NumFormatMgr {
 public:
  explicit NumFormatMgr(BookPtr book);

  // The format of the book with this number format; null when the book can't add one.
  Format* formatForNumFormat(int id);

 private:
  BookPtr _book;
  std::map<int, Format*> _formats;
};

using NumFormatMgrPtr = boost::shared_ptr<NumFormatMgr>;

}  // namespace rubrica::host
