#include "biff/workbook_globals.h"

#include <algorithm>
#include <iterator>

#include "biff/records/word_records.h"

namespace rubrica {
namespace {

constexpr WordSlot<WorkbookGlobals> kWords[] = {
    {id::kCalcPrecision, "CalcPrecision", &WorkbookGlobals::calcPrecision},
    {id::kProtect, "Protect", &WorkbookGlobals::protect},
    {id::kPassword, "Password", &WorkbookGlobals::password},
    {id::kWinProtect, "WinProtect", &WorkbookGlobals::winProtect},
    {id::kDate1904, "Date1904", &WorkbookGlobals::date1904},
    {id::kBackup, "Backup", &WorkbookGlobals::backup},
    {id::kCodePage, "CodePage", &WorkbookGlobals::codePage},
    {id::kHideObj, "HideObj", &WorkbookGlobals::hideObj},
    {id::kBuiltInFnGroupCount, "BuiltInFnGroupCount", &WorkbookGlobals::builtInFnGroupCount},
    {id::kBookBool, "BookBool", &WorkbookGlobals::bookBool},
    {id::kUsesElfs, "UsesELFs", &WorkbookGlobals::usesElfs},
    {id::kDsf, "DSF", &WorkbookGlobals::dsf},
    {id::kProt4Rev, "Prot4Rev", &WorkbookGlobals::prot4Rev},
    {id::kRefreshAll, "RefreshAll", &WorkbookGlobals::refreshAll},
    {id::kProt4RevPass, "Prot4RevPass", &WorkbookGlobals::prot4RevPass}};

constexpr std::uint16_t kCarried[] = {carried::kObProj,
                                      carried::kCodeName,
                                      carried::kObNoMacros,
                                      carried::kXfCrc,
                                      carried::kCompat12,
                                      carried::kTableStyles,
                                      carried::kTheme,
                                      carried::kMtrSettings,
                                      carried::kCompressPictures,
                                      carried::kForceFullCalculation,
                                      carried::kClrtClient};

// Text of a one-character user name: count, flags, letter.
constexpr std::uint8_t kUserName[] = {1, 0, 0, 'R'};
constexpr std::uint8_t kUserNamePadding = 0x20;

// A body that may be missing: nothing, or one word.
void readOptionalWord(std::uint16_t& word, std::span<const std::byte> bytes, const char* name) {
  if (!bytes.empty() && bytes.size() != sizeof(word)) throwSizeIsIncorrect(name);
  RecordBody(bytes).take(word);
}

void checkBookExt(std::uint16_t size) {
  if (size < 20 || size > 22) throwSizeIsIncorrect("BookExt");
}

}  // namespace

WorkbookGlobals::WorkbookGlobals() {
  writeAccess.fill(kUserNamePadding);
  std::copy(std::begin(kUserName), std::end(kUserName), writeAccess.begin());
}

bool WorkbookGlobals::read(Xls& xls, std::uint16_t recordId, std::uint16_t size) {
  std::uint16_t lost = 0;
  switch (recordId) {
    case id::kBof: {
      const auto bytes = xls.view(size);
      if (bytes.size() < 4) throwSizeIsIncorrect(Bof::kName);
      readPrefix(bof, bytes);
      return true;
    }
    case id::kTemplate:
      readOptionalWord(lost, xls.view(size), "Template");
      isTemplate = true;
      return true;
    case id::kInterfaceHdr:
      readOptionalWord(interfaceCodePage, xls.view(size), "InterfaceHdr");
      return true;
    case id::kInterfaceEnd:
      readOptionalWord(lost, xls.view(size), "InterfaceEnd");
      return true;
    case id::kMms: {
      const auto bytes = xls.view(size);
      if (!bytes.empty() && bytes.size() != sizeof(mms)) throwSizeIsIncorrect("Mms");
      RecordBody(bytes).take(mms);
      return true;
    }
    case id::kWriteAccess: {
      // A BIFF5 user name has another form, which must not be written into a BIFF8 file.
      const auto bytes = xls.view(size);
      if (bof.vers > kBiff5Version) {
        std::memcpy(writeAccess.data(), bytes.data(), std::min(bytes.size(), writeAccess.size()));
      }
      return true;
    }
    case id::kWindow1:
      readFixed(window1, xls.view(size));
      return true;
    case id::kCountry:
      readFixed(country, xls.view(size));
      return true;
    case id::kRecalcId:
      readFixed(recalcId, xls.view(size));
      return true;
    case id::kExcel9File:
      if (size != 0) throwSizeIsIncorrect("Excel9File");
      return true;
    case id::kBookExt:
      checkBookExt(size);
      xls.skip(size);
      return true;
    default:
      break;
  }
  if (std::find(std::begin(kCarried), std::end(kCarried), recordId) != std::end(kCarried)) {
    carried.push_back(RawRecord::of(recordId, xls.view(size)));
    return true;
  }
  const auto hasWord =
      std::any_of(std::begin(kWords), std::end(kWords), [&](const auto& slot) { return slot.recordId == recordId; });
  return hasWord && readWord(*this, kWords, recordId, xls.view(size));
}

void WorkbookGlobals::writeWords(Xls& xls, std::initializer_list<std::uint16_t> ids) const {
  for (const std::uint16_t recordId : ids) {
    const auto* slot =
        std::find_if(std::begin(kWords), std::end(kWords), [&](const auto& s) { return s.recordId == recordId; });
    writeWord(xls, recordId, this->*slot->word);
  }
}

void WorkbookGlobals::writeCarried(Xls& xls, std::initializer_list<std::uint16_t> ids) const {
  for (const std::uint16_t recordId : ids) {
    for (const RawRecord& record : carried) {
      if (record.recordId == recordId) writeRaw(xls, record);
    }
  }
}

}  // namespace rubrica
