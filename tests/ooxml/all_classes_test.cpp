#include <string>

#include <gtest/gtest.h>

#include "lmx/driver.h"
#include "tests/ooxml/modules.h"
#include "tests/ooxml/sample_objects.h"

namespace rubrica {

using ooxml_tests::branchCount;
using ooxml_tests::fullness;
using ooxml_tests::makeSample;
using ooxml_tests::module_entry;
using ooxml_tests::modules;

// Any class as a document of its own: an element "sample" in a namespace of the module.
struct sample_root {
  std::string name;
  lmx::root_descriptor root;

  explicit sample_root(const lmx::class_descriptor& type) {
    const lmx::namespace_row& row = type.module->namespaces[0];
    name = *row.prefix ? std::string(row.prefix) + ":sample" : "sample";
    root = {&type, name.c_str(), row.id};
  }
};

void expectRoundTrip(const lmx::class_descriptor& type, fullness how, unsigned branch) {
  const auto object = makeSample(type, how, branch);
  std::string item;
  ASSERT_EQ(lmx::check(*object, item), lmx::ELMX_OK) << item;
  const sample_root document(type);
  std::string text;
  lmx::c_error_record record;
  ASSERT_EQ(lmx::marshal_root(*object, document.root, text, &record), lmx::ELMX_OK) << record.message();
  const lmx::owned read(type.create());
  ASSERT_EQ(lmx::unmarshal_root(*read.get(), document.root, text.data(), text.size(), &record), lmx::ELMX_OK)
      << record.message() << text;
  EXPECT_TRUE(lmx::equal(*object, *read.get())) << text;
  std::string again;
  ASSERT_EQ(lmx::marshal_root(*read.get(), document.root, again), lmx::ELMX_OK);
  EXPECT_EQ(again, text);
}

void expectDeepClone(const lmx::class_descriptor& type) {
  const auto object = makeSample(type, fullness::full, 0);
  const lmx::owned copy(object->clone());
  EXPECT_TRUE(lmx::equal(*object, *copy.get()));
  const sample_root document(type);
  std::string before, after;
  ASSERT_EQ(lmx::marshal_root(*object, document.root, before), lmx::ELMX_OK);
  ASSERT_EQ(lmx::marshal_root(*copy.get(), document.root, after), lmx::ELMX_OK);
  EXPECT_EQ(before, after);
}

class EveryClass : public testing::TestWithParam<std::size_t> {
 protected:
  template <class Body>
  void forEachClass(Body body) const {
    for (const lmx::class_descriptor* type : modules()[GetParam()].classes) {
      if (type->flags & lmx::kAnonymous) continue;  // no element of its own: covered by the classes that hold it
      SCOPED_TRACE(type->name);
      body(*type);
    }
  }
};

TEST_P(EveryClass, ComesBackFromTextWithOnlyWhatIsRequired) {
  forEachClass([](const lmx::class_descriptor& type) { expectRoundTrip(type, fullness::minimal, 0); });
}

TEST_P(EveryClass, ComesBackFromTextWithEveryMemberAndEveryBranch) {
  forEachClass([](const lmx::class_descriptor& type) {
    for (unsigned branch = 0; branch < branchCount(type); ++branch) expectRoundTrip(type, fullness::full, branch);
  });
}

TEST_P(EveryClass, ClonesDeeply) {
  forEachClass([](const lmx::class_descriptor& type) { expectDeepClone(type); });
}

INSTANTIATE_TEST_SUITE_P(Modules, EveryClass, testing::Range(std::size_t{0}, modules().size()),
                         [](const auto& module) { return modules()[module.param].name; });

}  // namespace rubrica
