#include <array>
#include <filesystem>

#include "simhost/evaluator.h"
#include "simhost/files.h"
#include "simhost/instance.h"
#include "simhost/script_error.h"

namespace rubrica::simhost {

namespace {

constexpr std::array evaluatorFunctions = {
    Function{"iif", 3, 3, nullptr, Special::Iif},
    Function{"pick", 2, anyNumber, nullptr, Special::Pick},
    Function{"row", 1, anyNumber, nullptr, Special::MakeRow},
    Function{"list", 1, anyNumber, nullptr, Special::MakeList},
    Function{"lst", 3, 3, nullptr, Special::ListCell},
    Function{"ReadCSV", 2, 4, nullptr, Special::ReadCsv},
    Function{"WriteCSV", 2, 4, nullptr, Special::WriteCsv},
    Function{"ReadBinFile", 2, 2, nullptr, Special::ReadBinFile},
    Function{"WriteBinFile", 2, 2, nullptr, Special::WriteBinFile},
    Function{"ScriptFolder", 0, 0, nullptr, Special::ScriptFolder},
};

char separatorOf(const std::vector<ExprPtr>& arguments, Evaluator& evaluator) {
  if (arguments.size() < 4) return ',';
  const std::string separator = evaluator.evaluate(*arguments[3]).toUtf8();
  if (separator.size() != 1 || separator == "\"" || separator == "\n" || separator == "\r") {
    throw ScriptError("The separator of a CSV file is one character");
  }
  return separator[0];
}

}  // namespace

std::span<const Function> specialFunctions() {
  return evaluatorFunctions;
}

Value Evaluator::callFunction(const FunctionCall& call) {
  if (call.function->special != Special::No) return callSpecial(call);
  const std::vector<Value> arguments = evaluateAll(call.arguments);
  return call.function->call(arguments);
}

Value Evaluator::callSpecial(const FunctionCall& call) {
  const auto& arguments = call.arguments;
  switch (call.function->special) {
    case Special::Iif:
      return evaluate(*arguments[evaluate(*arguments[0]).toBoolean() ? 1 : 2]);
    case Special::Pick: {
      const std::int64_t number = evaluate(*arguments[0]).toInteger();
      if (number < 0 || number >= static_cast<std::int64_t>(arguments.size()) - 1) return Value::null();
      return evaluate(*arguments[static_cast<std::size_t>(number) + 1]);
    }
    case Special::MakeRow:
      return makeList(call, true);
    case Special::MakeList:
      return makeList(call, false);
    case Special::ListCell:
      return listCell(call);
    case Special::ScriptFolder:
      return Value::utf8(_scriptFolder);
    default:
      return fileFunction(call);
  }
}

Value Evaluator::fileFunction(const FunctionCall& call) {
  const auto& arguments = call.arguments;
  const std::string path = evaluate(*arguments[0]).toUtf8();
  const bool header = arguments.size() < 3 || evaluate(*arguments[2]).toBoolean();
  const char separator = separatorOf(arguments, *this);
  const bool reads = call.function->special == Special::ReadCsv || call.function->special == Special::ReadBinFile;
  if (reads && variableOf(*arguments[1]) == nullptr) {
    throw ScriptError(std::string("The second parameter of ") + call.function->name + "() is the variable to fill");
  }
  Value value = evaluate(*arguments[1]);
  Bytes bytes;
  if (call.function->special == Special::ReadBinFile) {
    const int error = readFile(path, bytes);
    if (error == 0) assign(*arguments[1], Value::binary(std::move(bytes)));
    return Value::integer(error);
  }
  if (call.function->special == Special::WriteBinFile) return Value::integer(writeFile(path, value.toBinary()));
  if (value.kind() != Kind::List) throw ScriptError(std::string(call.function->name) + "() needs a list");
  if (call.function->special == Special::WriteCsv) {
    const std::string text = writeCsv(value.listRef(), header, separator);
    return Value::integer(writeFile(path, Bytes(text.begin(), text.end())));
  }
  const int error = readFile(path, bytes);
  if (error != 0) return Value::integer(error);
  readCsv({reinterpret_cast<const char*>(bytes.data()), bytes.size()}, header, separator, value.mutableList());
  assign(*arguments[1], value);
  return Value::integer(0);
}

std::size_t Evaluator::beginAtLibrary(Walk& walk, const Path& path) {
  if (path.steps.empty() || path.steps.front().kind != Step::Kind::Call) {
    throw ScriptError("The library " + _source->libraryName() + " answers its static methods only");
  }
  const Step& step = path.steps.front();
  Arguments arguments;
  arguments.values = evaluateAll(step.arguments);
  arguments.changed.assign(arguments.values.size(), false);
  walk.restart(_source->callStatic(step.name, arguments));
  return 1;
}

// `$extobjects.Tabulix.$objects.Workbook.$newref()` or `.$new()`.
std::size_t Evaluator::beginAtExternalObjects(Walk& walk, const Path& path) {
  const auto& steps = path.steps;
  const bool known = steps.size() >= 4 && sameName(steps[0].name, _source->libraryName()) &&
                     sameName(steps[1].name, "$objects") && steps[3].kind == Step::Kind::Call &&
                     (sameName(steps[3].name, "$newref") || sameName(steps[3].name, "$new"));
  if (!known)
    throw ScriptError("$extobjects is written $extobjects." + _source->libraryName() + ".$objects.<class>.$newref()");
  if (!_source->hasClass(steps[2].name)) throw ScriptError("Unknown object class '" + steps[2].name + "'");
  std::shared_ptr<Instance> instance = _source->create(steps[2].name);
  walk.restart(sameName(steps[3].name, "$newref") ? Value::reference(std::move(instance))
                                                  : Value::object(std::move(instance)));
  return 4;
}

std::size_t Evaluator::beginAtFileOps(Walk& walk, const Path& path) {
  if (path.steps.empty() || path.steps.front().kind != Step::Kind::Call || path.steps.front().arguments.size() != 1) {
    throw ScriptError("FileOps knows $doesfileexist(path) and $deletefile(path)");
  }
  const Step& step = path.steps.front();
  const std::string file = evaluate(*step.arguments[0]).toUtf8();
  std::error_code error;
  if (sameName(step.name, "$doesfileexist")) {
    walk.restart(Value::boolean(std::filesystem::exists(file, error)));
  } else if (sameName(step.name, "$deletefile")) {
    const bool regular = std::filesystem::is_regular_file(file, error);
    walk.restart(Value::boolean(regular && std::filesystem::remove(file, error)));
  } else {
    throw ScriptError("FileOps knows $doesfileexist(path) and $deletefile(path)");
  }
  return 1;
}

}  // namespace rubrica::simhost
