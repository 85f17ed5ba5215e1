// Rows of the tables that tell the host which methods, parameters and properties there are. The tables themselves are
// generated from host/resources/.
#pragma once

#include <cstdint>
#include <span>

namespace rubrica::host {

struct ParameterRow {
  std::uint32_t nameResource;
  std::int32_t type;
  std::int32_t flags;
  std::int32_t flags2;
};

struct MethodRow {
  std::uint32_t id;
  std::uint32_t nameResource;
  std::int32_t returnType;
  std::int32_t parameterCount;
  const ParameterRow* parameters;
  std::int32_t flags;
  std::int32_t flags2;
};

struct PropertyRow {
  std::uint32_t id;
  std::uint32_t nameResource;
  std::int32_t type;
  std::int32_t flags;
  std::int32_t reserved;
  std::uint32_t firstConstant;
  std::uint32_t lastConstant;
};

std::span<const MethodRow> workbookMethods();
std::span<const PropertyRow> workbookProperties();
std::span<const MethodRow> worksheetMethods();
std::span<const PropertyRow> worksheetProperties();
std::span<const MethodRow> cellMethods();
std::span<const PropertyRow> cellProperties();
std::span<const MethodRow> formatMethods();
std::span<const PropertyRow> formatProperties();
std::span<const MethodRow> fontMethods();
std::span<const PropertyRow> fontProperties();
std::span<const MethodRow> staticMethods();

}  // namespace rubrica::host
