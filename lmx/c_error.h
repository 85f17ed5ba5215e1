// What goes wrong while XML is read or written: c_error collects the problems of the character layers, c_error_record
// is what a caller sees in the end.
#pragma once

#include <string>
#include <string_view>

#include "lmx/elmx_error.h"

namespace rubrica::lmx {

// Severities, in the order of the counts they raise.
enum class severity : int {
  fatal = 0,    // stops all reading
  error = 1,    // the document is wrong, reading goes on
  warning = 2,  // worth a remark
  note = 3,     // only counted
};

// Receives problems. Once a fatal one is stored, later ones are ignored: the first cause is what counts.
class c_error {
 public:
  virtual ~c_error() = default;

  // Takes a problem of the character layers at `line` of the source.
  void add(severity level, elmx_error code, std::string_view source_id, int line, std::string_view text);

  int fatal_count() const { return _fatal_count; }
  int error_count() const { return _error_count; }
  int warning_count() const { return _warning_count; }
  int note_count() const { return _note_count; }
  severity last_severity() const { return _last_severity; }
  elmx_error last_code() const { return _last_code; }
  int last_line() const { return _last_line; }
  const std::string& last_text() const { return _last_text; }

 protected:
  // Told of errors and warnings; the default does nothing.
  virtual void report(severity level, elmx_error code, std::string_view source_id, int line, std::string_view text);

 private:
  int _fatal_count = 0;
  int _error_count = 0;
  int _warning_count = 0;
  int _note_count = 0;
  severity _last_severity = severity::note;
  elmx_error _last_code = ELMX_OK;
  int _last_line = -1;
  std::string _last_text;
};

// The first problem of a reader or writer as its caller sees it.
struct c_error_record {
  elmx_error code = ELMX_OK;
  std::string item_name;                   // "@name" for an attribute, else an element or a class
  std::string program_file = "(not set)";  // the schema module that was being read or written
  int program_line = -1;                   // the line of the module's description
  int xml_line = -1;                       // -1 when unknown, and always when writing

  // "Error: ...", then the item, the program position and the XML line, each on a line of its own.
  std::string message() const;
};

}  // namespace rubrica::lmx
