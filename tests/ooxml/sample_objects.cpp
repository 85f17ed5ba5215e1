#include "tests/ooxml/sample_objects.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "lmx/driver.h"
#include "source/ooxml/packed_cell.h"
#include "source/ooxml/packed_string.h"

namespace rubrica::ooxml_tests {

namespace {

using lmx::particle_kind;
using lmx::value_kind;

constexpr int kDeepest = 4;  // optional children are filled down to here; beyond, only what is required

std::string sampleText(const lmx::simple_type& type) {
  if (type.members) return sampleText(*type.members[0]);
  if (type.enumeration) return type.enumeration[0];
  const std::string name = type.name;
  if (name == "xsd:anyURI") return "urn:sample";
  if (name == "ST_ContentType") return "application/xml";
  if (type.pattern && name.find("Guid") != std::string::npos) return "{01234567-89AB-CDEF-0123-456789ABCDEF}";
  if (type.pattern && name.find("Measure") != std::string::npos) return "12.5mm";
  if (type.pattern) return "xml";
  switch (type.kind) {
    case value_kind::text:
      return "t<&> \xC3\xA4";
    default:
      return type.limits && type.limits->has_min ? std::to_string(type.limits->min) : "1";
  }
}

std::int64_t sampleNumber(const lmx::simple_type& type) {
  if (type.enumeration) return std::stoll(type.enumeration[0]);
  return type.limits && type.limits->has_max ? type.limits->max : 7;
}

std::vector<std::uint8_t> sampleBytes(const lmx::simple_type& type) {
  return std::vector<std::uint8_t>(type.limits && type.limits->min_length ? type.limits->min_length : 3, 0xAB);
}

template <class T>
T sampleValue(const lmx::simple_type& type) {
  if constexpr (std::is_same_v<T, std::string>) {
    return sampleText(type);
  } else if constexpr (std::is_same_v<T, lmx::c_binary>) {
    return {sampleBytes(type)};
  } else if constexpr (std::is_same_v<T, lmx::c_datetime>) {
    return {"2026-11-20T22:57:27"};
  } else if constexpr (std::is_same_v<T, double>) {
    return 1.5;
  } else if constexpr (std::is_same_v<T, bool>) {
    return true;
  } else if constexpr (std::is_same_v<T, lmx::c_empty>) {
    return {};
  } else {
    return static_cast<T>(sampleNumber(type));
  }
}

// Calls `use` with a value of the member type that belongs to the kind.
template <class Use>
void withType(value_kind kind, Use use) {
  switch (kind) {
    case value_kind::boolean:
      return use(bool{});
    case value_kind::int8:
      return use(std::int8_t{});
    case value_kind::uint8:
      return use(std::uint8_t{});
    case value_kind::int16:
      return use(std::int16_t{});
    case value_kind::uint16:
      return use(std::uint16_t{});
    case value_kind::int32:
      return use(std::int32_t{});
    case value_kind::uint32:
      return use(std::uint32_t{});
    case value_kind::int64:
      return use(std::int64_t{});
    case value_kind::uint64:
      return use(std::uint64_t{});
    case value_kind::float64:
      return use(double{});
    case value_kind::text:
      return use(std::string{});
    case value_kind::base64:
    case value_kind::hex:
      return use(lmx::c_binary{});
    case value_kind::datetime:
      return use(lmx::c_datetime{});
    case value_kind::empty:
      return use(lmx::c_empty{});
  }
}

class sampler {
 public:
  sampler(fullness how, unsigned branch) : _how(how), _branch(branch) {}

  void fill(lmx::object& object, int depth) {
    const lmx::class_descriptor& type = object.descriptor();
    if (auto* cell = dynamic_cast<ooxml::packed_cell*>(&object)) {
      fillCell(*cell);
      return;
    }
    if (auto* item = dynamic_cast<ooxml::packed_string*>(&object)) {
      if (_how == fullness::full) item->set_t("t<&> \xC3\xA4");
      return;
    }
    auto* base = static_cast<std::byte*>(object.field_base());
    auto* present = reinterpret_cast<std::uint32_t*>(base + type.present_offset);
    const bool all = _how == fullness::full && depth <= kDeepest;
    for (std::uint16_t i = 0; i < type.attribute_count; ++i) {
      const lmx::attribute& row = type.attributes[i];
      if (all || (row.flags & lmx::kRequired))
        setValue(*row.type, row.flags & lmx::kList, base + row.offset, present, row.bit);
    }
    makeIdsUnique(type, base);
    if (type.body) setValue(*type.body->type, false, base + type.body->offset, present, type.body->bit);
    fillRows(std::span(type.particles, type.particle_count), base, present, all, depth);
  }

 private:
  void fillCell(ooxml::packed_cell& cell) const {
    if (_how == fullness::minimal) return;
    cell.set_position(6, 2);
    cell.set_s(3);
    cell.set_t("str");
    cell.set_v("text that is longer than what a cell holds itself");
    cell.set_f("A1<B2&\"text\"");
    cell.set_cm(1);
    cell.set_vm(2);
    cell.set_ph(true);
  }

  void makeIdsUnique(const lmx::class_descriptor& type, std::byte* base) {
    for (std::uint16_t i = 0; i < type.attribute_count; ++i) {
      const lmx::attribute& row = type.attributes[i];
      if (std::string_view(row.type->name) != "xsd:ID") continue;
      *reinterpret_cast<std::string*>(base + row.offset) = "id" + std::to_string(++_ids);
    }
  }

