// Record ids of the BIFF8 workbook stream that this engine names, after the published format. Ids that it only carries
// stand in the tables that carry them.
#pragma once

#include <cstdint>

namespace rubrica::id {

inline constexpr std::uint16_t kFormula = 6, kEof = 10, kCalcCount = 12, kCalcMode = 13, kCalcPrecision = 14,
                               kCalcRefMode = 15, kCalcDelta = 16, kCalcIter = 17, kProtect = 18, kPassword = 19,
                               kHeader = 20, kFooter = 21, kExternSheet = 23, kLbl = 24, kWinProtect = 25,
                               kVertPageBreaks = 26, kHorzPageBreaks = 27, kNote = 28, kSelection = 29, kDate1904 = 34,
                               kExternName = 35, kLeftMargin = 38, kRightMargin = 39, kTopMargin = 40,
                               kBottomMargin = 41, kPrintRowCol = 42, kPrintGrid = 43, kFilePass = 47, kFont = 49,
                               kContinue = 60, kWindow1 = 61, kBackup = 64, kPane = 65, kCodePage = 66,
                               kPrinterSettings = 77, kDefColWidth = 85, kXct = 89, kCrn = 90, kWriteAccess = 92,
                               kObj = 93, kUncalced = 94, kCalcSaveRecalc = 95, kTemplate = 96, kObjProtect = 99;
inline constexpr std::uint16_t kColInfo = 125, kGuts = 128, kWsBool = 129, kGridSet = 130, kHCenter = 131,
                               kVCenter = 132, kBoundSheet = 133, kCountry = 140, kHideObj = 141, kPalette = 146,
                               kStandardWidth = 153, kBuiltInFnGroupCount = 156, kScl = 160, kSetup = 161, kMulRk = 189,
                               kMulBlank = 190, kMms = 193, kDbCell = 215, kBookBool = 218, kScenProtect = 221,
                               kXf = 224, kInterfaceHdr = 225, kInterfaceEnd = 226, kMergeCells = 229,
                               kMsoDrawingGroup = 235, kMsoDrawing = 236, kPhoneticInfo = 239, kSst = 252,
                               kLabelSst = 253, kExtSst = 255;
inline constexpr std::uint16_t kRrTabId = 317, kUsesElfs = 352, kDsf = 353, kSupBook = 430, kProt4Rev = 431,
                               kTextObject = 438, kRefreshAll = 439, kHLink = 440, kProt4RevPass = 444,
                               kExcel9File = 448, kRecalcId = 449, kDimensions = 512, kBlank = 513, kNumber = 515,
                               kLabel = 516, kBoolErr = 517, kString = 519, kRow = 520, kIndex = 523, kArray = 545,
                               kDefaultRowHeight = 549, kTable = 566, kWindow2 = 574, kRk = 638, kStyle = 659,
                               kFormat = 1054, kShrFmla = 1212, kBof = 2057;
inline constexpr std::uint16_t kContinueFrt = 2066, kSheetExt = 2146, kBookExt = 2147, kHfPicture = 2150,
                               kFeatHdr = 2151, kFeat = 2152, kFeatHdr11 = 2161, kXfCrc = 2172, kXfExt = 2173,
                               kStyleExt = 2194;

}  // namespace rubrica::id

namespace rubrica {

// The most bytes that one record's body holds; longer data goes on in CONTINUE records.
inline constexpr std::uint16_t kMaxRecordSize = 8224;

// A book whose BOF version is at most this has the BIFF5 forms of records: 8-bit text, 16-bit rows.
inline constexpr std::uint16_t kBiff5Version = 0x0500;
inline constexpr std::uint16_t kBiff8Version = 0x0600;

}  // namespace rubrica
