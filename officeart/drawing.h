// The drawing of one sheet: its shapes as a tree of OfficeArt records, each with the records of the sheet that belong
// to it. It is read from the MsoDrawing, Obj, TextObject and CONTINUE records of a sheet in their order and writes them
// again; what it has no class for keeps its bytes and its place. The sheet owns one.
//
//   Drawing drawing;
//   drawing.begin(group.newDrawing(), group.newShape(1));
//   drawing.addPicture(group.newShape(drawing.id()), anchor, pictureId);
//   drawing.write(sink);
#pragma once

#include <functional>
#include <string>

#include <boost/unordered/unordered_flat_map.hpp>

#include "officeart/shape_records.h"

namespace rubrica::officeart {

// A record as a sheet holds it.
struct SheetRecord {
  std::uint16_t recordId = 0;
  ByteView body;
};

// A placement of a picture.
struct PlacedPicture {
  int id = -1;  // its position in the blip store
  CellAnchor anchor;
};

class Drawing {
 public:
  Drawing() = default;
  // A copy of all shapes, with the ids that they have.
  Drawing(const Drawing& other);
  Drawing& operator=(const Drawing& other);
  Drawing(Drawing&&) = default;
  Drawing& operator=(Drawing&&) = default;

  // Throws xlerror "MsoDrawing size is incorrect" and the messages of the records.
  void read(const std::vector<SheetRecord>& records);
  void write(RecordSink& sink) const;

  // ---- Ids

  // Whether there are shapes, or a first one has been prepared by begin().
  bool hasShapes() const { return _root != nullptr; }
  std::uint16_t id() const;
  int shapeCount() const;
  void begin(std::uint16_t drawingId, std::uint32_t patriarchId);
  void forEachShapeId(const std::function<void(std::uint32_t)>& visit) const;
  // Gives the drawing another id and its shapes others, wherever they are named. A shape that isn't here is named no
  // more.
  using ShapeIds = boost::unordered_flat_map<std::uint32_t, std::uint32_t>;
  void renumber(std::uint16_t drawingId, const ShapeIds& ids);

  // ---- Pictures, in the order of the shapes
  std::size_t pictureCount() const { return _pictures.size(); }
  // The cells of a picture in a group are those of the group.
  PlacedPicture picture(std::size_t index) const;
  void addPicture(std::uint32_t shapeId, const CellAnchor& anchor, int pictureId);
  void removePicture(std::size_t index);

  // ---- Comments

  // Adds a text box and answers the id of its object, by which a note finds it. Throws xlerror "string is too long",
  // "too many objects".
  std::uint16_t addComment(std::uint32_t shapeId, const CellAnchor& anchor, std::u16string_view text,
                           std::uint16_t font);
  // The text of the comment whose object has this id; null where there is none.
  const std::u16string* commentText(std::uint16_t objectId) const;

  // Calls `move(anchor, isComment)` for every anchor to cells; it answers whether it changed the anchor. Answers
  // whether any did.
  bool moveAnchors(const std::function<bool(CellAnchor&, bool)>& move);

 private:
  struct ObjectAt;
  struct Picture {
    OfficeArtSpContainer* shape = nullptr;
    OfficeArtSpgrContainer* group = nullptr;       // that holds it
    OfficeArtClientAnchorSheet* anchor = nullptr;  // its own or its outermost group's
  };

  void attach(std::vector<ObjectAt>& objects);
  void index();
  void indexGroup(OfficeArtSpgrContainer& group, OfficeArtClientAnchorSheet* groupAnchor);
  void indexObjects();
  OfficeArtSpgrContainer& patriarch();
  OfficeArtSpContainer& addShape(std::uint32_t shapeId, std::uint16_t shapeType, std::unique_ptr<OfficeArtFOPT> options,
                                 const CellAnchor& anchor, bool hasMoreOptions);
  std::uint16_t nextObjectId();
  void takeObjectId(std::uint16_t id);

  std::unique_ptr<OfficeArtDgContainer> _root;
  ObjectList _leading;  // objects before the first shape
  std::vector<Picture> _pictures;
  boost::unordered_flat_map<std::uint16_t, const TextObject*> _comments;  // by the ids of their objects
  std::vector<bool> _objectIds;                                           // those that are taken
  std::uint16_t _lastObjectId = 0;
};

}  // namespace rubrica::officeart
