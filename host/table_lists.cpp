#include "host/table_lists.h"

#include <string>
#include <utility>

#include "host/host_services.h"

namespace rubrica::host {
namespace {

struct ObjectRow {
  std::uint32_t id;
  std::int32_t flags;
  std::uint32_t groupResource;
};

constexpr std::uint32_t kGroupResource = 1001;
constexpr ObjectRow kObjects[] = {{classid::workbook, 0, kGroupResource},
                                  {classid::worksheet, 0, kGroupResource},
                                  {classid::cell, 0, kGroupResource},
                                  {classid::font, 0, kGroupResource},
                                  {classid::format, 0, kGroupResource}};

constexpr std::uint32_t kFirstConstantResource = 23001, kLastConstantResource = 24999;
constexpr std::uint32_t kLastResource = 32767;

// Fills a new list row after row, cell after cell.
class ListBuilder {
 public:
  explicit ListBuilder(HostCall& call) : _list(HostList::make(call.context())) {}

  ListBuilder& numberColumn(std::u32string_view name) { return column(name, {kind::integer, 0, 0}); }
  ListBuilder& textColumn(std::u32string_view name) { return column(name, {kind::character, 0, kLongTextLength}); }
  ListBuilder& listColumn(std::u32string_view name) { return column(name, {kind::list, 0, 0}); }

  ListBuilder& row() {
    _row = _list.addRow();
    _column = 0;
    return *this;
  }
  ListBuilder& number(std::int64_t value) {
    next().setInteger(static_cast<std::int32_t>(value));
    return *this;
  }
  ListBuilder& text(std::u32string_view value) {
    next().setUtf32(value);
    return *this;
  }
  ListBuilder& resource(std::uint32_t id) { return text(resourceText(id)); }
  ListBuilder& list(HostList value) {
    HostField field = next();
    value.giveTo(field);
    return *this;
  }

  HostList take() { return std::move(_list); }

 private:
  ListBuilder& column(std::u32string_view name, const HostList::ColumnType& type) {
    _list.addColumn(name, type);
    return *this;
  }
  HostField next() { return _list.bindCell(_row, ++_column); }

  HostList _list;
  std::int32_t _row = 0;
  std::int32_t _column = 0;
};

HostList parameterList(HostCall& call, const MethodRow& method) {
  ListBuilder builder(call);
  builder.textColumn(U"name").numberColumn(U"kind").numberColumn(U"flags").numberColumn(U"flags2");
  for (const ParameterRow& row : std::span(method.parameters, static_cast<std::size_t>(method.parameterCount))) {
    builder.row().resource(row.nameResource).number(row.type).number(row.flags).number(row.flags2);
  }
  return builder.take();
}

}  // namespace

int listObjects(HostCall& call) {
  ListBuilder builder(call);
  builder.numberColumn(U"id").textColumn(U"name").numberColumn(U"flags").textColumn(U"group");
  std::u32string previousGroup;
  for (const ObjectRow& row : kObjects) {
    std::u32string group = resourceText(row.groupResource);
    builder.row().number(row.id).resource(row.id).number(row.flags);
    builder.text(group == previousGroup ? U"" : group);
    previousGroup = std::move(group);
  }
  call.returnList(builder.take());
  return 1;
}

int listMethodTable(HostCall& call, std::span<const MethodRow> rows) {
  ListBuilder builder(call);
  builder.numberColumn(U"id").textColumn(U"name").numberColumn(U"returns").numberColumn(U"flags");
  builder.numberColumn(U"flags2").listColumn(U"parameters");
  for (const MethodRow& row : rows) {
    builder.row().number(row.id).resource(row.nameResource).number(row.returnType);
    builder.number(row.flags).number(row.flags2).list(parameterList(call, row));
  }
  call.returnList(builder.take());
  return 1;
}

int listPropertyTable(HostCall& call, std::span<const PropertyRow> rows) {
  ListBuilder builder(call);
  builder.numberColumn(U"id").textColumn(U"name").numberColumn(U"kind").numberColumn(U"flags");
  builder.numberColumn(U"reserved").numberColumn(U"firstConstant").numberColumn(U"lastConstant");
  for (const PropertyRow& row : rows) {
    builder.row().number(row.id).resource(row.nameResource).number(row.type).number(row.flags);
    builder.number(row.reserved).number(row.firstConstant).number(row.lastConstant);
  }
  call.returnList(builder.take());
  return 1;
}

int listConstants(HostCall& call) {
  ListBuilder builder(call);
  builder.numberColumn(U"id").textColumn(U"name");
  for (std::uint32_t id = kFirstConstantResource; id <= kLastConstantResource; ++id) {
    const std::u32string text = resourceText(id);
    if (!text.empty()) builder.row().number(id).text(text);
  }
  call.returnList(builder.take());
  return 1;
}

void listStrings(Word wParam, Word lParam) {
  for (std::uint32_t id = 1; id <= kLastResource; ++id) {
    const std::u32string text = resourceText(id);
    if (!text.empty()) services().resources->collectString(wParam, lParam, id, text.data(), text.size());
  }
}

}  // namespace rubrica::host
