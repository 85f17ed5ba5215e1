// The kXL... constants: the translation between their values and the engine's, group by group, and how a constant
// travels as a host value.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <map>

#include "host/host_field.h"

namespace rubrica::host {

// One group of constants whose values count from 1 in the order of their resources.
class ConstantMap {
 public:
  // Values first to last stand for the engine's numbers from `engine` upward.
  struct Run {
    int first;
    int last;
    int engine;
  };

  ConstantMap(std::uint32_t firstResource, std::uint32_t lastResource, std::initializer_list<Run> runs);

  // The engine's number of a value, and the value of an engine's number; 0 for one that is not in the group.
  int forward(int value) const;
  int backward(int engine) const;
  bool isValid(int value) const { return _forward.contains(value); }

  std::uint32_t firstResource() const { return _firstResource; }
  std::uint32_t lastResource() const { return _lastResource; }
  // The resource that names a value. Value 0 gives the number before the group, where no text stands.
  std::uint32_t resourceOf(int value) const { return _firstResource - 1 + static_cast<std::uint32_t>(value); }

 private:
  std::uint32_t _firstResource;
  std::uint32_t _lastResource;
  std::map<int, int> _forward;
  std::map<int, int> _backward;
};

const ConstantMap& paperConstants();
const ConstantMap& cellErrorConstants();
const ConstantMap& colorConstants();
const ConstantMap& numFormatConstants();
const ConstantMap& alignHConstants();
const ConstantMap& alignVConstants();
const ConstantMap& borderStyleConstants();
const ConstantMap& borderDiagonalConstants();
const ConstantMap& fillPatternConstants();
const ConstantMap& scriptConstants();
const ConstantMap& underlineConstants();

// Fills a field with the constant that a resource names.
void constantField(HostField& field, std::uint32_t resource);

// The value of a constant given as a number or by its name without prefix; -1 for a name that is not known.
int readConstant(const HostField& field, std::uint32_t firstResource, std::uint32_t lastResource);

}  // namespace rubrica::host
