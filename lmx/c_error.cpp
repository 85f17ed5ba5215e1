#include "lmx/c_error.h"

namespace rubrica::lmx {

void c_error::add(severity level, elmx_error code, std::string_view source_id, int line, std::string_view text) {
  if (_fatal_count > 0) return;
  switch (level) {
    case severity::fatal:
      ++_fatal_count;
      ++_error_count;
      break;
    case severity::error:
      ++_error_count;
      break;
    case severity::warning:
      ++_warning_count;
      report(level, code, source_id, line, text);
      return;
    case severity::note:
      ++_note_count;
      return;
  }
  _last_severity = level;
  _last_code = code;
  _last_line = line;
  _last_text = text;
  if (level == severity::error) report(level, code, source_id, line, text);
}

void c_error::report(severity, elmx_error, std::string_view, int, std::string_view) {}

std::string c_error_record::message() const {
  std::string text = std::string("Error: ") + get_error_text(code) + "\n";
  if (code != ELMX_OK) {
    text += "Item: " + item_name + "\n";
    text += "Program file: " + program_file + "\n";
    text += "Program line: " + std::to_string(program_line) + "\n";
  }
  if (xml_line != -1) text += "XML line: " + std::to_string(xml_line) + "\n";
  return text;
}

}  // namespace rubrica::lmx
