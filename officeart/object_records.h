// Records of a sheet that stand behind its shapes: Obj (what the shape is to the sheet) and TextObject (its text). Both
// are written back as they came; a drawing owns those of its shapes.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "officeart/bytes.h"

namespace rubrica::officeart {

// A BIFF record with the CONTINUE records behind it.
struct RecordRun {
  std::uint16_t recordId = 0;
  ByteView body;
  std::vector<ByteView> continues;
};

class ObjBase {
 public:
  virtual ~ObjBase() = default;
  // Throws xlerror "error in record Obj" and the like.
  virtual void read(const RecordRun& run) = 0;
  virtual void write(RecordSink& sink) const = 0;
  virtual std::unique_ptr<ObjBase> clone() const = 0;
};

using ObjectList = std::vector<std::unique_ptr<ObjBase>>;

// Object types, the `ot` field of FtCmo.
namespace object_type {
inline constexpr std::uint16_t group = 0, picture = 8, checkBox = 11, radioButton = 12, edit = 13, spinner = 16,
                               scrollBar = 17, listBox = 18, groupBox = 19, dropDown = 20, note = 25;
}

// 93. FtCmo states type and id; the subrecords behind it depend on the type.
class Obj final : public ObjBase {
 public:
  std::uint16_t ot = 0, id = 0, grbit = 0;

  static std::unique_ptr<Obj> ofPicture(std::uint16_t id);
  static std::unique_ptr<Obj> ofNote(std::uint16_t id);

  void read(const RecordRun& run) override;
  void write(RecordSink& sink) const override;
  std::unique_ptr<ObjBase> clone() const override { return std::make_unique<Obj>(*this); }

  // The subrecords by their `ft`, in file order, FtCmo not among them.
  struct Subrecord {
    std::uint16_t ft = 0;
    std::vector<std::byte> bytes;  // ft and length included
  };
  const std::vector<Subrecord>& subrecords() const { return _subrecords; }

 private:
  std::uint16_t _ft = 0, _cb = 0;  // of FtCmo
  std::array<std::byte, 12> _reserved{};
  std::vector<Subrecord> _subrecords;
  std::vector<std::byte> _rest;
  std::vector<std::vector<std::byte>> _continues;
};

// 438. Text stands in the CONTINUE records behind it, formatting runs in a last one.
class TextObject final : public ObjBase {
 public:
  std::uint16_t grbit = 530, rot = 0;
  std::uint16_t cchText = 0, cbRuns = 0, ifntEmpty = 0;

  // The most characters of a text: cchText has 16 bits.
  static constexpr std::size_t kMostCharacters = 65535;

  // A comment's text in the given font. Throws xlerror "string is too long".
  static std::unique_ptr<TextObject> ofNote(std::u16string_view text, std::uint16_t font);

  void read(const RecordRun& run) override;
  void write(RecordSink& sink) const override;
  std::unique_ptr<ObjBase> clone() const override { return std::make_unique<TextObject>(*this); }
  const std::u16string& text() const { return _text; }

  // How many of the CONTINUE records that follow are the text's and its runs'; throws "error in record TextObject".
  static std::size_t continuesOf(ByteView body, const std::vector<ByteView>& following);

 private:
  std::array<std::byte, 6> _control{};  // reserved words, or control information, by the type of the object
  std::vector<std::byte> _formula;      // ObjFmla: length and tokens
  std::u16string _text;
  std::vector<std::vector<std::byte>> _continues;
};

}  // namespace rubrica::officeart
