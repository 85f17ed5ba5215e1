#include "source/ooxml/xsd_types.h"

namespace rubrica::ooxml {

using lmx::value_kind;
using lmx::white_space;

const lmx::simple_type xsd_string = {.name = "xsd:string", .kind = value_kind::text, .space = white_space::keep};
const lmx::simple_type xsd_token = {.name = "xsd:token", .kind = value_kind::text, .space = white_space::collapse};
const lmx::simple_type xsd_anyURI = {.name = "xsd:anyURI", .kind = value_kind::text, .space = white_space::collapse};
const lmx::simple_type xsd_ID = {.name = "xsd:ID", .kind = value_kind::text, .space = white_space::collapse};
const lmx::simple_type xsd_boolean = {
    .name = "xsd:boolean", .kind = value_kind::boolean, .space = white_space::collapse};
const lmx::simple_type xsd_byte = {.name = "xsd:byte", .kind = value_kind::int8, .space = white_space::collapse};
const lmx::simple_type xsd_unsignedByte = {
    .name = "xsd:unsignedByte", .kind = value_kind::uint8, .space = white_space::collapse};
const lmx::simple_type xsd_short = {.name = "xsd:short", .kind = value_kind::int16, .space = white_space::collapse};
const lmx::simple_type xsd_unsignedShort = {
    .name = "xsd:unsignedShort", .kind = value_kind::uint16, .space = white_space::collapse};
const lmx::simple_type xsd_int = {.name = "xsd:int", .kind = value_kind::int32, .space = white_space::collapse};
const lmx::simple_type xsd_unsignedInt = {
    .name = "xsd:unsignedInt", .kind = value_kind::uint32, .space = white_space::collapse};
const lmx::simple_type xsd_long = {.name = "xsd:long", .kind = value_kind::int64, .space = white_space::collapse};
const lmx::simple_type xsd_unsignedLong = {
    .name = "xsd:unsignedLong", .kind = value_kind::uint64, .space = white_space::collapse};
const lmx::simple_type xsd_integer = {.name = "xsd:integer", .kind = value_kind::int64, .space = white_space::collapse};
const lmx::simple_type xsd_double = {.name = "xsd:double", .kind = value_kind::float64, .space = white_space::collapse};
const lmx::simple_type xsd_base64Binary = {
    .name = "xsd:base64Binary", .kind = value_kind::base64, .space = white_space::collapse};
const lmx::simple_type xsd_hexBinary = {
    .name = "xsd:hexBinary", .kind = value_kind::hex, .space = white_space::collapse};
const lmx::simple_type xsd_dateTime = {
    .name = "xsd:dateTime", .kind = value_kind::datetime, .space = white_space::collapse};

}  // namespace rubrica::ooxml
