// The constant tables that describe one binding class: its attributes, its particles in schema order, the simple types
// of its values, and where each member stands. The generator emits them; the driver (driver.h) reads, writes, compares
// and checks every class from them, so that a generated class is nothing but its members and accessors.
//
// How a generated class looks (CT_Sheet of the workbook module):
//
//   class c_CT_Sheet : public lmx::object {
//    public:
//     struct fields {                              // standard layout, so that offsetof is well defined
//       std::uint32_t present[1] = {};             // one bit a simple member, numbered from bit 0 of word 0
//       std::string name;                          // text is UTF-8
//       std::uint32_t sheetId = 0;
//       std::string state = "visible";             // an absent optional member holds its default
//       std::string id;
//     };
//     lmx::object* clone() const override { return new c_CT_Sheet(*this); }
//     const lmx::class_descriptor& descriptor() const override;
//     void* field_base() override { return &_f; }
//     const std::string& get_state() const { return _f.state; }
//     ...
//    protected:
//     fields _f;
//   };
//
//   constexpr lmx::name_row kSheetAttributeNames[] = {
//       {1, 4, 13, "name"}, {1, 7, 14, "sheetId"}, {1, 5, 15, "state"}, {1000, 2, 16, "id"}, {}};
//   constexpr lmx::attribute kSheetAttributes[] = {
//       {.name = "name", .type = &kXstring, .offset = offsetof(c_CT_Sheet::fields, name), .bit = 0,
//        .flags = lmx::kRequired, .line = 12}, ...};
//
// Members are reached by offset into `fields`, not by accessor functions: a row of 32 bytes a member is all that a
// class costs, the same code serves every class, and the rows stay constant data without relocation of code pointers.
// Copying a `fields` copies deeply, since `owned` clones what it holds; clone needs no table.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "lmx/elmx_error.h"
#include "lmx/name_key.h"
#include "lmx/object_arena.h"

namespace rubrica::lmx {

class c_regex;
class c_xml_reader;
class c_xml_writer;
struct class_descriptor;

// The base of every binding class. An object belongs to one thread at a time.
class object {
 public:
  virtual object* clone() const = 0;  // a deep copy, made by new
  virtual ~object() = default;
  virtual const class_descriptor& descriptor() const = 0;
  // The address of the class's `fields`, which all offsets of its descriptor count from. A class laid out by hand
  // answers its own address and is only ever driven by its hooks.
  virtual void* field_base() = 0;
  const void* field_base() const { return const_cast<object*>(this)->field_base(); }

 protected:
  object() = default;
  object(const object&) = default;
  object& operator=(const object&) = default;
};

// One owned child, null until asked for. The driver sees `object`; the accessors of the class cast to its type. A child
// that a reader made stands in a slab (object_arena.h), any other on the heap; only its owner knows.
class owned {
 public:
  owned() = default;
  explicit owned(object* child) : _place(reinterpret_cast<char*>(child)) {}
  owned(const owned& other) : owned(other ? other.get()->clone() : nullptr) {}
  owned(owned&& other) noexcept : _place(std::exchange(other._place, nullptr)) {}
  owned& operator=(owned other) noexcept {
    std::swap(_place, other._place);
    return *this;
  }
  ~owned() {
    if (_place != nullptr) drop();
  }
  static owned in_slab(object* child) {
    owned result(child);
    result._place += kInSlab;
    return result;
  }

  void reset(object* child = nullptr) { owned(child).swap(*this); }
  void swap(owned& other) noexcept { std::swap(_place, other._place); }
  object* get() const { return reinterpret_cast<object*>(_place - (is_in_slab() ? kInSlab : 0)); }
  explicit operator bool() const { return _place != nullptr; }
  template <class T>
  T* as() const {
    return static_cast<T*>(get());
  }
  // The child, created when there is none: what the getter of a complex member gives.
  template <class T>
  T& need() {
    if (_place == nullptr) reset(new T);
    return static_cast<T&>(*get());
  }

 private:
  static constexpr std::ptrdiff_t kInSlab = 1;  // objects are aligned, so that an odd address tells

  bool is_in_slab() const { return reinterpret_cast<std::uintptr_t>(_place) % 2 == kInSlab; }
  void drop() noexcept;

