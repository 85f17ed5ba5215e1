// A small schema module by hand, as the generator would lay one out, with every kind of member and particle.
#pragma once

#include "lmx/driver.h"

namespace rubrica::lmx::sample {

class c_CT_Leaf : public object {
 public:
  struct fields {
    std::uint32_t present[1] = {};
    std::string name;
    std::uint32_t id = 0;
    std::string state = "visible";
    std::string r_id;
    std::vector<std::string> spans;
    std::string version;
    any_item any;
  };
  object* clone() const override { return new c_CT_Leaf(*this); }
  const class_descriptor& descriptor() const override;
  void* field_base() override { return &f; }
  fields f;
};

class c_CT_Formula : public object {
 public:
  struct fields {
    std::uint32_t present[1] = {};
    std::string text;
    std::uint32_t si = 0;
  };
  object* clone() const override { return new c_CT_Formula(*this); }
  const class_descriptor& descriptor() const override;
  void* field_base() override { return &f; }
  fields f;
};

class c_CT_Number : public object {
 public:
  struct fields {
    std::uint32_t present[1] = {};
    double value = 0;
  };
  object* clone() const override { return new c_CT_Number(*this); }
  const class_descriptor& descriptor() const override;
  void* field_base() override { return &f; }
  fields f;
};

// A group without an element of its own: captured elements.
class c_EG_Extensions : public object {
 public:
  struct fields {
    std::uint32_t present[1] = {};
    std::vector<any_item> any;
  };
  object* clone() const override { return new c_EG_Extensions(*this); }
  const class_descriptor& descriptor() const override;
  void* field_base() override { return &f; }
  fields f;
};

class c_CT_ExtensionList : public object {
 public:
  struct fields {
    std::uint32_t present[1] = {};
    owned group;
  };
  object* clone() const override { return new c_CT_ExtensionList(*this); }
  const class_descriptor& descriptor() const override;
  void* field_base() override { return &f; }
  fields f;
};

// One round of a choice that repeats.
class c_Step : public object {
 public:
  struct fields {
    std::uint32_t present[1] = {};
    std::int32_t x = 0;
    owned y;
  };
  object* clone() const override { return new c_Step(*this); }
  const class_descriptor& descriptor() const override;
  void* field_base() override { return &f; }
  fields f;
};

class c_CT_Root : public object {
 public:
  struct fields {
    std::uint32_t present[1] = {};
    bool on = true;
    owned head;
    std::string title;
    std::vector<std::int32_t> counts;
    std::vector<owned> items;
    owned a;
    std::string b;
    std::string c;
    std::vector<owned> steps;
    owned formula;
    owned number;
    owned extensions;
  };
  object* clone() const override { return new c_CT_Root(*this); }
  const class_descriptor& descriptor() const override;
  void* field_base() override { return &f; }
  fields f;
};

// Text between its elements is allowed, foreign elements are not.
class c_CT_Mixed : public object {
 public:
  struct fields {
    std::uint32_t present[1] = {};
    std::vector<std::string> words;
  };
  object* clone() const override { return new c_CT_Mixed(*this); }
  const class_descriptor& descriptor() const override;
  void* field_base() override { return &f; }
  fields f;
};

// Laid out by hand: its hooks do all.
class c_CT_Packed : public object {
 public:
  object* clone() const override { return new c_CT_Packed(*this); }
  const class_descriptor& descriptor() const override;
  void* field_base() override { return this; }
  std::string text;
};

extern const root_descriptor kRoot;
extern const root_descriptor kLeafRoot;
extern const root_descriptor kMixedRoot;
extern const root_descriptor kPackedRoot;
extern const root_descriptor kFormulaRoot;
extern const root_descriptor kNumberRoot;

// Lines of the "description", which reports name.
inline constexpr int kLineOfName = 11;
inline constexpr int kLineOfTitle = 31;

}  // namespace rubrica::lmx::sample
