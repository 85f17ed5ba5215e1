#include "host/parameters.h"

#include <optional>
#include <utility>

#include <boost/format.hpp>

#include "host/column_letters.h"
#include "host/index_base.h"

namespace rubrica::host {
namespace {

constexpr const char* kOrdinals[] = {"", "First", "Second", "Third", "Fourth", "Fifth"};
constexpr const char* kLowerOrdinals[] = {"", "first", "second", "third", "fourth", "fifth"};

}  // namespace

int Parameters::fail(std::string longError, int errorCode) {
  if (!failed()) {
    _call.longError = std::move(longError);
    _failure = errorCode;
  }
  return _failure;
}

HostField Parameters::required(int n, const char* name) {
  if (failed()) return {};
  HostField field = _call.host.parameter(n);
  if (!field) fail((boost::format("%s parameter, %s, is required.") % kOrdinals[n] % name).str());
  return field;
}

int Parameters::row(int n, const char* name) {
  return toEngine(integer(n, name));
}

int Parameters::column(int n, const char* name, const char* unknown) {
  const HostField field = required(n, name);
  return failed() ? 0 : parsedColumn(field, n, name, unknown);
}

int Parameters::optionalColumn(int n, const char* name, int otherwise) {
  if (failed() || !isPassed(n)) return otherwise;
  return parsedColumn(_call.host.parameter(n), n, name, nullptr);
}

int Parameters::parsedColumn(const HostField& field, int n, const char* name, const char* unknown) {
  const int column = toEngine(parseColumn(field));
  if (column < 0) {
    const std::string what =
        unknown != nullptr ? unknown : (boost::format("%s parameter, %s") % kLowerOrdinals[n] % name).str();
    fail((boost::format("Unknown %s.  Acceptable types are Integer and Character.") % what).str());
  }
  return column;
}

bool Parameters::optionalBoolean(int n, bool otherwise) const {
  return _call.host.parameter(n).optionalBoolean().value_or(otherwise);
}

}  // namespace rubrica::host
