#include "simhost/resolver.h"

#include <optional>
#include <unordered_map>

#include "simhost/instance.h"
#include "simhost/script_error.h"

namespace rubrica::simhost {

namespace {

using SlotMap = std::unordered_map<std::string, std::size_t>;

SlotMap slotsOf(const Method& method) {
  SlotMap slots;
  for (std::size_t i = 0; i < method.variables.size(); ++i) slots.emplace(nameKey(method.variables[i].name), i);
  return slots;
}

bool resolveRoot(Name& name, const ObjectSource* source) {
  if (findConstant(name.name, name.constant)) {
    name.kind = Name::Kind::Constant;
    return true;
  }
  if (sameName(name.name, "FileOps")) {
    name.kind = Name::Kind::FileOps;
    return true;
  }
  if (sameName(name.name, "$ref")) {
    name.kind = Name::Kind::ListReference;
    return true;
  }
  if (source == nullptr) return false;
  if (const auto constant = source->constant(name.name)) {
    name.kind = Name::Kind::Constant;
    name.constant = *constant;
    return true;
  }
  if (sameName(name.name, source->libraryName())) {
    name.kind = Name::Kind::Library;
    return true;
  }
  if (sameName(name.name, "$extobjects")) {
    name.kind = Name::Kind::ExternalObjects;
    return true;
  }
  return false;
}

struct UnknownWord {
  std::string message;
  int line;
};

// Walks the statements of a block without recursion into expressions; blocks nest no deeper than the parser allows.
class CallResolver {
 public:
  explicit CallResolver(const Program& program) {
    for (std::size_t i = 1; i < program.methods.size(); ++i) {
      if (program.methods[i].object.empty()) _methods.emplace(nameKey(program.methods[i].name), i);
    }
  }

  const std::optional<UnknownWord>& unknown() const { return _unknown; }

  void run(Block& block) {
    for (Stmt& stmt : block) {
      if (auto* call = std::get_if<DoMethodStmt>(&stmt.node)) resolve(*call, stmt.line);
      if (auto* node = std::get_if<IfStmt>(&stmt.node)) {
        for (auto& branch : node->branches) run(branch.body);
      }
      if (auto* node = std::get_if<SwitchStmt>(&stmt.node)) {
        for (auto& branch : node->cases) run(branch.body);
      }
      if (auto* node = std::get_if<ForStmt>(&stmt.node)) run(node->body);
      if (auto* node = std::get_if<ForEachLineStmt>(&stmt.node)) run(node->body);
      if (auto* node = std::get_if<WhileStmt>(&stmt.node)) run(node->body);
      if (auto* node = std::get_if<RepeatStmt>(&stmt.node)) run(node->body);
    }
  }

 private:
  void resolve(DoMethodStmt& call, int line) {
    const auto found = _methods.find(nameKey(call.name));
    if (found != _methods.end()) {
      call.method = found->second;
    } else if (!_unknown || line < _unknown->line) {
      _unknown = UnknownWord{"Unknown method '" + call.name + "'", line};
    }
  }

  SlotMap _methods;
  std::optional<UnknownWord> _unknown;
};

std::optional<UnknownWord> resolveNames(Program& program, const std::vector<NameUse>& names,
                                        const ObjectSource* source) {
  const SlotMap globals = slotsOf(program.main());
  std::vector<SlotMap> locals;
  for (const Method& method : program.methods) locals.push_back(slotsOf(method));
  for (const NameUse& use : names) {
    auto& name = std::get<Name>(std::get<Path>(use.expression->node).base);
    const std::string key = nameKey(name.name);
    const SlotMap& own = locals[use.method];
    if (const auto local = own.find(key); use.method != 0 && local != own.end()) {
      name.kind = Name::Kind::Local;
      name.slot = local->second;
    } else if (const auto global = globals.find(key); global != globals.end()) {
      name.kind = Name::Kind::Global;
      name.slot = global->second;
    } else if (!resolveRoot(name, source)) {
      return UnknownWord{"Unknown word '" + name.name + "'", use.line};
    }
  }
  return std::nullopt;
}

}  // namespace

void resolveWords(Program& program, const std::vector<NameUse>& names, const ObjectSource* source) {
  std::optional<UnknownWord> first = resolveNames(program, names, source);
  CallResolver calls(program);
  for (Method& method : program.methods) calls.run(method.body);
  if (calls.unknown() && (!first || calls.unknown()->line < first->line)) first = calls.unknown();
  if (first) throw ScriptError(first->message, first->line);
}

}  // namespace rubrica::simhost
