#include <map>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "tests/ooxml/modules.h"

namespace rubrica {

using ooxml_tests::module_entry;
using ooxml_tests::modules;

// Complex types and element groups of the schema that can be reached from the module's roots, the roots themselves, and
// the string with xml:space and the packed cell where a module has them.
const std::map<std::string, std::size_t> kClassCounts = {
    {"workbook", 32}, {"sheet", 104},  {"styles", 41},        {"sharedStringTable", 19},
    {"comments", 22}, {"table", 23},   {"contentypes", 4},    {"relationships", 3},
    {"drawing", 177}, {"strict", 176}, {"strictdrawing", 179}};

std::set<std::string> namesOf(const module_entry& module) {
  std::set<std::string> names;
  for (const lmx::class_descriptor* type : module.classes) names.insert(type->name);
  return names;
}

const module_entry& moduleNamed(const std::string& name) {
  for (const module_entry& module : modules()) {
    if (name == module.name) return module;
  }
  throw std::out_of_range(name);
}

// The packed string item has its described form beside it, which the count leaves out.
std::size_t packedStrings(const std::string& module) {
  return module == "sharedStringTable" ? 1 : 0;
}

TEST(BindingModules, EachHasTheClassesThatItsRootsReach) {
  ASSERT_EQ(modules().size(), kClassCounts.size());
  for (const module_entry& module : modules()) {
    const std::size_t count = module.classes.size() + module.roots.size();
    EXPECT_EQ(count - packedStrings(module.name), kClassCounts.at(module.name)) << module.name;
  }
}

TEST(BindingModules, NoClassStandsTwiceInAModuleButAPackedOneBesideItsDescribedForm) {
  for (const module_entry& module : modules()) {
    const std::set<std::string> names = namesOf(module);
    const std::size_t cells = names.contains("CT_Cell") ? 1 : 0;
    EXPECT_EQ(names.size() + cells + packedStrings(module.name), module.classes.size()) << module.name;
  }
}

TEST(BindingModules, EveryClassMakesObjectsOfItself) {
  for (const module_entry& module : modules()) {
    for (const lmx::class_descriptor* type : module.classes) {
      const lmx::owned object(type->create());
      EXPECT_EQ(&object.get()->descriptor(), type) << module.name << " " << type->name;
    }
  }
}

TEST(BindingModules, TheStrictFlavourHasTheTypesOfTheLaterEdition) {
  const auto strict = namesOf(moduleNamed("strict"));
  for (const char* name :
       {"CT_ControlPr", "CT_DrawingHF", "CT_FontFamily", "CT_Marker", "CT_ObjectAnchor", "CT_ObjectPr"}) {
    EXPECT_TRUE(strict.contains(name)) << name;
    EXPECT_FALSE(namesOf(moduleNamed("sheet")).contains(name)) << name;
  }
  EXPECT_FALSE(strict.contains("CT_LegacyDrawing"));
  EXPECT_FALSE(strict.contains("ST_Xstring_space"));
  const auto strict_drawing = namesOf(moduleNamed("strictdrawing"));
  const auto drawing = namesOf(moduleNamed("drawing"));
  for (const char* name : {"CT_Boolean", "CT_Rel"}) {
    EXPECT_TRUE(strict_drawing.contains(name)) << name;
    EXPECT_FALSE(drawing.contains(name)) << name;
  }
}

TEST(BindingModules, StringsThatMayKeepTheirWhiteSpaceStandInTheModulesWithText) {
  for (const char* name : {"sheet", "sharedStringTable", "comments"}) {
    EXPECT_TRUE(namesOf(moduleNamed(name)).contains("ST_Xstring_space")) << name;
  }
}

TEST(BindingModules, TheStrictModuleHasFiveRootsAndNoComments) {
  std::set<std::string> names;
  for (const lmx::root_descriptor* root : moduleNamed("strict").roots) names.insert(root->name);
  EXPECT_EQ(names, (std::set<std::string>{"workbook", "worksheet", "styleSheet", "sst", "table"}));
}

}  // namespace rubrica
