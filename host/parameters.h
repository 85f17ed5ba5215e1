// Parameters: reads the parameters of one method call in order and remembers the first that is missing or wrong, with
// the long error text for it. After a failure everything reads as nothing, so that a handler reads all it needs and
// asks once:
//
//   Parameters in(call);
//   const int row = in.row(1, "row"), column = in.column(2, "col");
//   if (in.failed()) return in.failure();
#pragma once

#include <string>

#include "host/host_call.h"
#include "host/nv_obj_base.h"

namespace rubrica::host {

class Parameters {
 public:
  explicit Parameters(MethodCall& call) : _call(call) {}

  bool failed() const { return _failure != 0; }
  int failure() const { return _failure; }
  // Fails the call by hand; answers the code.
  int fail(std::string longError, int errorCode = code::badParameters);

  // Parameter n, or a field without a handle after "First parameter, <name>, is required.".
  HostField required(int n, const char* name);
  int integer(int n, const char* name) { return required(n, name).integer(); }
  double number(int n, const char* name) { return required(n, name).number(); }
  std::u16string text(int n, const char* name) { return required(n, name).text(); }
  // Rows and columns come out 0-based. `unknown` is how the text for a column that can't be parsed calls the parameter,
  // where that is not "first parameter, <name>".
  int row(int n, const char* name);
  int column(int n, const char* name, const char* unknown = nullptr);
  // A column that may be left out.
  int optionalColumn(int n, const char* name, int otherwise);
  bool optionalBoolean(int n, bool otherwise) const;
  bool isPassed(int n) const { return static_cast<bool>(_call.host.parameter(n)); }

 private:
  int parsedColumn(const HostField& field, int n, const char* name, const char* unknown);

  MethodCall& _call;
  int _failure = 0;
};

}  // namespace rubrica::host
