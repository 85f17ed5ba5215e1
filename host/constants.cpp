#include "host/constants.h"

#include <charconv>
#include <string>
#include <unordered_map>

#include "host/host_services.h"
#include "host/text.h"

namespace rubrica::host {
namespace {

constexpr std::uint32_t kPrefixResource = 23000;

// The name in a row "Group~Name:Value:Name:Description".
std::u32string_view nameOf(std::u32string_view row) {
  if (const std::size_t tilde = row.find(U'~'); tilde != row.npos) row.remove_prefix(tilde + 1);
  return row.substr(0, row.find(U':'));
}

// The number between the first and the second colon.
int valueOf(std::u32string_view row) {
  const std::size_t colon = row.find(U':');
  if (colon == row.npos) return 0;
  const std::u32string_view rest = row.substr(colon + 1);
  const std::string digits = utf8FromUtf32(rest.substr(0, rest.find(U':')));
  int value = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return value;
}

}  // namespace

ConstantMap::ConstantMap(std::uint32_t firstResource, std::uint32_t lastResource, std::initializer_list<Run> runs)
    : _firstResource(firstResource), _lastResource(lastResource) {
  for (const Run& run : runs) {
    for (int value = run.first; value <= run.last; ++value) _forward[value] = run.engine + value - run.first;
  }
  for (const auto& [value, engine] : _forward) _backward[engine] = value;
}

int ConstantMap::forward(int value) const {
  const auto found = _forward.find(value);
  return found != _forward.end() ? found->second : 0;
}

int ConstantMap::backward(int engine) const {
  const auto found = _backward.find(engine);
  return found != _backward.end() ? found->second : 0;
}

const ConstantMap& paperConstants() {
  static const ConstantMap map(23050, 23091, {{1, 42, 0}});
  return map;
}

const ConstantMap& cellErrorConstants() {
  static const ConstantMap map(
      23107, 23114, {{1, 1, 0}, {2, 2, 7}, {3, 3, 15}, {4, 4, 23}, {5, 5, 29}, {6, 6, 36}, {7, 7, 42}, {8, 8, 255}});
  return map;
}

const ConstantMap& colorConstants() {
  static const ConstantMap map(23150, 23209, {{1, 58, 8}, {59, 59, 81}, {60, 60, 32767}});
  return map;
}

const ConstantMap& numFormatConstants() {
  static const ConstantMap map(23250, 23285, {{1, 23, 0}, {24, 36, 37}});
  return map;
}

const ConstantMap& alignHConstants() {
  static const ConstantMap map(23300, 23307, {{1, 8, 0}});
  return map;
}

const ConstantMap& alignVConstants() {
  static const ConstantMap map(23350, 23354, {{1, 5, 0}});
  return map;
}

const ConstantMap& borderStyleConstants() {
  static const ConstantMap map(23400, 23413, {{1, 14, 0}});
  return map;
}

const ConstantMap& borderDiagonalConstants() {
  static const ConstantMap map(23450, 23453, {{1, 4, 0}});
  return map;
}

const ConstantMap& fillPatternConstants() {
  static const ConstantMap map(23500, 23518, {{1, 19, 0}});
  return map;
}

const ConstantMap& scriptConstants() {
  static const ConstantMap map(23550, 23552, {{1, 3, 0}});
  return map;
}

const ConstantMap& underlineConstants() {
  static const ConstantMap map(23600, 23604, {{1, 3, 0}, {4, 5, 33}});
  return map;
}

void constantField(HostField& field, std::uint32_t resource) {
  std::u32string name = resourceText(kPrefixResource);
  name += nameOf(resourceText(resource));
  field.setConstant(name);
}

int readConstant(const HostField& field, std::uint32_t firstResource, std::uint32_t lastResource) {
  const std::int32_t type = field.type();
  if (type == kind::integer || type == kind::constant) return field.integer();

  // One table for all groups, which grows group by group as their names are asked for.
  static std::unordered_map<std::u32string, int> values;
  const std::u32string name = field.utf32();
  if (const auto found = values.find(name); found != values.end()) return found->second;
  for (std::uint32_t id = firstResource; id <= lastResource; ++id) {
    const std::u32string row = resourceText(id);
    if (!row.empty()) values.emplace(nameOf(row), valueOf(row));
  }
  const auto found = values.find(name);
  return found != values.end() ? found->second : -1;
}

}  // namespace rubrica::host
