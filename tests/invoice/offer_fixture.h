#pragma once

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "base/text.h"
#include "data/values.h"
#include "invoice/invoice.h"
#include "support/fake_database.h"

namespace ondrel {

// An offer as the store answers it, a row of the discount or of one of its departments.
struct OfferRow {
  int id = 0;
  Variant percent = Variant::null(), amount = Variant::null();
  Variant department = Variant::null(), item = Variant::null();
  Variant leastPieces = Variant::null(), leastAmount = Variant::null();
  Variant most = Variant::null();
  bool perUnit = false;
  bool besideOthers = true;
};

struct Garment {
  int department = 1;
  double price = 0;
  int pieces = 1;
  int item = 0;
  bool couponable = true, discountable = true;
};

// Offers against a store of prepared answers: price list 3, customer 16, ticket 700 on 2026-11-24 10:30.
// Departments are 1, 2 and 3. No VIP, no taxes.
class OfferTest : public ::testing::Test {
 protected:
  OfferTest() {
    database.attachTo(*apartment);
    apartment->clock = std::make_shared<FixedClock>(Date::of(2026, 11, 24, 10, 30));
    apartment->store.storeDepartments =
        tableOf({"departmentID", "name"}, {{1, "Cleaning"}, {2, "Shirts"}, {3, "Laundry"}});
    database.answer("from customer", tableOf({"vipEligible", "vipExpiryDate", "defaultPriceListId"},
                                             {{false, Date::of(2026, 12, 31), 3}}));
    invoice = std::make_unique<Invoice>();
    invoice->priceListId = 3;
    invoice->custSeqNumber = 16;
    invoice->storeNumber = 1;
    invoice->ticketNo = 700;
    database.take();
  }

  // The line's number; `price` is that of the whole line.
  int add(const Garment& garment) {
    using enum LineColumn;
    invoice->lineItems->addNew({{lineNumber, invoice->currentLineNumber},
                                {parentLineNumber, -1},
                                {deptId, garment.department},
                                {deptName, departmentName(garment.department)},
                                {itemType, "IT"},
                                {lineItemId, garment.item},
                                {quantity, garment.pieces},
                                {lineItemTotal, garment.price},
                                {taxableAmt, garment.price},
                                {couponable, garment.couponable},
                                {discountable, garment.discountable},
                                {pkgQuantity, 1}});
    invoice->lineItems->clearFilter();
    return invoice->currentLineNumber++;
  }
  int addUpcharge(int garment, double price) {
    using enum LineColumn;
    invoice->lineItems->setFilter(fmt::format("lineNumber={}", garment));
    const Variant department = invoice->lineItems->value(deptId);
    invoice->lineItems->setValue(upchargeTotal, price);
    invoice->lineItems->addNew({{lineNumber, invoice->currentLineNumber},
                                {parentLineNumber, garment},
                                {deptId, department},
                                {itemType, "UP"},
                                {lineItemTotal, price},
                                {taxableAmt, price}});
    invoice->lineItems->clearFilter();
    return invoice->currentLineNumber++;
  }
  void answerCoupons(const std::vector<OfferRow>& rows) {
    database.answer("GetProbableCoupons", offerTable(rows));
    database.answer("D.discountType = 'CU'", offerTable(rows));
  }
  void answerLoyalty(const std::vector<OfferRow>& rows) {
    database.answer("GetProbableLoyaltyDiscounts", offerTable(rows, false));
    database.answer("D.discountType = 'LY'", offerTable(rows, false));
  }
  void answerPromotions(const std::vector<OfferRow>& rows) {
    database.answer("GetProbablePromotions", offerTable(rows));
  }
  void finish() {
    Variant taxes = tableOf({"taxCode", "description", "taxPercent"}, {});
    invoice->invoiceDone(false, taxes);
  }

  // The lines of a kind in order, as "7 Cleaning: 1.75": discount, department, amount to four places.
  std::vector<std::string> lines(std::string_view itemType) const {
    std::vector<std::string> result;
    const RecordsetRef each = invoice->lineItems->clone();
    each->setFilter(fmt::format("itemType='{}'", itemType));
    for (; !each->eof(); each->moveNext())
      result.push_back(fmt::format("{} {}: {}", each->value(LineColumn::lineItemId).joined(),
                                   each->text(LineColumn::deptName),
                                   numberText(round2(each->number(LineColumn::lineItemTotal), 4))));
    return result;
  }
  // Taxable amounts of garments and their children in order.
  std::vector<double> taxable() const {
    std::vector<double> result;
    const RecordsetRef each = invoice->lineItems->clone();
    each->setFilter("itemType='IT' or itemType='UP'");
    for (; !each->eof(); each->moveNext()) result.push_back(each->number(LineColumn::taxableAmt));
    return result;
  }
  std::vector<std::string> log() const {
    std::vector<std::string> result;
    const RecordsetRef each = invoice->ticketLogItems->clone();
    for (; !each->eof(); each->moveNext())
      result.push_back(fmt::format("{} {} {}: {} {}", each->text(LogColumn::itemLogType),
                                   each->integer(LogColumn::quantity), each->text(LogColumn::deptName),
                                   each->text(LogColumn::itemName), each->value(LogColumn::amount).toText()));
    return result;
  }
  bool filterIsClear() const { return isEqual(invoice->lineItems->filter(), 0); }
  // What was sent since the last call, without the steps of connections.
  std::vector<std::string> statements() {
    std::vector<std::string> sent;
    for (std::string& text : database.take())
      if (!text.starts_with('<')) sent.push_back(std::move(text));
    return sent;
  }

  static std::string departmentName(int department) {
    return department == 1 ? "Cleaning" : department == 2 ? "Shirts" : "Laundry";
  }
  static RecordsetRef offerTable(const std::vector<OfferRow>& offers, bool withPerUnit = true) {
    std::vector<std::string> names = {
        "discountID",        "discountSubType",         "discountName",
        "minPieceCount",     "maxPieceCount",           "minQualAmount",
        "maxQualAmount",     "discountPercent",         "discountAmount",
        "maxDiscountAmount", "validWithOtherOffer",     "departmentID",
        "departmentName",    "departmentMinPieceCount", "departmentMinQualAmount",
        "priceListItemID"};
    if (withPerUnit) names.push_back("appliesPerUnit");
    std::vector<std::vector<Variant>> rows;
    for (const OfferRow& offer : offers) {
      const Variant none = Variant::null();
      rows.push_back({offer.id, "ANY", fmt::format("Offer {}", offer.id), none, none, none, none,
                      offer.percent, offer.amount, offer.most, offer.besideOthers, offer.department,
                      offer.department.isNull() ? none : Variant(departmentName(offer.department.toLong())),
                      offer.leastPieces, offer.leastAmount, offer.item, offer.perUnit});
      rows.back().resize(names.size());
    }
    return tableOf(names, rows);
  }

  FakeDatabase database;
  ApartmentRef apartment = std::make_shared<Apartment>();
  ApartmentScope scope{apartment};
  std::unique_ptr<Invoice> invoice;
};

}  // namespace ondrel
