// What the reader and the writer have in common: how a problem reaches the caller, and the hooks by which a derived
// class may look at it or go on in spite of it.
#pragma once

#include <string>
#include <string_view>

#include "lmx/c_error.h"

namespace rubrica::lmx {

class c_xml {
 public:
  c_xml(const c_xml&) = delete;
  c_xml& operator=(const c_xml&) = delete;
  virtual ~c_xml() = default;
  // Told of each problem. The answer is the operation's result; 0 means to go on as if nothing were wrong, where going
  // on is possible at all (input that can't be read further stops the operation regardless).
  virtual elmx_error handle_error(elmx_error code, std::string_view item_name, const char* program_file,
                                  int program_line);
  virtual elmx_error handle_error_code(elmx_error code) { return code; }
  virtual std::string get_error_message() const { return _record.message(); }

  const c_error_record& record() const { return _record; }
  c_error& errors() { return _errors; }
  const c_error& errors() const { return _errors; }

  // Where the schema module stands that is being worked on; reports name it.
  void set_program_file(const char* file) { _program_file = file; }
  void set_program_line(int line) { _program_line = line; }
  const char* program_file() const { return _program_file; }
  int program_line() const { return _program_line; }

 protected:
  c_xml(const char* program_file, c_error& errors) : _errors(errors), _program_file(program_file) {}

  elmx_error keep_error(elmx_error code, std::string_view item_name, int xml_line);

 private:
  c_error& _errors;
  c_error_record _record;
  const char* _program_file;
  int _program_line = -1;
};

}  // namespace rubrica::lmx
