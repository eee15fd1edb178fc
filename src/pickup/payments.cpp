#include <fmt/format.h>

#include "base/text.h"
#include "data/card_numbers.h"
#include "data/query_database.h"
#include "data/store_loading.h"
#include "pickup/pickup.h"
#include "pickup/pickup_columns.h"

namespace ondrel {
namespace {

using enum PaymentColumn;

// A way of paying. One without a reference number adds to the row that is there.
struct PaymentKind {
  std::string_view name;
  bool merges;
  bool hasNumber;
  bool isCard;
};

// clang-format off
constexpr PaymentKind kPaymentKinds[] = {
    // type                 merges  number  card
    {"Cash",                true,   false,  false},
    {"On Account",          true,   false,  false},
    {"Check",               false,  true,   false},
    {"Gift Certificate",    false,  true,   false},
    {"GiftCard",            false,  true,   false},
    {"Coupon Payment",      false,  true,   false},
    {"Trade",               false,  true,   false},
    {"Credit Card",         false,  true,   true},
};
// clang-format on

const PaymentKind* kindOf(std::string_view type) {
  for (const PaymentKind& kind : kPaymentKinds)
    if (kind.name == type) return &kind;
  return nullptr;
}

// The filter of a type: "" for a blank name, all others for one behind a minus.
std::string typeFilter(const Variant& paymentType) {
  std::string_view type;
  const std::string given = paymentType.joined();
  type = trim(given);
  if (type.empty()) return "";
  const bool others = type.starts_with('-');
  if (others) type.remove_prefix(1);
  return fmt::format("paymentType{}'{}'", others ? "<>" : "=", escapeSql(type));
}

}  // namespace

void Pickup::initPayments() {
  payments = Recordset::create(kPaymentLayout);
}

// ---------------------------------------------------------------- tenders

void Pickup::addPayment(const Variant& amtPaid, const Variant& paymentType, const Variant& checkCardNo,
                        const Variant& ExpDate, const Variant& creditCardType, const Variant& amtToBeApplied,
                        const Variant& approvalCode, const Variant& transactionId) {
  amtToBeApplied.toDouble();  // must be a number and is not used
  const std::string type = paymentType.joined();
  const PaymentKind* kind = kindOf(type);
  if (kind && !(kind->merges && addToExistingPayment(type, amtPaid))) {
    std::vector<Column> columns = {paymentNumber, amountPaid, PaymentColumn::paymentType};
    std::vector<Variant> values = {nextPaymentNumber_, amtPaid, type};
    const auto add = [&](Column column, const Variant& value) {
      columns.push_back(column);
      values.push_back(value);
    };
    if (kind->hasNumber) add(PaymentColumn::checkCardNo, checkCardNo);
    if (kind->isCard) {
      add(creditCardExpDate, ExpDate);
      add(PaymentColumn::creditCardType, creditCardType);
      add(PaymentColumn::approvalCode, approvalCode);
      add(transactionNo, transactionId);
    }
    payments->addNew(columns, values);
    if (kind->isCard) creditCardTranExists = true;
    ++nextPaymentNumber_;
  }
  if (!openCashDrawer) setOpenCashDrawerFlag(type);
}

bool Pickup::addToExistingPayment(const std::string& type, const Variant& amount) {
  payments->setFilter(typeFilter(type));
  const bool found = !payments->eof();
  if (found) payments->setValue(amountPaid, payments->value(amountPaid) + amount);
  payments->clearFilter();
  return found;
}

double Pickup::getPaymentByType(const Variant& paymentType) {
  payments->setFilter(typeFilter(paymentType));
  double sum = 0;
  for (; !payments->eof(); payments->moveNext()) sum += payments->number(amountPaid);
  payments->clearFilter();
  return sum;
}

void Pickup::deletePaymentByName(const Variant& paymentType) {
  const std::string filter = typeFilter(paymentType);
  if (filter.empty()) return;
  payments->setFilter(filter);
  for (; !payments->eof(); payments->moveNext()) payments->deleteRow();
  payments->clearFilter();
}

Variant Pickup::maskCardNumber(const Variant& value) const {
  return maskedCardNumber(value.joined());
}

void Pickup::adjustCashToTotal() {
  const double cash = getPaymentByType("Cash");
  const double rest = getTotal().toDouble() - getPaymentByType("-Cash");
  if (rest < 0) return deletePaymentByName("Cash");
  if (cash <= rest) return;
  payments->setFilter("paymentType='Cash'");
  payments->setValue(amountPaid, rest);
  payments->clearFilter();
}

ArrayRef Pickup::getPaymentLists() {
  std::string amounts, types;
  payments->clearFilter();
  for (; !payments->eof(); payments->moveNext()) {
    const char* separator = amounts.empty() ? "" : ",";
    amounts += separator + payments->value(amountPaid).toText();
    types += separator + ("''" + payments->text(PaymentColumn::paymentType) + "''");
  }
  return std::make_shared<Array>(std::vector<Variant>{"'" + amounts + "'", "'" + types + "'"});
}

// ---------------------------------------------------------------- the drawer

void Pickup::initStorePaymentTypeInfo() {
  loadStorePaymentTypes(*apartment_, storeid);
}

// The flag is only ever turned on; a type for which the store says nothing leaves it as it is.
void Pickup::setOpenCashDrawerFlag(const std::string& paymentType) {
  const RecordsetRef& types = apartment_->store.storePaymentTypes;
  if (!types) throw Error(ErrorNumber::ObjectClosed, "Recordset", "The store's payment types are not loaded");
  types->setFilter("paymentTypeName='" + escapeSql(paymentType) + "'");
  if (!types->eof() && !types->isNull("doNotOpenCashDrawer") && !types->flag("doNotOpenCashDrawer"))
    openCashDrawer = true;
  types->clearFilter();
}

// ---------------------------------------------------------------- stored tickets

Variant Pickup::getTicketPrepayDiscount(const Variant& ticketNumber) const {
  const RecordsetRef row = queryDatabase(
      *apartment_,
      " select isnull(sum(ticketlineitem.prepaydiscount * ticketlineitem.quantity), 0) from ticketlineitem  "
      "inner join ticket on ticketlineitem.ticketnumber = ticket.ticketnumber  where ticket.prepayenabled = 1 "
      "and ticketlineitem.ticketnumber = '" +
          escapeSqlValue(ticketNumber) + "'");
  return row->eof() ? Variant(0) : row->value(Column(0));
}

}  // namespace ondrel