  char* _place = nullptr;
};

// One element kept by xs:any, or one attribute list of xs:anyAttribute.
struct any_item {
  std::string namespace_uri;
  std::string name;  // as written, prefix included
  std::string text;  // the element's whole XML, namespace declarations folded into its start tag
  std::vector<std::pair<std::string, std::string>> attributes;
  bool operator==(const any_item&) const = default;
};

// xsd:base64Binary and xsd:hexBinary.
struct c_binary {
  std::vector<std::uint8_t> bytes;
  bool operator==(const c_binary&) const = default;
};

// xsd:dateTime and its kin: the text as it was read, its form having been checked.
struct c_datetime {
  std::string text;
  bool operator==(const c_datetime&) const = default;
};

// A member that is only there or not.
struct c_empty {
  bool operator==(const c_empty&) const = default;
};

// What a simple member is in memory. A repeated or list member is a std::vector of the same, except that booleans
// stand in a std::vector<std::uint8_t>.
enum class value_kind : std::uint8_t {
  boolean,  // bool
  int8,     // std::int8_t, and so on
  uint8,
  int16,
  uint16,
  int32,
  uint32,
  int64,
  uint64,
  float64,   // double
  text,      // std::string, UTF-8
  base64,    // c_binary
  hex,       // c_binary
  datetime,  // c_datetime
  empty,     // c_empty
};

// The xsd:whiteSpace facet.
enum class white_space : std::uint8_t { keep = 0, replace = 1, collapse = 2 };

inline constexpr std::uint32_t kUnbounded = std::numeric_limits<std::uint32_t>::max();

// The facets of a simple type beyond its width. Exclusive bounds of integers are written as the inclusive neighbour.
// The bounds of a float64 are compared as doubles.
struct facets {
  std::int64_t min = 0;
  std::int64_t max = 0;
  bool has_min = false;
  bool has_max = false;
  std::uint32_t min_length = 0;           // characters of text, bytes of a binary
  std::uint32_t max_length = kUnbounded;  // xsd:length sets both
  std::uint32_t total_digits = 0;         // 0: no such facet
  std::int32_t fraction_digits = -1;      // -1: no such facet
};

// One simple type of a schema. All checks that are there must pass; `members` makes it a union (kind text), which
// takes what any of its members takes.
struct simple_type {
  const char* name = "";  // "ST_SheetState", for people
  value_kind kind = value_kind::text;
  white_space space = white_space::keep;
  const facets* limits = nullptr;
  const char* const* enumeration = nullptr;  // tokens, ended by null
  const c_regex* pattern = nullptr;
  const simple_type* const* members = nullptr;  // ended by null
};

// A row of a table that c_xml_reader::tokenise looks names up in; a null name ends the table.
struct name_row {
  constexpr name_row() = default;
  constexpr name_row(std::uint16_t in_namespace, std::uint16_t size, std::int32_t number, const char* local)
      : key(name_key({local, size})), namespace_id(in_namespace), length(size), token(number), name(local) {}

