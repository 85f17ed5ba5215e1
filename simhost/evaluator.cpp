#include "simhost/evaluator.h"

#include "simhost/instance.h"
#include "simhost/operators.h"
#include "simhost/script_error.h"

namespace rubrica::simhost {

namespace {

bool isNotation(const Step& step) {
  return step.kind != Step::Kind::Index && step.name.starts_with('$');
}

// A step that only moves the place: `.3`, `.[i]`, `.name`, `.$cols`.
bool isNavigation(const Step& step) {
  return step.kind == Step::Kind::Index ||
         (step.kind == Step::Kind::Member && (!isNotation(step) || sameName(step.name, "$cols")));
}

}  // namespace

Depth::Depth(int& depth) : _depth(depth) {
  if (++_depth > most) {
    --_depth;
    throw ScriptError("The script calls itself too deeply");
  }
}

Value Evaluator::evaluate(const Expr& expression) {
  if (const auto* literal = std::get_if<Literal>(&expression.node)) return literal->value;
  const Depth depth(_depth);
  if (const auto* path = std::get_if<Path>(&expression.node)) return evaluatePath(*path);
  if (const auto* chain = std::get_if<Chain>(&expression.node)) return evaluateChain(*chain);
  const auto& unary = std::get<Unary>(expression.node);
  const Value operand = evaluate(*unary.operand);
  if (unary.op == Unary::Operator::Not) return Value::boolean(!operand.toBoolean());
  return applied(Operator::Subtract, Value::integer(0),
                 operand.kind() == Kind::Character ? Value::number(operand.toNumber()) : operand);
}

Value Evaluator::evaluateChain(const Chain& chain) {
  Value result = evaluate(*chain.first);
  for (const auto& [op, operand] : chain.rest) {
    // The second operand of | and & is only looked at where it decides.
    if (op == Operator::Or && result.toBoolean()) return Value::boolean(true);
    if (op == Operator::And && !result.toBoolean()) return Value::boolean(false);
    result = applied(op, result, evaluate(*operand));
  }
  return result;
}

std::vector<Value> Evaluator::evaluateAll(const std::vector<ExprPtr>& expressions) {
  std::vector<Value> values;
  values.reserve(expressions.size());
  for (const ExprPtr& expression : expressions) values.push_back(evaluate(*expression));
  return values;
}

Variable& Evaluator::variable(const Name& name) {
  Frame& frame = name.kind == Name::Kind::Local ? *_locals : *_globals;
  return frame[name.slot].target();
}

Variable* Evaluator::variableOf(const Expr& expression) {
  const auto* path = std::get_if<Path>(&expression.node);
  if (path == nullptr || !path->steps.empty()) return nullptr;
  const auto* name = std::get_if<Name>(&path->base);
  if (name == nullptr || (name->kind != Name::Kind::Local && name->kind != Name::Kind::Global)) return nullptr;
  return &variable(*name);
}

Value Evaluator::evaluatePath(const Path& path) {
  if (path.steps.empty()) {
    if (const auto* call = std::get_if<FunctionCall>(&path.base)) return callFunction(*call);
  }
  if (!path.steps.empty() && path.steps.back().kind == Step::Kind::Call &&
      sameName(path.steps.back().name, "$assign")) {
    const Step& last = path.steps.back();
    if (last.arguments.size() != 1) throw ScriptError("$assign() takes one parameter");
    assignSteps(path, path.steps.size() - 1, evaluate(*last.arguments[0]));
    return Value::boolean(true);
  }
  Walk walk;
  advance(walk, path, path.steps.size());
  if (walk.pending.empty()) return walk.start == &walk.result ? std::move(walk.result) : *walk.start;
  return read(navigate(walk, false));
}

std::size_t Evaluator::begin(Walk& walk, const Path& path) {
  if (const auto* call = std::get_if<FunctionCall>(&path.base)) {
    walk.restart(callFunction(*call));
    return 0;
  }
  if (const auto* inner = std::get_if<ExprPtr>(&path.base)) {
    walk.restart(evaluate(**inner));
    return 0;
  }
  return beginAtName(walk, path, std::get<Name>(path.base));
}

std::size_t Evaluator::beginAtName(Walk& walk, const Path& path, const Name& name) {
  switch (name.kind) {
    case Name::Kind::Local:
    case Name::Kind::Global:
      walk.start = &_variables.use(variable(name));
      return 0;
    case Name::Kind::Constant:
      walk.restart(name.constant);
      return 0;
    case Name::Kind::Library:
      return beginAtLibrary(walk, path);
    case Name::Kind::ExternalObjects:
      return beginAtExternalObjects(walk, path);
    case Name::Kind::FileOps:
      return beginAtFileOps(walk, path);
    case Name::Kind::ListReference: {
      const bool one = !path.steps.empty() && path.steps.front().kind == Step::Kind::Member;
      if (!one || !_searched.isList()) throw ScriptError("$ref.column has a meaning within $search() and $sort() only");
      const List& list = _searched.listRef();
      walk.restart(list.at(_searchedLine, requiredColumn(list, path.steps.front().name)));
      return 1;
    }
    case Name::Kind::Unresolved:
      break;
  }
  throw ScriptError("Unknown word '" + name.name + "'");
}

void Evaluator::advance(Walk& walk, const Path& path, std::size_t end) {
  for (std::size_t i = begin(walk, path); i < end; ++i) {
    const Step& step = path.steps[i];
    if (!isNavigation(step)) {
      walk.restart(act(walk, step));
      continue;
    }
    Value index;
    if (step.kind == Step::Kind::Index) index = evaluate(*step.arguments[0]);
    walk.pending.push_back({&step, std::move(index)});
    if (step.kind == Step::Kind::Index && walk.pending.back().index.kind() == Kind::Character) {
      // `.[text]` may name a property of an object, which is a call and not a place.
      Pending last = std::move(walk.pending.back());
      walk.pending.pop_back();
      const Place place = navigate(walk, false);
      if (!place.isPart() && place.value->isObject()) {
        const Step property{Step::Kind::Member, last.index.toUtf8(), {}};
        walk.restart(act(walk, property));
      } else {
        walk.pending.push_back(std::move(last));
      }
    }
  }
}

Evaluator::Place Evaluator::navigate(Walk& walk, bool forWriting) {
  Place place;
  place.value = walk.start;
  for (const Pending& pending : walk.pending) navigateStep(place, pending, walk, forWriting);
  return place;
}

void Evaluator::navigateColumn(Place& place, std::size_t column, Walk& walk, bool forWriting) {
  const bool isRow = place.value->kind() == Kind::Row;
  const List& list = place.value->listRef();
  std::size_t line = place.part.part == ListPlace::Part::Line ? place.part.line : list.currentLine();
  if (isRow) line = 1;
  if (!list.has(line, column)) {
    if (forWriting) {
      throw ScriptError("The list has no line " + std::to_string(line) + "; it has " +
                        std::to_string(list.lineCount()));
    }
    // A line that isn't there reads as empty.
    walk.missing = Value::emptyOf(list.column(column).kind, list.column(column).subtype);
    place = {};
    place.value = &walk.missing;
    return;
  }
  // Only a write makes the content this variable's own; reading from the shared content needs no copy.
  List& owner = forWriting ? place.value->mutableList() : const_cast<List&>(list);
  place = {};
  place.owner = &owner;
  place.line = line;
  place.column = column;
  place.value = &owner.at(line, column);
}

void Evaluator::navigateStep(Place& place, const Pending& pending, Walk& walk, bool forWriting) {
  if (!place.value->isList() || place.part.part == ListPlace::Part::Column) {
    const std::string shown = pending.step->kind == Step::Kind::Index ? "[...]" : pending.step->name;
    throw ScriptError(std::string("'.") + shown + "' needs a list or a row, not a " + kindName(place.value->kind()));
  }
  const List& list = place.value->listRef();
  const bool isRow = place.value->kind() == Kind::Row;
  const bool named = pending.step->kind == Step::Kind::Member || pending.index.kind() == Kind::Character;
  const std::string name = pending.step->kind == Step::Kind::Member ? pending.step->name : pending.index.toUtf8();
  if (named && sameName(name, "$cols")) {
    if (place.isPart()) throw ScriptError("$cols belongs to a list or a row");
    place.part.part = ListPlace::Part::Columns;
    return;
  }
  const std::int64_t number = named ? 0 : pending.index.toInteger();
  const auto columnNumber = [&]() -> std::size_t {
    if (named) return requiredColumn(list, name);
    if (number < 1 || number > static_cast<std::int64_t>(list.columnCount())) {
      throw ScriptError("The list has no column " + std::to_string(number) + "; it has " +
                        std::to_string(list.columnCount()));
    }
    return static_cast<std::size_t>(number);
  };
  if (place.part.part == ListPlace::Part::Columns) {
    place.part = {ListPlace::Part::Column, 0, columnNumber()};
  } else if (named || isRow || place.part.part == ListPlace::Part::Line) {
    navigateColumn(place, columnNumber(), walk, forWriting);
  } else {
    place.part = {ListPlace::Part::Line, static_cast<std::size_t>(std::max<std::int64_t>(number, 0)), 0};
  }
}

Value Evaluator::read(const Place& place) {
  if (!place.isPart()) return *place.value;
  const List& list = place.value->listRef();
  if (place.part.part == ListPlace::Part::Line) {
    if (list.has(place.part.line, 1)) return Value::row(list.rowOf(place.part.line));
    throw ScriptError("The list has no line " + std::to_string(place.part.line) + "; it has " +
                      std::to_string(list.lineCount()));
  }
  throw ScriptError("A group of columns has no value of its own");
}

Value Evaluator::act(Walk& walk, const Step& step) {
  const Place place = navigate(walk, false);
  if (!place.isPart() && place.value->isObject()) {
    if (place.value->kind() == Kind::ObjectReference && step.kind == Step::Kind::Call &&
        (sameName(step.name, "$deleteref") || sameName(step.name, "$validref"))) {
      return callReference(walk, step);
    }
    const std::shared_ptr<Instance> instance = place.value->instance();
    if (instance == nullptr) throw ScriptError("There is no object to answer " + step.name);
    if (step.kind == Step::Kind::Call) return callObject(instance, step);
    return instance->property(step.name);
  }
  if (place.value->isList()) {
    if (step.kind == Step::Kind::Call) return callList(walk, step);
    return listProperty(place.value->listRef(), place.value->kind() == Kind::Row, place.part, step.name);
  }
  // A call that failed answered nothing and told so through $error; what the rest of the path asks of it is nothing.
  if (place.value->kind() == Kind::None) return {};
  throw ScriptError(std::string("A ") + kindName(place.value->kind()) + " has no '" + step.name + "'");
}

Value Evaluator::callObject(const std::shared_ptr<Instance>& instance, const Step& step) {
  Arguments arguments;
  arguments.values = evaluateAll(step.arguments);
  arguments.changed.assign(arguments.values.size(), false);
  Value result = instance->call(step.name, arguments);
  for (std::size_t i = 0; i < step.arguments.size(); ++i) {
    if (!arguments.changed[i]) continue;
    const auto* path = std::get_if<Path>(&step.arguments[i]->node);
    const bool assignable = path != nullptr && std::holds_alternative<Name>(path->base) &&
                            std::get<Name>(path->base).kind != Name::Kind::Constant;
    if (assignable) assign(*step.arguments[i], arguments.values[i]);
  }
  return result;
}

Value Evaluator::callReference(Walk& walk, const Step& step) {
  Place place = navigate(walk, true);
  if (sameName(step.name, "$validref")) return Value::boolean(place.value->instance() != nullptr);
  *place.value = Value::reference(nullptr);
  return Value::boolean(true);
}

void Evaluator::assign(const Expr& target, const Value& value) {
  const auto& path = std::get<Path>(target.node);
  assignSteps(path, path.steps.size(), value);
}

void Evaluator::assignSteps(const Path& path, std::size_t count, const Value& value) {
  const Depth depth(_depth);
  if (count == 0) {
    const auto* name = std::get_if<Name>(&path.base);
    if (name == nullptr || (name->kind != Name::Kind::Local && name->kind != Name::Kind::Global)) {
      throw ScriptError(name == nullptr ? "Only variables and properties can be assigned to"
                                        : "'" + name->name + "' can't be assigned to");
    }
    _variables.assign(variable(*name), value);
    return;
  }
  Walk walk;
  advance(walk, path, count - 1);
  assignPlace(walk, path.steps[count - 1], value);
}

void Evaluator::assignPlace(Walk& walk, const Step& last, const Value& value) {
  Step step{last.kind, last.name, {}};
  Value index;
  if (last.kind == Step::Kind::Index) {
    index = evaluate(*last.arguments[0]);
    if (index.kind() == Kind::Character) step = {Step::Kind::Member, index.toUtf8(), {}};
  }
  const Place before = navigate(walk, false);
  if (!before.isPart() && before.value->isObject()) {
    const std::shared_ptr<Instance> instance = before.value->instance();
    if (instance == nullptr) throw ScriptError("There is no object to assign " + step.name + " to");
    instance->setProperty(step.name, value);
    return;
  }
  if (isNotation(step) && before.value->isList()) {
    const Place place = navigate(walk, true);
    const bool isRow = place.value->kind() == Kind::Row;
    setListProperty(place.value->mutableList(), isRow, place.part, step.name, value);
    return;
  }
  walk.pending.push_back({&step, std::move(index)});
  const Place place = navigate(walk, true);
  if (place.owner == nullptr) throw ScriptError("Use $assignrow() to assign a whole line");
  const Column& column = place.owner->column(place.column);
  *place.value = _variables.forCell(value, column.kind, column.subtype);
}

std::size_t Evaluator::lineCount(const Expr& list) {
  const Value value = evaluate(list);
  if (!value.isList())
    throw ScriptError(std::string("A loop over lines needs a list, not a ") + kindName(value.kind()));
  return value.listRef().lineCount();
}

void Evaluator::setCurrentLine(const Expr& list, std::size_t line) {
  Walk walk;
  const auto& path = std::get<Path>(list.node);
  advance(walk, path, path.steps.size());
  const Place place = navigate(walk, true);
  if (!place.value->isList()) throw ScriptError("A loop over lines needs a list");
  place.value->mutableList().setCurrentLine(line);
}

}  // namespace rubrica::simhost
