// The cells that drawings and comments are anchored to, within records that are otherwise carried as they came.
#pragma once

#include <vector>

#include "biff/records/record_io.h"
#include "engine/line_move.h"

namespace rubrica {

// Moves the OfficeArtClientAnchorSheet fields of MsoDrawing records with their cells. A shape that is fixed to the page
// stays; one that moves without sizing keeps its extent in cells; a corner on a removed line goes to the line that
// takes its place.
void moveAnchors(std::vector<RawRecord>& drawing, const LineMove& move);

// Moves Note records with their cells; a note whose cell is gone goes too.
void moveNotes(std::vector<RawRecord>& notes, const LineMove& move);

}  // namespace rubrica
