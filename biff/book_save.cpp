// Saving an .xls book: the records in the order that readers expect, then the sectors around them.
#include "biff/book_impl.h"
#include "biff/drawing_sink.h"

namespace rubrica {

bool BookImplT::save(Text filename, bool /*useTempFile*/) {
  return guarded(_state, false, [&] {
    if (filename == nullptr) throw xlerror("file name can't be 0");
    const auto output = platform::openFileOutput(filename);
    if (output == nullptr) throw xlerror("can't open file for writing");
    saveTo(*output);
    if (!output->commit()) throw xlerror("stream error, perhaps it's too small writing buffer");
    return true;
  });
}

bool BookImplT::saveRaw(const void** data, std::size_t* size) {
  return guarded(_state, false, [&] {
    _raw = {};
    saveTo(_raw);
    if (data != nullptr) *data = _raw.bytes().data();
    if (size != nullptr) *size = _raw.bytes().size();
    return true;
  });
}

void BookImplT::saveTo(platform::OutputStream& output) {
  _xls.reset(false);
  _xls.attach(output);
  _xls.start();
  for (const auto& sheet : _sheets) sheet->settleComments();
  saveGlobals();
  _xls.close();
}

void BookImplT::saveGlobals() {
  namespace raw = carried;
  // Whatever form the book was read in, its records are written in BIFF8 form.
  Bof bof = _globals.bof;
  bof.vers = kBiff8Version;
  bof.dt = Bof::kGlobals;
  writeFixed(_xls, bof);
  if (_globals.isTemplate) _xls.writeHeader(id::kTemplate, 0);
  _xls.writeRecord(id::kInterfaceHdr, &_globals.interfaceCodePage, sizeof(std::uint16_t));
  _xls.writeRecord(id::kMms, _globals.mms.data(), sizeof(_globals.mms));
  _xls.writeHeader(id::kInterfaceEnd, 0);
  _xls.writeRecord(id::kWriteAccess, _globals.writeAccess.data(), sizeof(_globals.writeAccess));
  _globals.writeWords(_xls, {id::kCodePage, id::kDsf});
  _xls.writeRecord(id::kRrTabId, _tabIds.data(), static_cast<std::uint16_t>(_tabIds.size() * sizeof(std::uint16_t)));
  _globals.writeCarried(_xls, {raw::kObProj, raw::kObNoMacros, raw::kCodeName});
  _globals.writeWords(
      _xls, {id::kBuiltInFnGroupCount, id::kWinProtect, id::kProtect, id::kPassword, id::kProt4Rev, id::kProt4RevPass});
  writeFixed(_xls, _globals.window1);
  _globals.writeWords(_xls,
                      {id::kBackup, id::kHideObj, id::kDate1904, id::kCalcPrecision, id::kRefreshAll, id::kBookBool});
  _styles.writeFonts(_xls);
  _styles.writeFormats(_xls);
  _styles.writeXfs(_xls);
  _globals.writeCarried(_xls, {raw::kXfCrc});
  for (const RawRecord& record : _xfExts) writeRaw(_xls, record);
  _styles.writeStyles(_xls);
  _globals.writeCarried(_xls, {raw::kTableStyles});
  _styles.writePalette(_xls);
  _globals.writeCarried(_xls, {raw::kClrtClient});
  _globals.writeWords(_xls, {id::kUsesElfs});
  const std::vector<std::uint32_t> notes = saveBoundSheets();
  _globals.writeCarried(_xls, {raw::kMtrSettings, raw::kForceFullCalculation});
  writeFixed(_xls, _globals.country);
  _links.write(_xls, _boundSheets.size());
  _names.write(_xls);
  writeFixed(_xls, _globals.recalcId);
  for (const RawRecord& record : _hfPictures) writeRaw(_xls, record);
  DrawingRecordSink drawingSink(_xls);
  _drawings.write(drawingSink);
  writeSst(_xls, _sst);
  _extSst.write(_xls);
  _globals.writeCarried(_xls, {raw::kTheme, raw::kCompressPictures, raw::kCompat12});
  for (const RawRecord& record : _unknownRecords) writeRaw(_xls, record);
  _xls.writeHeader(id::kEof, 0);

  std::vector<std::uint32_t> starts;
  for (const auto& sheet : _sheets) {
    starts.push_back(_xls.tell());
    sheet->save(_xls);
  }
  const std::uint32_t end = _xls.tell();
  for (std::size_t i = 0; i < starts.size() && i < notes.size(); ++i) {
    _xls.seekTo(notes[i]);
    _xls.write(&starts[i], sizeof(starts[i]));
  }
  _xls.seekTo(end);
}

// Answers where in the stream each sheet's position has to be put.
std::vector<std::uint32_t> BookImplT::saveBoundSheets() {
  constexpr std::uint32_t kRecordHeader = 4;
  std::vector<std::uint32_t> places;
  for (std::size_t i = 0; i < _boundSheets.size(); ++i) {
    BoundSheet8& bound = _boundSheets[i];
    if (i < _sheets.size() && bound.name.view() != _sheets[i]->currentName()) {
      bound.name.assign(_sheets[i]->currentName(), _state.pool);
    }
    places.push_back(_xls.tell() + kRecordHeader);
    _xls.writeHeader(id::kBoundSheet, static_cast<std::uint16_t>(6 + bound.name.size()));
    _xls.writeInt32(bound.lbPlyPos = 0);
    _xls.writeInt8(bound.hsState);
    // A worksheet that became a list of records from its embedded chart on is listed as what it is now.
    const bool isChart = i < _sheets.size() && _sheets[i]->substreamType() == Bof::kChart;
    _xls.writeInt8(isChart ? BoundSheet8::kChart : bound.dt);
    bound.name.write(_xls);
  }
  return places;
}

}  // namespace rubrica
