#include "tests/lmx/sample_module.h"

#include "lmx/c_xml_reader.h"
#include "lmx/c_xml_writer.h"

namespace rubrica::lmx::sample {

namespace {

constexpr namespace_row kNamespaces[] = {{1000, "r", "urn:r"}, {1001, "", "urn:main"}, {}};
constexpr module_descriptor kModule{kNamespaces, "source/ooxml/sample"};

constexpr const char* kStates[] = {"visible", "hidden", nullptr};
constexpr simple_type kText{.name = "ST_Xstring"};
constexpr simple_type kBoolean{.kind = value_kind::boolean, .space = white_space::collapse};
constexpr simple_type kUnsigned{.kind = value_kind::uint32, .space = white_space::collapse};
constexpr simple_type kInteger{.kind = value_kind::int32, .space = white_space::collapse};
constexpr simple_type kDouble{.kind = value_kind::float64, .space = white_space::collapse};
constexpr simple_type kState{.space = white_space::collapse, .enumeration = kStates};
constexpr simple_type kSpan{.space = white_space::collapse};

using leaf = c_CT_Leaf::fields;
constexpr name_row kLeafNames[] = {{1, 4, 13, "name"},
                                   {1, 2, 14, "id"},
                                   {1, 5, 15, "state"},
                                   {1000, 2, 16, "id"},
                                   {1, 5, 17, "spans"},
                                   {1, 7, 18, "version"},
                                   {}};
constexpr attribute kLeafAttributes[] = {
    {.name = "name", .type = &kText, .offset = offsetof(leaf, name), .bit = 0, .flags = kRequired, .line = kLineOfName},
    {.name = "id", .type = &kUnsigned, .offset = offsetof(leaf, id), .bit = 1, .flags = kRequired, .line = 12},
    {.name = "state",
     .type = &kState,
     .default_text = "visible",
     .offset = offsetof(leaf, state),
     .bit = 2,
     .line = 13},
    {.name = "r:id", .type = &kText, .offset = offsetof(leaf, r_id), .bit = 3, .line = 14},
    {.name = "spans", .type = &kSpan, .offset = offsetof(leaf, spans), .bit = 4, .flags = kList, .line = 15},
    {.name = "version",
     .type = &kText,
     .default_text = "1",
     .offset = offsetof(leaf, version),
     .bit = 5,
     .flags = kFixed,
     .line = 16},
};
constexpr class_descriptor kLeaf{.name = "CT_Leaf",
                                 .construct = &construct<c_CT_Leaf>,
                                 .size = sizeof(c_CT_Leaf),
                                 .module = &kModule,
                                 .attribute_names = kLeafNames,
                                 .attributes = kLeafAttributes,
                                 .attribute_count = 6,
                                 .any_attribute_offset = offsetof(leaf, any),
                                 .line = 10,
                                 .flags = kAnyAttribute};

using formula = c_CT_Formula::fields;
constexpr name_row kFormulaNames[] = {{1, 2, 13, "si"}, {}};
constexpr attribute kFormulaAttributes[] = {
    {.name = "si", .type = &kUnsigned, .offset = offsetof(formula, si), .bit = 1, .line = 21}};
constexpr simple_body kFormulaBody{.type = &kText, .offset = offsetof(formula, text), .bit = 0, .line = 22};
constexpr class_descriptor kFormula{.name = "CT_Formula",
                                    .construct = &construct<c_CT_Formula>,
                                    .size = sizeof(c_CT_Formula),
                                    .module = &kModule,
                                    .attribute_names = kFormulaNames,
                                    .attributes = kFormulaAttributes,
                                    .body = &kFormulaBody,
                                    .attribute_count = 1};

constexpr simple_body kNumberBody{.type = &kDouble, .offset = offsetof(c_CT_Number::fields, value), .bit = 0};
constexpr class_descriptor kNumber{.name = "CT_Number",
                                   .construct = &construct<c_CT_Number>,
                                   .size = sizeof(c_CT_Number),
                                   .module = &kModule,
                                   .body = &kNumberBody};

constexpr particle kExtensionRows[] = {{.kind = particle_kind::any,
                                        .min_occurs = 0,
                                        .max_occurs = kUnbounded,
                                        .offset = offsetof(c_EG_Extensions::fields, any)}};
constexpr class_descriptor kExtensions{.name = "EG_Extensions",
                                       .construct = &construct<c_EG_Extensions>,
                                       .size = sizeof(c_EG_Extensions),
                                       .module = &kModule,
                                       .particles = kExtensionRows,
                                       .particle_count = 1,
                                       .flags = kAnonymous};

constexpr particle kExtensionListRows[] = {{.kind = particle_kind::group,
                                            .target = &kExtensions,
                                            .min_occurs = 0,
                                            .offset = offsetof(c_CT_ExtensionList::fields, group)}};
constexpr class_descriptor kExtensionList{.name = "CT_ExtensionList",
                                          .construct = &construct<c_CT_ExtensionList>,
                                          .size = sizeof(c_CT_ExtensionList),
                                          .module = &kModule,
                                          .particles = kExtensionListRows,
                                          .particle_count = 1};

using step = c_Step::fields;
constexpr name_row kStepNames[] = {{1001, 1, 13, "x"}, {1001, 1, 14, "y"}, {}};
constexpr particle kStepRows[] = {
    {.kind = particle_kind::choice, .span = 2, .line = 41},
    {.kind = particle_kind::value, .token = 13, .name = "x", .type = &kInteger, .offset = offsetof(step, x), .bit = 0},
    {.kind = particle_kind::child, .token = 14, .name = "y", .target = &kLeaf, .offset = offsetof(step, y)},
};
constexpr class_descriptor kStep{.name = "Step",
                                 .construct = &construct<c_Step>,
                                 .size = sizeof(c_Step),
                                 .module = &kModule,
                                 .element_names = kStepNames,
                                 .particles = kStepRows,
                                 .particle_count = 3,
                                 .flags = kAnonymous};

using root = c_CT_Root::fields;
constexpr name_row kRootAttributeNames[] = {{1, 2, 13, "on"}, {}};
constexpr attribute kRootAttributes[] = {
    {.name = "on", .type = &kBoolean, .default_text = "1", .offset = offsetof(root, on), .bit = 0, .line = 30}};
constexpr name_row kRootNames[] = {{1001, 4, 13, "head"},
                                   {1001, 5, 14, "title"},
                                   {1001, 5, 15, "count"},
                                   {1001, 4, 16, "item"},
                                   {1001, 1, 17, "a"},
                                   {1001, 1, 18, "b"},
                                   {1001, 1, 19, "c"},
                                   {1001, 1, 20, "f"},
                                   {1001, 1, 21, "n"},
                                   {1001, 6, 22, "extLst"},
                                   {}};
constexpr particle kRootRows[] = {
    {.kind = particle_kind::child,
     .token = 13,
     .name = "head",
     .target = &kLeaf,
     .min_occurs = 0,
     .offset = offsetof(root, head),
     .line = 30},
    {.kind = particle_kind::value,
     .token = 14,
     .name = "title",
     .type = &kText,
     .offset = offsetof(root, title),
     .bit = 1,
     .line = kLineOfTitle},
    {.kind = particle_kind::values,
     .token = 15,
     .name = "count",
     .type = &kInteger,
     .min_occurs = 0,
     .max_occurs = 3,
     .offset = offsetof(root, counts),
     .line = 32},
    {.kind = particle_kind::children,
     .token = 16,
     .name = "item",
     .target = &kLeaf,
     .min_occurs = 0,
     .max_occurs = 4,
     .offset = offsetof(root, items),
     .line = 33},
    {.kind = particle_kind::choice, .span = 4, .line = 34},
    {.kind = particle_kind::child, .token = 17, .name = "a", .target = &kLeaf, .offset = offsetof(root, a), .line = 35},
    {.kind = particle_kind::sequence, .span = 2},
    {.kind = particle_kind::value,
     .token = 18,
     .name = "b",
     .type = &kText,
     .offset = offsetof(root, b),
     .bit = 2,
     .line = 36},
    {.kind = particle_kind::value,
     .token = 19,
     .name = "c",
     .type = &kText,
     .offset = offsetof(root, c),
     .bit = 3,
     .line = 37},
    {.kind = particle_kind::groups,
     .target = &kStep,
     .min_occurs = 0,
     .max_occurs = 5,
     .offset = offsetof(root, steps)},
    {.kind = particle_kind::child,
     .token = 20,
     .name = "f",
     .target = &kFormula,
     .min_occurs = 0,
     .offset = offsetof(root, formula)},
    {.kind = particle_kind::child,
     .token = 21,
     .name = "n",
     .target = &kNumber,
     .min_occurs = 0,
     .offset = offsetof(root, number)},
    {.kind = particle_kind::child,
     .token = 22,
     .name = "extLst",
     .target = &kExtensionList,
     .min_occurs = 0,
     .offset = offsetof(root, extensions)},
};
constexpr class_descriptor kRootType{.name = "CT_Root",
                                     .construct = &construct<c_CT_Root>,
                                     .size = sizeof(c_CT_Root),
                                     .module = &kModule,
                                     .attribute_names = kRootAttributeNames,
                                     .attributes = kRootAttributes,
                                     .element_names = kRootNames,
                                     .particles = kRootRows,
                                     .attribute_count = 1,
                                     .particle_count = 13,
                                     .line = 29};

constexpr name_row kMixedNames[] = {{1001, 1, 13, "w"}, {}};
constexpr particle kMixedRows[] = {{.kind = particle_kind::values,
                                    .token = 13,
                                    .name = "w",
                                    .type = &kText,
                                    .min_occurs = 2,
                                    .max_occurs = kUnbounded,
                                    .offset = offsetof(c_CT_Mixed::fields, words)}};
constexpr class_descriptor kMixedType{.name = "CT_Mixed",
                                      .construct = &construct<c_CT_Mixed>,
                                      .size = sizeof(c_CT_Mixed),
                                      .module = &kModule,
                                      .element_names = kMixedNames,
                                      .particles = kMixedRows,
                                      .particle_count = 1,
                                      .flags = kMixed | kNoForeignTail};

constexpr class_hooks kPackedHooks{
    .unmarshal = [](object& self, c_xml_reader& reader, std::string_view) -> elmx_error {
      while (reader.get_attribute_event() == TOKEN_NAME) continue;
      std::string_view text;
      if (!reader.get_simple_type_value(text, white_space::keep)) return ELMX_UNABLE_TO_READ_ELEMENT_VALUE;
      static_cast<c_CT_Packed&>(self).text = text;
      return reader.get_element_event() == TOKEN_ELEMENT_END ? ELMX_OK : ELMX_BAD_END_OF_ELEMENT;
    },
    .marshal = [](const object& self, c_xml_writer& writer, const char* name) -> elmx_error {
      c_xml_writer::frame frame(writer);
      writer.start_element(name);
      writer.write_namespaces(false);
      writer.write_element_body(static_cast<const c_CT_Packed&>(self).text);
      writer.end_element(name);
      return ELMX_OK;
    },
    .equal =
        [](const object& left, const object& right) {
          return static_cast<const c_CT_Packed&>(left).text == static_cast<const c_CT_Packed&>(right).text;
        },
    .check =
        [](const object& self, std::string& item) {
          item = "packed";
          return static_cast<const c_CT_Packed&>(self).text.empty() ? ELMX_TYPE_NOT_SET : ELMX_OK;
        }};
constexpr class_descriptor kPackedType{.name = "CT_Packed",
                                       .construct = &construct<c_CT_Packed>,
                                       .size = sizeof(c_CT_Packed),
                                       .module = &kModule,
                                       .hooks = &kPackedHooks};

}  // namespace

const class_descriptor& c_CT_Leaf::descriptor() const {
  return kLeaf;
}
const class_descriptor& c_CT_Formula::descriptor() const {
  return kFormula;
}
const class_descriptor& c_CT_Number::descriptor() const {
  return kNumber;
}
const class_descriptor& c_EG_Extensions::descriptor() const {
  return kExtensions;
}
const class_descriptor& c_CT_ExtensionList::descriptor() const {
  return kExtensionList;
}
const class_descriptor& c_Step::descriptor() const {
  return kStep;
}
const class_descriptor& c_CT_Root::descriptor() const {
  return kRootType;
}
const class_descriptor& c_CT_Mixed::descriptor() const {
  return kMixedType;
}
const class_descriptor& c_CT_Packed::descriptor() const {
  return kPackedType;
}

const root_descriptor kRoot{&kRootType, "root", 1001};
const root_descriptor kLeafRoot{&kLeaf, "leaf", 1001};
const root_descriptor kMixedRoot{&kMixedType, "mixed", 1001};
const root_descriptor kPackedRoot{&kPackedType, "packed", 1001};
const root_descriptor kFormulaRoot{&kFormula, "f", 1001};
const root_descriptor kNumberRoot{&kNumber, "n", 1001};

}  // namespace rubrica::lmx::sample