  std::uint64_t key = 0;
  std::uint16_t namespace_id = 0;  // 1 for an attribute without a prefix
  std::uint16_t length = 0;        // of the local name, bytes
  std::int32_t token = 0;          // kFirstNameToken + position in the table
  const char* name = nullptr;      // the local name, which has no colon
};

// Whether a row is of this name, whose key is given.
inline bool is_named(const name_row& row, int namespace_id, std::uint64_t key, std::string_view local) {
  return row.key == key && row.length == local.size() && row.namespace_id == namespace_id &&
         same_behind_key(row.name, local.data(), local.size());
}

inline constexpr std::int32_t kFirstNameToken = 13;

// Flags of attributes, particles and bodies.
enum member_flags : std::uint8_t {
  kRequired = 1,  // attributes: use="required"
  kList = 2,      // xsd:list: the member is a vector of the item type, its text items between blanks
  kFixed = 4,     // default_text is the only value allowed
};

// One attribute. `attributes[i]` has the token kFirstNameToken + i in the class's attribute_names.
struct attribute {
  const char* name = nullptr;  // as written, prefix included: "r:id"
  const simple_type* type = nullptr;
  const char* default_text = nullptr;  // what unset_ puts back; null: the value-initialised T
  std::uint32_t offset = 0;            // of the value, in `fields`
  std::uint16_t bit = 0;               // of its presence
  std::uint8_t flags = 0;
  std::uint16_t line = 0;  // in the module description, for reports
};

enum class particle_kind : std::uint8_t {
  value,     // simple element, at most once: T and a presence bit
  values,    // simple element, repeated: std::vector<T>
  child,     // complex element, at most once: owned
  children,  // complex element, repeated: std::vector<owned>
  block,     // the same, of a class laid out by hand that stands in a std::vector by value: see block_hooks
  group,     // a class without an element of its own (a named group or a repeated compositor), at most once: owned
  groups,    // the same, repeated: std::vector<owned>
  any,       // xs:any: std::vector<any_item>
  sequence,  // the next `span` rows are its content; occurs at most once
  choice,    // the next `span` rows are its branches (a branch may be a sequence with rows of its own)
};

// One particle, in schema order. The rows of a class are an implied sequence. A compositor that may repeat is not a
// row here but `groups` of a nested class flagged kAnonymous, whose rows are its content.
struct particle {
  particle_kind kind = particle_kind::value;
  std::uint8_t flags = 0;
  std::uint16_t span = 0;                    // sequence, choice: rows inside, nested ones counted
  std::int32_t token = 0;                    // elements: the token in the class's element_names
  const char* name = nullptr;                // elements: as written, prefix included: "xdr:from"
  const simple_type* type = nullptr;         // value, values
  const class_descriptor* target = nullptr;  // child(ren), group(s)
  const char* default_text = nullptr;        // value
  std::uint32_t min_occurs = 1;
  std::uint32_t max_occurs = 1;  // kUnbounded for "unbounded"; sequence and choice: 1
  std::uint32_t offset = 0;      // of the member, in `fields`
  std::uint16_t bit = 0;         // value: of its presence
  std::uint16_t line = 0;
};

// The text of a class with simple content: T and a presence bit, as for an attribute.
struct simple_body {
  const simple_type* type = nullptr;
  std::uint32_t offset = 0;
  std::uint16_t bit = 0;
  std::uint8_t flags = 0;
  std::uint16_t line = 0;
};

// Rows of id, prefix and URI, ended by a null URI: the reader's mapping and the root's declarations, in order.
struct namespace_row {
  int id = 0;
  const char* prefix = nullptr;  // empty for the default namespace
  const char* uri = nullptr;
};

// What the classes of one schema module share.
struct module_descriptor {
  const namespace_row* namespaces = nullptr;
  const char* source = nullptr;  // "source/ooxml/sml-workbook": the program file of reports
};

// The code of a class laid out by hand; the driver calls it instead of going by the rows.
// Unmarshal is called with the element's start tag as the reader's current event and returns with its end as current
// event, as the driver's own does.
struct class_hooks {
  elmx_error (*unmarshal)(object& self, c_xml_reader& reader, std::string_view element_name) = nullptr;
  elmx_error (*marshal)(const object& self, c_xml_writer& writer, const char* element_name) = nullptr;
  bool (*equal)(const object& left, const object& right) = nullptr;
  elmx_error (*check)(const object& self, std::string& item_name) = nullptr;
};

// How the driver reaches the objects of a class that are not owned one by one but stand in a std::vector of the class.
struct block_hooks {
  std::size_t (*size)(const void* vector) = nullptr;
  const object& (*at)(const void* vector, std::size_t index) = nullptr;
  object& (*append)(void* vector) = nullptr;
  void (*finish)(void* vector) = nullptr;  // all are read: what was reserved may be given back
  // Either may be null. Both handle objects of the form that nearly all have, for as long as such ones follow each
  // other, without an event for each tag, and answer how many that were: the next ones that the reader comes to
  // (`expected` is how many the last vector had), and those from `first` on.
  std::size_t (*read_plain)(void* vector, c_xml_reader& reader, std::size_t expected) = nullptr;
  std::size_t (*write_plain)(const void* vector, std::size_t first, c_xml_writer& writer) = nullptr;
};

enum class_flags : std::uint8_t {
  kAnonymous = 1,      // no element of its own: a named group, or a compositor that repeats
  kMixed = 2,          // text between the elements is passed over instead of ending the sequence
  kNoForeignTail = 4,  // elements after the last member are an error (code 31) instead of being skipped
  kAnyAttribute = 8,   // attributes without a row are kept in the any_item at any_attribute_offset
  kAllOptional = 16,   // no attribute is required
};

struct class_descriptor {
  const char* name = nullptr;  // "CT_Sheet", the item name of reports
  object* (*construct)(void* memory) = nullptr;
  std::size_t size = 0;  // of an object, bytes
  const module_descriptor* module = nullptr;
  const name_row* attribute_names = nullptr;  // null when there are no attributes
  const attribute* attributes = nullptr;
  const name_row* element_names = nullptr;  // each name once, even if two particles bear it
  const particle* particles = nullptr;
  const simple_body* body = nullptr;  // simple content; then there are no particles
  const class_hooks* hooks = nullptr;
  const block_hooks* block = nullptr;  // for particles of kind block whose target this is
  std::uint16_t attribute_count = 0;
  std::uint16_t particle_count = 0;  // all rows
  std::uint32_t present_offset = 0;  // of the std::uint32_t words of presence bits, in `fields`
  std::uint32_t any_attribute_offset = 0;
  std::uint16_t line = 0;
  std::uint8_t flags = 0;

  // A new object, for delete.
  object* create() const;
};

// What `construct` of a class is.
template <class T>
object* construct(void* memory) {
  static_assert(alignof(T) <= kObjectAlignment);
  return ::new (memory) T;
}

// A new object in a slab.
owned make_owned(const class_descriptor& type, object_arena& arena);

// Presence bits, for the accessors of generated classes: `words` is fields::present.
inline bool is_present(const std::uint32_t* words, unsigned bit) {
  return (words[bit / 32] >> (bit % 32) & 1U) != 0;
}
inline void set_present(std::uint32_t* words, unsigned bit, bool value = true) {
  const std::uint32_t mask = std::uint32_t{1} << (bit % 32);
  words[bit / 32] = value ? words[bit / 32] | mask : words[bit / 32] & ~mask;
}

// A root element: what the text and file forms of a root class hand to the driver.
struct root_descriptor {
  const class_descriptor* type = nullptr;
  const char* name = nullptr;  // as written: "workbook", "xdr:wsDr"
  int namespace_id = 0;        // in the module's table
};

}  // namespace rubrica::lmx
