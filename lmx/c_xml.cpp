#include "lmx/c_xml.h"

namespace rubrica::lmx {

elmx_error c_xml::handle_error(elmx_error code, std::string_view, const char*, int) {
  return handle_error_code(code);
}

elmx_error c_xml::keep_error(elmx_error code, std::string_view item_name, int xml_line) {
  _record.code = code;
  _record.item_name = item_name;
  _record.program_file = _program_file;
  _record.program_line = _program_line;
  _record.xml_line = xml_line;
  return handle_error(code, item_name, _program_file, _program_line);
}

}  // namespace rubrica::lmx
