#pragma once

#include "data/recordset/recordset.h"

namespace ondrel {

// Whether a brand stands among the words for colors and patterns.
enum class BrandWords { no, yes };

// The lines as a receipt wants them: a new table with one row a garment or charge, columns itemDesc,
// colorPatternDesc, upchargeDesc, total (with all that hangs on the garment) and quantity (of the garment
// alone). `lines` has the columns of an invoice's lines that this needs, by name; its filter is cleared at
// the end. A description over 255 characters raises the error of its column.
RecordsetRef groupLines(Recordset& lines, BrandWords brandWords);

}  // namespace ondrel
