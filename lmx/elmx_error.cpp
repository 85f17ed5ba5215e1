#include "lmx/elmx_error.h"

#include <iterator>

namespace rubrica::lmx {

namespace {

struct error_text {
  int code;
  const char* text;
};

constexpr error_text kErrorTexts[] = {
    {0, "No Error"},
    {1, "Unable to open file"},
    {2, "Violation of xs:all cardinality constraints"},
    {3, "Attribute has already been read"},
    {4, "Attributes found in anonymous compositor"},
    {5, "XML badly formed"},
    {6, "XML character encoding not supported"},
    {7, "Inappropriate choice option selected"},
    {8, "Badly formed comment"},
    {9, "Badly formed DTD"},
    {10, "Bad end of element"},
    {11, "Bad start tag end"},
    {12, "Syntax error in end tag"},
    {13, "Bad XML Decl spec"},
    {14, "Unsupported XML version"},
    {15, "Mis-match between specified char encoding and read bytes"},
    {16, "Element not found"},
    {17, "Reference to external entity"},
    {18, "Fraction digits exceeded"},
    {19, "Length too long"},
    {20, "Length too short"},
    {21, "Mandatory element missing"},
    {22, "No pattern matched"},
    {23, "Not well formed"},
    {24, "Recursive entity definition"},
    {25, "Required attribute(s) missing"},
    {26, "Element instances exceeds maxOccurs"},
    {27, "Total digits exceeded"},
    {28, "Unable to read attribute value"},
    {29, "Unable to read element value"},
    {30, "Unknown element in xs:all"},
    {31, "Unknown element in complexContent"},
    {32, "Unexpected empty element"},
    {33, "Unexpected entity"},
    {34, "Unexpected end of message"},
    {35, "Invalid value format for this type"},
    {36, "Value greater than specified maximum"},
    {37, "Value less than specified minimum"},
    {38, "Value does not match enumerations"},
    {39, "Unexpected attribute"},
    {40, "Nilled element body not empty"},
    {41, "Entity not found"},
    {42, "Undefined error"},
    {43, "Value does not match specified fixed constraint"},
    {44, "Unknown xsi:type"},
    {45, "Type not set"},
    {46, "min/max occurs error on marshaling"},
    {1000, "User defined error 1"},
    {1001, "User defined error 2"},
    {1002, "User defined error 3"},
    {1003, "User defined error 4"},
    {1004, "User defined error 5"},
    {1005, "User defined error 6"},
    {1006, "User defined error 7"},
    {1007, "User defined error 8"},
    {1008, "User defined error 9"},
};

}  // namespace

const char* get_error_text(int code) {
  for (const error_text& row : kErrorTexts) {
    if (row.code == code) return row.text;
  }
  return "";
}

int error_text_count() {
  return static_cast<int>(std::size(kErrorTexts));
}

}  // namespace rubrica::lmx
