// The built-in types of XML Schema that the OOXML schemas use directly, as descriptors of their own: an attribute of
// type xsd:boolean points here, one of a named type points to its module's table. Constant data, shared by all modules.
#pragma once

#include "lmx/descriptor.h"

namespace rubrica::ooxml {

extern const lmx::simple_type xsd_string;
extern const lmx::simple_type xsd_token;
extern const lmx::simple_type xsd_anyURI;
extern const lmx::simple_type xsd_ID;
extern const lmx::simple_type xsd_boolean;
extern const lmx::simple_type xsd_byte;
extern const lmx::simple_type xsd_unsignedByte;
extern const lmx::simple_type xsd_short;
extern const lmx::simple_type xsd_unsignedShort;
extern const lmx::simple_type xsd_int;
extern const lmx::simple_type xsd_unsignedInt;
extern const lmx::simple_type xsd_long;
extern const lmx::simple_type xsd_unsignedLong;
extern const lmx::simple_type xsd_integer;
extern const lmx::simple_type xsd_double;
extern const lmx::simple_type xsd_base64Binary;
extern const lmx::simple_type xsd_hexBinary;
extern const lmx::simple_type xsd_dateTime;

}  // namespace rubrica::ooxml
