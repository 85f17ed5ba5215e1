// A document read into a root and written again, and all that can be told of it: what classes laid out by hand and
// described ones must have in common.
#pragma once

#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "lmx/c_xml_reader.h"
#include "lmx/driver.h"

namespace rubrica::ooxml_tests {

struct read_result {
  lmx::elmx_error code;
  std::string item;
  int program_line;
  int xml_line;
  std::string text;
  bool operator==(const read_result&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const read_result& r) {
  return out << r.code << " " << r.item << " at " << r.program_line << ", " << r.xml_line << ": " << r.text;
}

template <class Root>
read_result readAndWrite(const std::string& document, bool by_layers = false) {
  Root root;
  lmx::c_xml_reader_memory reader(document.data(), document.size());
  if (by_layers) reader.disable_fast_lane();
  read_result answer{};
  answer.code = root.unmarshal(reader);
  const lmx::c_error_record& record = reader.record();
  answer.item = record.item_name;
  answer.program_line = record.program_line;
  answer.xml_line = record.xml_line;
  if (answer.code == lmx::ELMX_OK) {
    EXPECT_EQ(root.marshal(answer.text), lmx::ELMX_OK);
  }
  return answer;
}

}  // namespace rubrica::ooxml_tests
