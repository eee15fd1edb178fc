#pragma once

#include "data/recordset/column.h"

namespace ondrel {

// The columns of an invoice's lines, in their order: col::quantity and so on.
// clang-format off
#define ONDREL_LINE_COLUMNS(column) \
  /*     name                type    size  nullable */ \
  column(lineNumber,          Long,      0,  false) /* identity of the line in this invoice */         \
  column(parentLineNumber,    Long,      0,  false) /* -1 for a top-level line */                      \
  column(deptId,              Long,      0,  true)  /* Null for a line of no department */             \
  column(deptName,            Text,     64,  true)                                                     \
  column(itemType,            Text,     20,  false) /* kind, see line_kinds.h */                       \
  column(lineItemId,          Long,      0,  true)  /* id of the thing the line stands for, by kind */ \
  column(itemName,            Text,     64,  true)                                                     \
  column(originalUnitPrice,   Double,    0,  false) /* as first priced, before any override */         \
  column(unitPrice,           Double,    0,  false)                                                    \
  column(quantity,            Long,      0,  true)  /* pieces */                                       \
  column(lineItemTotal,       Double,    0,  false)                                                    \
  column(totalTax,            Double,    0,  false)                                                    \
  column(totalSurcharge,      Double,    0,  false)                                                    \
  column(prepay,              Double,    0,  false) /* discount a unit for paying at drop-off */       \
  column(taxableAmt,          Double,    0,  false) /* part of the amount that taxes apply to */       \
  column(daysToProcess,       Long,      0,  true)                                                     \
  column(notes,               Text,    255,  true)  /* counter notes */                                \
  column(balance,             Double,    0,  false) /* still due on the line */                        \
  column(upchargeTotal,       Double,    0,  true)  /* sums over the children of a kind */             \
  column(colorTotal,          Double,    0,  true)                                                     \
  column(patternTotal,        Double,    0,  true)                                                     \
  column(discountable,        Boolean,   0,  true)                                                     \
  column(couponable,          Boolean,   0,  true)                                                     \
  column(VIPDiscountable,     Boolean,   0,  true)                                                     \
  column(VIPQualified,        Boolean,   0,  true)                                                     \
  column(parentId,            Long,      0,  true)  /* lineItemId of the parent */                     \
  column(saleOnly,            Boolean,   0,  true)                                                     \
  column(chargeTaxCode,       Long,      0,  true)  /* tax code of a charge */                         \
  column(pkgQuantity,         Long,      0,  true)  /* pieces a sold unit */                           \
  column(peNotes,             Text,    255,  true)  /* fixed note of the price-list item */            \
  column(flattenedGroup,      Long,      0,  true)  /* marks the pieces that came from one line */     \
  column(dueDate,             Date,      0,  true)                                                     \
  column(origQuantity,        Long,      0,  false) /* when the ticket was loaded; 0 on a new line */  \
  column(outsideService,      Boolean,   0,  false)                                                    \
  column(priceLater,          Boolean,   0,  false) /* price unknown at drop-off */                    \
  column(originalLineNumber,  Long,      0,  false) /* survives renumbering for a split */             \
  column(promptResponse,      Text,    255,  true)                                                     \
  column(redo,                Boolean,   0,  false) /* free re-clean */                                \
  column(minimumPrepay,       Double,    0,  true)                                                     \
  column(invoiceNumber,       Text,     20,  true)  /* child invoice that the line went to */          \
  column(pickedUp,            Boolean,   0,  false)                                                    \
  column(backgroundColor,     Text,     12,  false)                                                    \
  column(backgroundImage,     Text,    255,  false)                                                    \
  column(heatSeal,            Text,     20,  false) /* empty when none */                              \
  column(requiresHeatSeal,    Boolean,   0,  false)                                                    \
  column(oneShot,             Boolean,   0,  false) /* not remembered on a tagged garment */           \
  column(split,               Boolean,   0,  false) /* marked for moving to a new invoice */

// What was done to the ticket at the counter.
#define ONDREL_LOG_COLUMNS(column) \
  column(itemLogType,  Text,      2,  false) /* A added, D deleted, C quantity changed, O price overridden */ \
  column(quantity,     Long,      0,  false)                                                                  \
  column(deptName,     Text,     50,  false)                                                                  \
  column(itemName,     Text,     64,  false)                                                                  \
  column(amount,       Double,    0,  false) /* negative for a deletion */
// clang-format on

ONDREL_COLUMNS(LineColumn, kLineLayout, ONDREL_LINE_COLUMNS)
ONDREL_COLUMNS(LogColumn, kLogLayout, ONDREL_LOG_COLUMNS)

using col = LineColumn;

}  // namespace ondrel
