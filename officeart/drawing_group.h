// The drawing group of a book: its pictures, and who has which shape ids. It is read from the MsoDrawingGroup records,
// which are written back as they stand until something in it changes. The book owns one; pictures handed out live as
// long as it.
#pragma once

#include "officeart/group_records.h"

namespace rubrica::officeart {

class DrawingGroup {
 public:
  DrawingGroup() = default;
  DrawingGroup(DrawingGroup&&) = default;
  DrawingGroup& operator=(DrawingGroup&&) = default;

  // Takes the next record of the group, an MsoDrawingGroup or a CONTINUE behind one.
  void append(std::uint16_t recordId, ByteView body);
  // To be called behind the last of them. Throws xlerror "error in record MsoDrawingGroup" and those of the records.
  void finishReading();
  void write(RecordSink& sink) const;

  // ---- Pictures

  // Entries that have a picture, in the order of the store; at() is null past the last.
  std::size_t pictureCount() const { return _pictures.size(); }
  BlipContent* pictureAt(std::size_t index) const;
  // By the position in the store, which is what shapes state (plus 1); null where it has no picture.
  BlipContent* pictureOf(int id) const;
  // Adds a picture file and gives its position. Throws xlerror "unknown picture format".
  int addPicture(ByteView picture);
  // Counts a use more or less of the picture at a position.
  void addUses(int id, int uses);

  // ---- Ids

  // Notes the ids of a drawing that is in the file, so that no other gets them.
  void claim(std::uint32_t drawingId, std::uint32_t shapeId);
  // The id of a new drawing. Throws xlerror "too many drawings".
  std::uint16_t newDrawing();
  // A shape id that no other shape has.
  std::uint32_t newShape(std::uint32_t drawingId);
  // For a drawing with this many shapes that goes, or comes beside its shapes' ids.
  void countDrawing(int drawings, int shapes);

 private:
  OfficeArtDggContainer& root();
  OfficeArtFDGGBlock& ids();
  OfficeArtBStoreContainer& store();
  void indexPictures();
  void change();

  // The records as they came, until the first change.
  struct RecordPart {
    std::uint16_t recordId = 0;
    std::size_t size = 0;
  };
  Slice _original;
  std::vector<RecordPart> _parts;
  std::vector<std::byte> _reading;

  std::unique_ptr<OfficeArtDggContainer> _root;  // null: the book has no drawings
  OfficeArtFDGGBlock* _ids = nullptr;
  OfficeArtBStoreContainer* _store = nullptr;
  std::vector<BlipContent*> _pictures;
  std::uint32_t _mostDrawingId = 0;  // of those that were claimed
};

}  // namespace rubrica::officeart
