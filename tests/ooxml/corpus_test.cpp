// Every bound part of every sample workbook: it is read, written and read again, and the two trees are equal; or it is
// refused for one of the reasons for which a binding has to refuse. Skipped where there are no samples.
#include <algorithm>
#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <vector>
#include <zip.h>

#include <gtest/gtest.h>

#include "lmx/driver.h"
#include "source/ooxml/comments.h"
#include "source/ooxml/contentypes.h"
#include "source/ooxml/drawing.h"
#include "source/ooxml/relationships.h"
#include "source/ooxml/sharedStringTable.h"
#include "source/ooxml/sheet.h"
#include "source/ooxml/strict.h"
#include "source/ooxml/strictdrawing.h"
#include "source/ooxml/styles.h"
#include "source/ooxml/table.h"
#include "source/ooxml/workbook.h"
#include "tests/ooxml/round_doubles.h"

namespace rubrica {

namespace {

struct part {
  std::string name;
  std::string bytes;
};

std::string readEntry(zip_t* archive, zip_uint64_t index, zip_uint64_t size) {
  std::string bytes(size, '\0');
  zip_file_t* file = zip_fopen_index(archive, index, 0);
  if (!file) return {};
  const zip_int64_t got = zip_fread(file, bytes.data(), size);
  zip_fclose(file);
  bytes.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
  return bytes;
}

std::vector<part> readPackage(const std::filesystem::path& path) {
  std::vector<part> parts;
  zip_t* archive = zip_open(path.c_str(), ZIP_RDONLY, nullptr);
  if (!archive) return parts;
  for (zip_int64_t i = 0; i < zip_get_num_entries(archive, 0); ++i) {
    zip_stat_t stat;
    if (zip_stat_index(archive, static_cast<zip_uint64_t>(i), 0, &stat) != 0) continue;
    const std::string name = stat.name;
    if (name.ends_with(".xml") || name.ends_with(".rels")) {
      parts.push_back({"/" + name, readEntry(archive, static_cast<zip_uint64_t>(i), stat.size)});
    }
  }
  zip_close(archive);
  return parts;
}

// The roots a part of some content type may have: the transitional one, and the strict one where there is one.
using roots = std::vector<const lmx::root_descriptor*>;

const std::vector<std::pair<std::string, roots>>& rootsByContentType() {
  static const std::vector<std::pair<std::string, roots>> table = {
      {".main+xml", {&workbook::c_workbook::kRoot, &strict::c_workbook::kRoot}},
      {".worksheet+xml", {&sheet::c_worksheet::kRoot, &strict::c_worksheet::kRoot}},
      {".styles+xml", {&styles::c_styleSheet::kRoot, &strict::c_styleSheet::kRoot}},
      {".sharedStrings+xml", {&sharedStringTable::c_sst::kRoot, &strict::c_sst::kRoot}},
      {"spreadsheetml.comments+xml", {&comments::c_comments::kRoot}},
      {"spreadsheetml.table+xml", {&table::c_table::kRoot, &strict::c_table::kRoot}},
      {"officedocument.drawing+xml", {&drawing::c_wsDr::kRoot, &strictdrawing::c_wsDr::kRoot}},
      {".relationships+xml", {&relationships::c_Relationships::kRoot}},
  };
  return table;
}

bool sameName(const std::string& left, const std::string& right) {
  return std::ranges::equal(
      left, right, {}, [](char c) { return std::tolower(c); }, [](char c) { return std::tolower(c); });
}

std::string contentType(const contentypes::c_Types& types, const std::string& name) {
  const std::string extension = name.substr(name.rfind('.') + 1);
  std::string found;
  for (std::size_t i = 0; i < types.size_choice(); ++i) {
    const auto& item = types.get_choice(i);
    if (item.isset_Override() && sameName(item.find_Override()->get_PartName(), name)) {
      return item.find_Override()->get_ContentType();
    }
    if (item.isset_Default() && sameName(item.find_Default()->get_Extension(), extension)) {
      found = item.find_Default()->get_ContentType();
    }
  }
  return found;
}

struct outcome {
  int read = 0;
  int refused = 0;
  std::map<std::string, std::vector<std::string>> causes;  // to the parts
};

// Markup for readers of several generations, which a layer before the bindings resolves.
bool hasMarkupCompatibility(const std::string& bytes) {
  return bytes.find("AlternateContent") != std::string::npos || bytes.find(":Ignorable") != std::string::npos;
}

// Why a binding has to refuse the part; "unexpected" for anything else.
std::string causeOf(const lmx::c_error_record& record, const std::string& bytes) {
  switch (record.code) {
    case lmx::ELMX_ELEMENT_NOT_FOUND:
      return "the namespace is of no flavour that is bound";
    case lmx::ELMX_LENGTH_TOO_SHORT:
      return "a colour of fewer than four bytes";
    case lmx::ELMX_BAD_END_OF_ELEMENT:
      if (record.item_name == "border") return "a strict border with left instead of start";
      [[fallthrough]];
    case lmx::ELMX_MANDATORY_ELEMENT_MISSING:
    case lmx::ELMX_BAD_CHOICE:
      if (hasMarkupCompatibility(bytes)) return "markup compatibility that is not resolved";
      [[fallthrough]];
    default:
      return "unexpected: " + std::to_string(record.code) + " " + record.item_name;
  }
}

void tryPart(const part& piece, const roots& candidates, const std::string& label, outcome& result) {
  lmx::c_error_record record;
  for (const lmx::root_descriptor* root : candidates) {
    const lmx::owned tree(root->type->create());
    record = {};
    if (lmx::unmarshal_root(*tree.get(), *root, piece.bytes.data(), piece.bytes.size(), &record) == lmx::ELMX_OK) {
      ++result.read;
      std::string text;
      ASSERT_EQ(lmx::marshal_root(*tree.get(), *root, text), lmx::ELMX_OK) << label;
      const lmx::owned again(root->type->create());
      ASSERT_EQ(lmx::unmarshal_root(*again.get(), *root, text.data(), text.size(), &record), lmx::ELMX_OK)
          << label << "\n"
          << record.message();
      ooxml_tests::roundDoubles(*tree.get());
      EXPECT_TRUE(lmx::equal(*tree.get(), *again.get())) << label;
      return;
    }
    if (record.code != lmx::ELMX_ELEMENT_NOT_FOUND) break;
  }
  ++result.refused;
  result.causes[causeOf(record, piece.bytes)].push_back(label);
}

void tryPackage(const std::filesystem::path& path, outcome& result) {
  const std::vector<part> parts = readPackage(path);
  const auto list = std::ranges::find(parts, "/[Content_Types].xml", &part::name);
  if (list == parts.end()) return;
  const std::string file = path.filename().string();
  tryPart(*list, {&contentypes::c_Types::kRoot}, file + list->name, result);
  contentypes::c_Types types;
  if (types.unmarshal(list->bytes.data(), list->bytes.size()) != lmx::ELMX_OK) return;
  for (const part& piece : parts) {
    if (&piece == &*list) continue;  // some writers give the main type to every part without an override
    const std::string type = contentType(types, piece.name);
    for (const auto& [ending, candidates] : rootsByContentType()) {
      if (type.ends_with(ending)) tryPart(piece, candidates, file + piece.name, result);
    }
  }
}

void print(const outcome& result) {
  std::cout << result.read << " parts read, written and read again; " << result.refused << " refused\n";
  for (const auto& [cause, labels] : result.causes) {
    std::cout << labels.size() << "\t" << cause << ", first " << labels.front() << "\n";
  }
}

}  // namespace

TEST(SampleWorkbooks, EveryBoundPartComesBackOrIsRefusedForACause) {
  const std::filesystem::path folder = std::filesystem::path(RUBRICA_SHARED) / "corpus" / "xlsx";
  if (!std::filesystem::is_directory(folder)) GTEST_SKIP() << "no sample workbooks at " << folder;
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) files.push_back(entry.path());
  std::ranges::sort(files);
  outcome result;
  for (const auto& path : files) tryPackage(path, result);
  print(result);
  EXPECT_GT(result.read, 0);
  for (const auto& [cause, labels] : result.causes) {
    EXPECT_FALSE(cause.starts_with("unexpected")) << cause << ": " << labels.front();
  }
}

}  // namespace rubrica
