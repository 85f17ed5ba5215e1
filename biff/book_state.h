// What the parts of one BIFF book share: the last message, the pool of record texts, the text conversion and a few
// facts of the file being read. Owned by the book and passed to its parts by reference; one thread per book.
#pragma once

#include <cstdint>

#include "biff/record_pool.h"
#include "biff/records/record_ids.h"
#include "biff/unicode_string.h"
#include "engine/last_message.h"
#include "engine/text_converter.h"
#include "engine/xlerror.h"

namespace rubrica {

// Messages of operations that the .xls form, or this engine, doesn't have.
inline constexpr char kNotSupported[] = "not supported";
inline constexpr char kNotForXls[] = "function is not supported for xls files";

struct BookState : LastMessage {
  RecordPool pool;
  TextConverter text;
  bool rgbMode = false;
  std::uint16_t biffVersion = kBiff8Version;  // of the BOF that the book was loaded from
  std::uint16_t codePage = 1200;              // of the CodePage record

  bool isBiff5() const { return biffVersion <= kBiff5Version; }
  TextForm textForm() const { return {isBiff5(), codePage}; }

  // Hands wide text to the caller's form: sets "ok", or the warning about lost characters.
  const char16_t* convert(const char16_t* wide) {
    if (wide == nullptr) return nullptr;
    setOk();
    return wide;
  }
};

}  // namespace rubrica
