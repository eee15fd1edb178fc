#include "data/dialect/procedures/account_procedures.h"
#include "data/dialect/procedures/offer_procedures.h"
#include "data/dialect/procedures/payment_procedures.h"
#include "data/dialect/procedures/procedure.h"
#include "data/dialect/procedures/ticket_procedures.h"

namespace ondrel::sql {
namespace {

struct ProcedureRow {
  std::string_view name;
  int least;
  int most;
  RecordsetRef (*body)(ProcedureCall&);
};

// clang-format off
constexpr ProcedureRow kProcedures[] = {
    // name                        arguments
    {"InsertTicket",                32, 32, insertTicket},
    {"UpdateTicket",                28, 28, updateTicket},
    {"UpdateInventory",              2,  2, updateInventory},
    {"InsertTicketTags",             3,  3, insertTicketTags},
    {"InsertQuickInvoice",          14, 14, insertQuickInvoice},
    {"InsertMiscCharge",            10, 10, insertMiscCharge},
    {"GetProbableCoupons",           4,  4, getProbableCoupons},
    {"GetProbableLoyaltyDiscounts",  4,  4, getProbableLoyaltyDiscounts},
    {"GetProbablePromotions",        5,  5, getProbablePromotions},
    {"PickupPayment",                9,  9, pickupPayment},
    {"ApplyPrePayPayment",           6,  6, applyPrePayPayment},
    {"InsertPayment",               12, 12, insertPayment},
    {"isHeatSealDept",               1,  1, isHeatSealDept},
    {"sendtowhiteadc",               2,  2, sendToWhiteAdc},
};
// clang-format on

}  // namespace

const ProcedureRegistry& storeProcedures() {
  static const ProcedureRegistry registry = [] {
    ProcedureRegistry result;
    for (const ProcedureRow& row : kProcedures)
      result.add(
          {std::string(row.name), row.least, row.most, row.body ? ProcedureBody(row.body) : ProcedureBody()});
    return result;
  }();
  return registry;
}

}  // namespace ondrel::sql
