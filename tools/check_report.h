// What rubrica-check finds out about a file, whatever its form.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace rubrica::tools {

struct CheckReport {
  std::string form;                     // "BIFF8 workbook, 3 sheets"
  std::map<std::string, long> known;    // records or parts by name, with their number: understood
  std::map<std::string, long> kept;     // carried through a load and a save as they are
  std::map<std::string, long> dropped;  // gone after a load and a save
  std::vector<std::string> unmodelled;  // what they mean to a user: "2 charts"
  std::vector<std::string> changed;     // differences that a load and a save make
  std::vector<std::string> damage;      // what is broken in the file
  std::vector<std::string> complaints;  // what a strict reader would not accept
  bool hasFindings() const { return !damage.empty() || !complaints.empty(); }
};

}  // namespace rubrica::tools
