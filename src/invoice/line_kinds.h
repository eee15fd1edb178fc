#pragma once

#include <array>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "invoice/line_columns.h"

namespace ondrel {

// Values of a line's `itemType`. Children point to their garment; all others stand at top level.
namespace kind {

inline constexpr std::string_view garment = "IT";     // garment or sold item
inline constexpr std::string_view upcharge = "UP";    // child
inline constexpr std::string_view color = "CO";       // child
inline constexpr std::string_view pattern = "PA";     // child
inline constexpr std::string_view brand = "BR";       // child
inline constexpr std::string_view charge = "AC";      // additional charge
inline constexpr std::string_view department = "DE";  // piece count of a quick drop-off
inline constexpr std::string_view coupon = "CU";
inline constexpr std::string_view loyalty = "LY";
inline constexpr std::string_view promotion = "PR";
inline constexpr std::string_view vip = "VI";
inline constexpr std::string_view referral = "RE";
inline constexpr std::string_view tax = "TA";
inline constexpr std::string_view surcharge = "SU";

}  // namespace kind

// Where the lines of a kind come from: the counter, an offer that the clerk chose, a pass of finishing.
enum class Origin { entered, chosen, derived };

// Signs of a line's amount in the totals, see pricing/totals.cpp.
struct Signs {
  int subtotal, shown, beforeTax, toPay, discount;
};

// The sum of the ticket's header that the amounts go to when it is saved.
enum class HeaderSum { none, goods, coupons, promotions, tax, surcharge };

// How a stored line comes back.
enum class Loaded {
  garment,       // its department joins those of the ticket, its sums of children start at 0
  ofDepartment,  // its department joins those of the ticket
  child,         // its amount goes to the garment's sum, where there is one for it
  merged,        // the shares of one offer, tax or surcharge become one line again
  leftOut,       // worked out anew
};

// What taking a finished invoice back does to a line.
enum class Undo { stays, taxableAgain, backToCoupon, removed };

// All that the rules ask about a kind of line.
struct LineKind {
  std::string_view code;
  Origin origin;
  bool isArticle;                // handed in, sold or done: it has pieces and a due date
  bool fillsTicket;              // an invoice without any such line is empty
  bool isDescriptor;             // describes a garment and is remembered with its heat seal
  bool isListed;                 // a line of its own in the panel of lines
  std::optional<col> parentSum;  // where the garment adds up its children of the kind
  Signs signs;
  HeaderSum header;
  Loaded forEdit, forPrint;
  Undo undo;

  constexpr bool isGoods() const { return signs.subtotal != 0; }
  constexpr bool isPricedChild() const { return parentSum.has_value(); }
  constexpr bool isOffer() const { return origin == Origin::chosen; }
};

// One row a kind. A filter of several kinds names them in this order.
// clang-format off
inline constexpr auto kLineKinds = [] {
  using enum Origin;
  using enum HeaderSum;
  using enum Loaded;
  using enum Undo;
  constexpr bool yes = true, no = false;
  //                            subtotal shown before tax to pay discount
  constexpr Signs asGoods    = {1,       1,    1,         1,     0};
  constexpr Signs asAddition = {0,       0,    0,         1,     0};
  constexpr Signs asCoupon   = {0,      -1,   -1,        -1,     0};
  constexpr Signs asLoyalty  = {0,      -1,    0,         0,     0};
  constexpr Signs asDiscount = {0,       0,   -1,        -1,     1};
  constexpr Signs asNothing  = {0,       0,    0,         0,     0};
  return std::array<LineKind, 15>{{
    // code           origin   article  fills  descr.  listed  garment's sum       signs       header      for edit      for print     undo
    {kind::garment,    entered, yes,     yes,   no,     yes,    {},                 asGoods,    goods,      garment,      garment,      taxableAgain},
    {kind::upcharge,   entered, no,      no,    yes,    no,     col::upchargeTotal, asGoods,    goods,      child,        child,        taxableAgain},
    {kind::color,      entered, no,      no,    yes,    no,     col::colorTotal,    asGoods,    goods,      child,        child,        taxableAgain},
    {kind::pattern,    entered, no,      no,    yes,    no,     col::patternTotal,  asGoods,    goods,      child,        child,        taxableAgain},
    {kind::brand,      entered, no,      no,    yes,    no,     {},                 asNothing,  none,       child,        child,        taxableAgain},
    {kind::charge,     entered, yes,     yes,   no,     yes,    {},                 asGoods,    goods,      ofDepartment, ofDepartment, stays},
    {kind::department, entered, no,      yes,   no,     yes,    {},                 asNothing,  none,       ofDepartment, child,        stays},
    {kind::coupon,     chosen,  no,      no,    no,     yes,    {},                 asCoupon,   coupons,    merged,       merged,       backToCoupon},
    {kind::loyalty,    chosen,  no,      no,    no,     no,     {},                 asLoyalty,  coupons,    merged,       merged,       stays},
    {kind::promotion,  derived, no,      no,    no,     yes,    {},                 asDiscount, promotions, child,        child,        removed},
    {kind::vip,        derived, no,      no,    no,     no,     {},                 asDiscount, promotions, leftOut,      child,        removed},
    {kind::referral,   derived, no,      no,    no,     no,     {},                 asDiscount, promotions, child,        child,        removed},
    {kind::tax,        derived, no,      no,    no,     no,     {},                 asAddition, tax,        child,        merged,       removed},
    {kind::surcharge,  derived, no,      no,    no,     no,     {},                 asAddition, surcharge,  child,        merged,       removed},
    {"",               entered, no,      no,    no,     no,     {},                 asNothing,  none,       child,        child,        stays},
  }};
}();
// clang-format on

// The row of a kind, in upper case; the last row for a plain descriptor, whose type the store's tables name.
constexpr const LineKind& lineKindOf(std::string_view code) {
  for (const LineKind& row : kLineKinds)
    if (row.code == code) return row;
  return kLineKinds.back();
}

namespace kind {

// Kinds that describe a garment; `type` in upper case.
constexpr bool isDescriptor(std::string_view type) {
  return lineKindOf(type).isDescriptor;
}

}  // namespace kind

// ---- filters of the lines

// Lines of a kind, and of any of some.
std::string ofKind(std::string_view code);
std::string ofKinds(std::initializer_list<std::string_view> codes);

// Lines of the kinds that pass the test: a member of LineKind, or a function of one. Made once where it is
// used: `const std::string kArticles = filterOf(&LineKind::isArticle);`
// Lines that pass `term`, a comparison, as well, where one is given.
template <class Test>
std::string filterOf(Test test, std::string_view term = {}) {
  std::string filter;
  for (const LineKind& row : kLineKinds) {
    if (row.code.empty() || !std::invoke(test, row)) continue;
    if (!filter.empty()) filter += " OR ";
    filter += term.empty() ? ofKind(row.code) : "(" + std::string(term) + " AND " + ofKind(row.code) + ")";
  }
  return filter;
}

}  // namespace ondrel
