// Reads any bytes as a hyperlink object, which must be written back as they are, and as a link's text and as the text
// of a number format.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>

#include "biff/hyperlink_object.h"
#include "engine/sample_text.h"
#include "engine/xlerror.h"

namespace {

using namespace rubrica;

void roundTrip(std::span<const std::byte> bytes) {
  RecordBody body(bytes);
  const HyperlinkObject object = HyperlinkObject::read(body);
  std::vector<std::byte> written;
  object.append(written);
  if (written.size() != bytes.size() || object.size() != bytes.size()) std::abort();
  if (!std::equal(written.begin(), written.end(), bytes.begin())) std::abort();
  (void)object.text();
}

// A link made from any text reads back as the same text, or as what the text means for a file.
void fromText(std::u16string_view text) {
  const HyperlinkObject made = HyperlinkObject::of(text);
  std::vector<std::byte> written;
  made.append(written);
  RecordBody body(written);
  if (HyperlinkObject::read(body).text() != made.text()) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    roundTrip(std::as_bytes(std::span(data, size)));
  } catch (const xlerror&) {
  }
  std::u16string text(size / sizeof(char16_t), u'\0');
  std::memcpy(text.data(), data, text.size() * sizeof(char16_t));
  fromText(text);
  const std::u16string letters(data, data + size);
  (void)customSample(-1234.5, letters);
  if (customSample(0, letters).size() > 2000 + 20 * size) std::abort();
  return 0;
}
