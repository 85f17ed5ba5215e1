#include <filesystem>
#include <memory>

#include <gtest/gtest.h>

#include "lmx/c_xml_writer.h"
#include "tests/lmx/sample_module.h"
#include "tests/support/temporary_directory.h"

namespace rubrica::lmx {
namespace {

using namespace sample;

const std::string kHead = "<?xml version=\"1.0\" encoding=\"UTF-8\"?><root xmlns:r=\"urn:r\" xmlns=\"urn:main\"";

void fill_leaf(c_CT_Leaf& leaf, const std::string& name, std::uint32_t id) {
  leaf.f.name = name;
  leaf.f.id = id;
  leaf.f.present[0] = 3;
}

// The least that may be written.
void fill_minimal(c_CT_Root& root) {
  set_present(root.f.present, 1);
  set_present(root.f.present, 2);
  set_present(root.f.present, 3);
}

void fill_full(c_CT_Root& root) {
  fill_minimal(root);
  root.f.on = false;
  set_present(root.f.present, 0);
  c_CT_Leaf& head = root.f.head.need<c_CT_Leaf>();
  fill_leaf(head, "h<", 1);
  head.f.r_id = "rId1";
  head.f.spans = {"1:2", "3"};
  head.f.any.attributes = {{"q", "&"}};
  head.f.present[0] |= 0x1C;
  root.f.title = " t ";
  root.f.counts = {1, -2};
  root.f.items.emplace_back(new c_CT_Leaf);
  fill_leaf(*root.f.items.back().as<c_CT_Leaf>(), "i", 2);
  root.f.b = "B";
  for (int i = 0; i < 2; ++i) {
    root.f.steps.emplace_back(new c_Step);
    root.f.steps.back().as<c_Step>()->f.x = i;
    set_present(root.f.steps.back().as<c_Step>()->f.present, 0);
  }
  root.f.steps.emplace_back(new c_Step);
  fill_leaf(root.f.steps.back().as<c_Step>()->f.y.need<c_CT_Leaf>(), "y", 3);
  auto& formula = root.f.formula.need<c_CT_Formula>();
  formula.f.text = "A1";
  formula.f.present[0] = 1;
  auto& number = root.f.number.need<c_CT_Number>();
  number.f.value = 2.5;
  number.f.present[0] = 1;
  root.f.extensions.need<c_CT_ExtensionList>().f.group.need<c_EG_Extensions>().f.any.push_back(
      {"urn:p", "p:e", "<p:e xmlns:p='urn:p'>x</p:e>", {}});
}

std::string write(const c_CT_Root& root) {
  std::string text = "unchanged";
  c_error_record record;
  const elmx_error code = marshal_root(root, kRoot, text, &record);
  EXPECT_EQ(record.code, code);
  return code == ELMX_OK ? text : std::to_string(code) + " " + record.item_name + " " + text;
}

TEST(Marshal, TheLeastAndTheMost) {
  c_CT_Root minimal;
  fill_minimal(minimal);
  EXPECT_EQ(write(minimal), kHead + "><title></title><b></b><c></c></root>");
  c_CT_Root full;
  fill_full(full);
  EXPECT_EQ(
      write(full),
      kHead +
          " on=\"false\"><head name=\"h&lt;\" id=\"1\" state=\"visible\" r:id=\"rId1\" spans=\"1:2 3\" q=\"&amp;\"/>"
          "<title> t </title><count>1</count><count>-2</count><item name=\"i\" id=\"2\"/><b>B</b><c></c>"
          "<x>0</x><x>1</x><y name=\"y\" id=\"3\"/><f>A1</f><n>2.5</n>"
          "<extLst><p:e xmlns:p='urn:p'>x</p:e></extLst></root>");
}

TEST(Marshal, WhatWasWrittenReadsBackEqual) {
  c_CT_Root full;
  fill_full(full);
  const std::string text = write(full);
  c_CT_Root again;
  EXPECT_EQ(unmarshal_root(again, kRoot, text.data(), text.size()), 0);
  // What capture adds to the item beside its text is not known to who builds it.
  EXPECT_TRUE(equal(full, again));
  EXPECT_EQ(write(again), text);
}

TEST(Marshal, PresenceCountsNotTheValue) {
  c_CT_Root root;
  fill_minimal(root);
  root.f.on = false;
  EXPECT_EQ(write(root).find(" on="), std::string::npos);
  root.f.on = true;
  set_present(root.f.present, 0);
  EXPECT_NE(write(root).find(" on=\"true\""), std::string::npos) << "a default that was set is written";
  set_present(root.f.present, 0, false);
  EXPECT_EQ(write(root).find(" on="), std::string::npos);
}

TEST(Marshal, MembersOutsideTheirBoundsFail) {
  c_CT_Root no_title;
  fill_minimal(no_title);
  set_present(no_title.f.present, 1, false);
  EXPECT_EQ(write(no_title), "46 title unchanged");

  c_CT_Root counts;
  fill_minimal(counts);
  counts.f.counts = {1, 2, 3, 4};
  EXPECT_EQ(write(counts), "46 count unchanged");

  c_CT_Root items;
  fill_minimal(items);
  for (int i = 0; i < 5; ++i) items.f.items.emplace_back(new c_CT_Leaf);
  EXPECT_EQ(write(items), "46 item unchanged");

  c_CT_Root steps;
  fill_minimal(steps);
  steps.f.steps.emplace_back(new c_Step);
  EXPECT_EQ(write(steps), "46 Step unchanged") << "a step that chose nothing";

  c_CT_Root none;
  fill_minimal(none);
  set_present(none.f.present, 2, false);
  set_present(none.f.present, 3, false);
  EXPECT_EQ(write(none), "46 CT_Root unchanged");

  c_CT_Root both;
  fill_minimal(both);
  both.f.a.need<c_CT_Leaf>();
  EXPECT_EQ(write(both), "46 CT_Root unchanged");

  c_CT_Mixed few;
  few.f.words = {"one"};
  std::string text;
  EXPECT_EQ(marshal_root(few, kMixedRoot, text), ELMX_OCCURS_ON_MARSHAL);
}

TEST(Marshal, ARecordTellsItemAndProgramPosition) {
  c_CT_Root root;
  std::string text;
  c_error_record record;
  EXPECT_EQ(marshal_root(root, kRoot, text, &record), ELMX_OCCURS_ON_MARSHAL);
  EXPECT_EQ(record.message(),
            "Error: min/max occurs error on marshaling\nItem: title\nProgram file: source/ooxml/sample\n"
            "Program line: 31\n");
}

TEST(Marshal, ToAFile) {
  const std::string path = (std::filesystem::temp_directory_path() / "lmx_marshal.xml").string();
  c_CT_Root root;
  fill_full(root);
  EXPECT_EQ(marshal_root_file(root, kRoot, path.c_str()), 0);
  EXPECT_EQ(test::readText(path), write(root));
  const c_CT_Root broken;
  c_error_record record;
  EXPECT_EQ(marshal_root_file(broken, kRoot, path.c_str(), &record), ELMX_OCCURS_ON_MARSHAL);
  EXPECT_FALSE(std::filesystem::exists(path)) << "a failed file is removed";
  EXPECT_EQ(marshal_root_file(root, kRoot, "/no/such/directory/x.xml", &record), ELMX_UNABLE_TO_OPEN_FILE);
  EXPECT_EQ(record.item_name, "/no/such/directory/x.xml");
}

TEST(Marshal, AFullDeviceIsAnError) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full here";
  c_CT_Root root;
  fill_full(root);
  EXPECT_EQ(marshal_root_file(root, kRoot, "/dev/full"), ELMX_UNDEFINED);
  EXPECT_TRUE(std::filesystem::exists("/dev/full"));
}

TEST(Clone, IsDeepAndEqual) {
  c_CT_Root full;
  fill_full(full);
  const std::unique_ptr<object> copy(full.clone());
  EXPECT_TRUE(equal(full, *copy));
  static_cast<c_CT_Root&>(*copy).f.items[0].as<c_CT_Leaf>()->f.id = 99;
  EXPECT_FALSE(equal(full, *copy));
  EXPECT_EQ(full.f.items[0].as<c_CT_Leaf>()->f.id, 2U);
  c_CT_Root assigned;
  assigned = full;
  EXPECT_TRUE(equal(full, assigned));
}

TEST(Equal, SeesEveryMember) {
  const auto differs = [](auto change) {
    c_CT_Root left;
    fill_full(left);
    c_CT_Root right(left);
    EXPECT_TRUE(equal(left, right));
    change(right);
    EXPECT_FALSE(equal(left, right));
    EXPECT_FALSE(equal(right, left));
  };
  differs([](c_CT_Root& r) { set_present(r.f.present, 0, false); });
  differs([](c_CT_Root& r) { r.f.on = true; });
  differs([](c_CT_Root& r) { r.f.head.reset(); });
  differs([](c_CT_Root& r) { r.f.head.as<c_CT_Leaf>()->f.spans.pop_back(); });
  differs([](c_CT_Root& r) { r.f.head.as<c_CT_Leaf>()->f.any.attributes.clear(); });
  differs([](c_CT_Root& r) { r.f.title = "t"; });
  differs([](c_CT_Root& r) { set_present(r.f.present, 2, false); });
  differs([](c_CT_Root& r) { r.f.counts.push_back(1); });
  differs([](c_CT_Root& r) { r.f.items.emplace_back(new c_CT_Leaf); });
  differs([](c_CT_Root& r) { r.f.steps[2].as<c_Step>()->f.y.as<c_CT_Leaf>()->f.name = "z"; });
  differs([](c_CT_Root& r) { r.f.formula.as<c_CT_Formula>()->f.text = ""; });
  differs([](c_CT_Root& r) { r.f.formula.as<c_CT_Formula>()->f.present[0] = 0; });
  differs([](c_CT_Root& r) { r.f.number.as<c_CT_Number>()->f.value = 2; });
  differs([](c_CT_Root& r) { r.f.extensions.as<c_CT_ExtensionList>()->f.group.as<c_EG_Extensions>()->f.any.clear(); });
  EXPECT_FALSE(equal(c_CT_Root(), c_CT_Leaf())) << "classes differ";
}

elmx_error check_of(const object& checked, std::string& item) {
  item.clear();
  return check(checked, item);
}

TEST(Check, FindsWhatAReaderWouldRefuse) {
  const auto refused = [](auto change) {
    c_CT_Root root;
    fill_full(root);
    std::string item;
    EXPECT_EQ(check_of(root, item), ELMX_OK) << item;
    change(root);
    const elmx_error code = check_of(root, item);
    return std::to_string(code) + " " + item;
  };
  EXPECT_EQ(refused([](c_CT_Root& r) { set_present(r.f.present, 1, false); }), "21 title");
  EXPECT_EQ(refused([](c_CT_Root& r) { r.f.counts = {1, 2, 3, 4}; }), "26 count");
  EXPECT_EQ(refused([](c_CT_Root& r) { r.f.items.resize(5); }), "26 item");
  EXPECT_EQ(refused([](c_CT_Root& r) { r.f.items[0].as<c_CT_Leaf>()->f.present[0] = 1; }), "25 CT_Leaf");
  EXPECT_EQ(refused([](c_CT_Root& r) { r.f.head.as<c_CT_Leaf>()->f.state = "x"; }), "38 @state");
  EXPECT_EQ(refused([](c_CT_Root& r) { r.f.a.need<c_CT_Leaf>(); }), "7 CT_Root");
  EXPECT_EQ(refused([](c_CT_Root& r) {
              r.f.present[0] = 2;
              r.f.b = "";
            }),
            "7 CT_Root");
  EXPECT_EQ(refused([](c_CT_Root& r) { r.f.items.emplace_back(); }), "0 ") << "an item that is not there";
}

}  // namespace
}  // namespace rubrica::lmx
