#include "tools/xlsx_check.h"

#include "tools/package_binding.h"
#include "tools/package_complaints.h"
#include "tools/package_content.h"
#include "tools/package_file.h"
#include "tools/resave_check.h"

namespace rubrica::tools {
namespace {

void compareParts(const PackageFile& before, const PackageFile& after, CheckReport& report) {
  for (const PackagePart& part : before.parts) {
    const bool isLeft = after.find(part.name) != nullptr;
    auto& counts = !isLeft ? report.dropped : part.handling == Handling::bound ? report.known : report.kept;
    ++counts[kindOf(part)];
    const std::size_t markup = droppedMarkup(before, part);
    if (markup > 0) report.dropped["alternative or ignorable markup in " + part.name] = static_cast<long>(markup);
  }
}

}  // namespace

CheckReport checkXlsx(std::span<const std::byte> file, Progress& progress) {
  CheckReport report;
  progress.begin("reading the parts");
  const PackageFile package = readPackage(file);
  if (package.opened) {  // otherwise the load below says why not
    report.damage = package.damage;
    report.complaints = packageComplaints(package);
    report.unmodelled = unmodelledContent(package);
  }
  const std::vector<std::byte> saved = checkResave(file, "xlsx", report, progress);
  if (!saved.empty()) compareParts(package, readPackage(saved), report);
  return report;
}

}  // namespace rubrica::tools