  static void setValue(const lmx::simple_type& type, bool list, std::byte* at, std::uint32_t* present, unsigned bit) {
    withType(type.kind, [&](auto zero) {
      using T = decltype(zero);
      if (list) {
        addValues(type, 2, at);
        if constexpr (std::is_same_v<T, std::string>) {
          *reinterpret_cast<std::vector<T>*>(at) = {"A1", "B2:C3"};  // items hold no blanks
        }
      } else {
        *reinterpret_cast<T*>(at) = sampleValue<T>(type);
      }
    });
    lmx::set_present(present, bit);
  }

  static void addValues(const lmx::simple_type& type, std::size_t count, std::byte* at) {
    withType(type.kind, [&](auto zero) {
      using T = decltype(zero);
      using Stored = std::conditional_t<std::is_same_v<T, bool>, std::uint8_t, T>;
      reinterpret_cast<std::vector<Stored>*>(at)->assign(count, Stored(sampleValue<T>(type)));
    });
  }

  std::size_t countOf(const lmx::particle& row, bool all) const {
    if (!all) return row.min_occurs;
    return std::max<std::size_t>(row.min_occurs, std::min<std::size_t>(row.max_occurs, 2));
  }

  void fillRows(std::span<const lmx::particle> rows, std::byte* base, std::uint32_t* present, bool all, int depth) {
    for (std::size_t i = 0; i < rows.size(); i += 1 + rows[i].span) {
      const lmx::particle& row = rows[i];
      const auto inside = rows.subspan(i + 1, row.span);
      if (row.kind == particle_kind::choice) {
        if (all || row.min_occurs > 0) fillRows(branchOf(inside), base, present, true, depth);
      } else if (row.kind == particle_kind::sequence) {
        if (all || row.min_occurs > 0) fillRows(inside, base, present, all, depth);
      } else {
        fillMember(row, base, present, all, depth);
      }
    }
  }

  std::span<const lmx::particle> branchOf(std::span<const lmx::particle> rows) const {
    std::vector<std::span<const lmx::particle>> branches;
    for (std::size_t i = 0; i < rows.size(); i += 1 + rows[i].span)
      branches.push_back(rows.subspan(i, 1U + rows[i].span));
    return branches[_branch % branches.size()];
  }

  void fillMember(const lmx::particle& row, std::byte* base, std::uint32_t* present, bool all, int depth) {
    const std::size_t count = countOf(row, all);
    if (count == 0) return;
    std::byte* at = base + row.offset;
    switch (row.kind) {
      case particle_kind::value:
        return setValue(*row.type, false, at, present, row.bit);
      case particle_kind::values:
        return addValues(*row.type, count, at);
      case particle_kind::any:
        return addAny(*reinterpret_cast<std::vector<lmx::any_item>*>(at), count);
      case particle_kind::group:
        return setGroup(*row.target, *reinterpret_cast<lmx::owned*>(at), depth);
      case particle_kind::child:
        return reinterpret_cast<lmx::owned*>(at)->reset(make(*row.target, depth + 1));
      case particle_kind::block:
        for (std::size_t i = 0; i < count; ++i) fill(row.target->block->append(at), depth + 1);
        return;
      default:
        break;
    }
    auto& children = *reinterpret_cast<std::vector<lmx::owned>*>(at);
    for (std::size_t i = 0; i < count; ++i) children.emplace_back(make(*row.target, depth + 1));
  }

  // An empty group leaves no trace in a document, so none is made.
  void setGroup(const lmx::class_descriptor& type, lmx::owned& slot, int depth) {
    slot.reset(make(type, depth + 1));
    const lmx::owned bare(type.create());
    if (lmx::equal(*slot.get(), *bare.get())) slot.reset();
  }

  static void addAny(std::vector<lmx::any_item>& items, std::size_t count) {
    lmx::any_item item;
    item.namespace_uri = "urn:sample";
    item.name = "x:sample";
    item.attributes = {{"a", "1"}};
    item.text = "<x:sample xmlns:x=\"urn:sample\" a=\"1\">text<x:inner/></x:sample>";
    items.assign(count, item);
  }

  lmx::object* make(const lmx::class_descriptor& type, int depth) {
    lmx::object* object = type.create();
    fill(*object, depth);
    return object;
  }

  fullness _how;
  unsigned _branch;
  unsigned _ids = 0;
};

}  // namespace

std::unique_ptr<lmx::object> makeSample(const lmx::class_descriptor& type, fullness how, unsigned branch) {
  std::unique_ptr<lmx::object> object(type.create());
  sampler(how, branch).fill(*object, 0);
  return object;
}

unsigned branchCount(const lmx::class_descriptor& type) {
  unsigned most = 1;
  for (std::uint16_t i = 0; i < type.particle_count; ++i) {
    const lmx::particle& row = type.particles[i];
    if (row.kind == particle_kind::choice) {
      unsigned branches = 0;
      for (unsigned at = i + 1U; at <= i + row.span; at += 1U + type.particles[at].span) ++branches;
      most = std::max(most, branches);
    }
    if (row.kind == particle_kind::groups || row.kind == particle_kind::group) {
      most = std::max(most, branchCount(*row.target));
    }
  }
  return most;
}

}  // namespace rubrica::ooxml_tests
