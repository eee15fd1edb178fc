#include <gmock/gmock.h>

#include <utility>

#include "data/query_database.h"
#include "invoice/ticket_store.h"
#include "support/error_of.h"
#include "support/failing_connection.h"

namespace ondrel {
namespace {

// A statement that fails at every place of a save, one place a run, each on a store of its own.
class TicketFaults : public TicketTest {
 protected:
  // A ticket with a seal that is known, one that is new, a descriptor, a tax, preferences and a sold item.
  static std::shared_ptr<Invoice> sealedInvoice() {
    const auto invoice = invoiceOf(10);
    const Variant jacket = invoice->addItem2(102, 1), suit = invoice->addItem2(103, 1);
    Variant known = "B500001", fresh = "AA00100";
    invoice->addHeatSeal(jacket, known);
    invoice->addHeatSeal(suit, fresh);
    invoice->addColor(suit, "Navy", 1, true, 1, 0.01);
    invoice->addItem2(150, 2);
    return invoice;
  }

  // A copy of the store with an apartment whose statements can fail; `store` outlives both.
  struct Run {
    explicit Run(const EmbeddedStore& from, std::shared_ptr<Clock> time)
        : apartment(apartmentOn(from, std::move(time))), scope(apartment) {}

    ApartmentRef apartment;
    ApartmentScope scope;
    StatementFaults faults;
  };

  // Saves with the n-th statement failing; 0 fails nowhere.
  static bool fails(Run& run, Invoice& invoice, const char* action, int n) {
    run.apartment->trace.take();
    run.faults.failStatement(n);
    return errorOf([&] { save(invoice, action); }) != 0;
  }
  // The first try left SQL text in the two preferences, which would be quoted once more.
  static void saveAgain(Invoice& invoice, const char* action) {
    invoice.starchPref = invoice.finishPref = "";
    save(invoice, action);
  }
  // Numbers of the statements that make a ticket permanent.
  static std::vector<int> commitsOf(Run& run) {
    std::vector<int> commits;
    int number = 0;
    bool isTicket = false;
    for (const std::string& entry : run.apartment->trace.take()) {
      if (entry == "<begin>" || entry == "<close>") continue;
      ++number;
      if (entry.starts_with("InsertTicket ") || entry.starts_with("UpdateTicket ")) isTicket = true;
      if (entry == "<commit>" && std::exchange(isTicket, false)) commits.push_back(number);
    }
    return commits;
  }

  std::string look(const EmbeddedStore& at, const std::string& sql) {
    std::string all;
    const RecordsetRef table = at.connect(clock)->query(sql);
    for (; !table->eof(); table->moveNext())
      for (int column = 0; column < table->fieldCount(); ++column)
        all += table->value(Column(column)).joined() + "|";
    return all;
  }
  // The ticket with its lines and its customer.
  std::string ticketAt(const EmbeddedStore& at, int ticket) {
    const std::string which = " where ticketNumber = " + std::to_string(ticket);
    return look(at, "select * from Ticket" + which) + look(at, "select * from TicketCustomer" + which) +
           look(at, "select * from TicketLineItem" + which);
  }
  std::string booksAt(const EmbeddedStore& at) {
    return look(at, "select * from NumberCounter") + look(at, "select * from inventory") +
           look(at, "select * from taggedpiece") + look(at, "select * from ticketlineitemtaggeditem") +
           look(at, "select * from customerpreference");
  }
};

// | fails at           | the ticket        | saved again                     |
// |--------------------|-------------------|---------------------------------|
// | up to the commit   | is not there      | as a new ticket, it is there    |
// | after it           | is there whole    | as an edit, it is the same      |
TEST_F(TicketFaults, ANewTicketIsThereWholeOrNotAtAll) {
  const std::string before = booksAt(store);
  std::string whole;
  int commit = 0, total = 1;
  for (int n = 0; n <= total; ++n) {
    SCOPED_TRACE(n);
    const EmbeddedStore at = store.clone();
    Run run(at, clock);
    const auto invoice = sealedInvoice();
    run.faults.attachTo(*run.apartment);
    EXPECT_EQ(fails(run, *invoice, "add", n), n > 0);
    // Only the terms of the price list and the visit count stand outside the care of the insert.
    const bool outside = n == 1 || (n > 0 && n >= total - 1);
    EXPECT_EQ(run.apartment->sharedConnection != nullptr, outside);
    if (n == 0) {
      total = run.faults.seen();
      commit = commitsOf(run).at(0);
      whole = ticketAt(at, 1100);
      continue;
    }
    if (n <= commit) {
      EXPECT_EQ(ticketAt(at, 1100), "");
      EXPECT_EQ(booksAt(at), before);
      saveAgain(*invoice, "add");
    } else {
      EXPECT_EQ(ticketAt(at, 1100), whole);
      closeTransaction(*run.apartment);
      saveAgain(*invoice, "edit");
    }
    EXPECT_EQ(look(at, "select count(*) from Ticket where ticketNumber = 1100"), "1|");
    EXPECT_EQ(look(at, "select count(*) from TicketLineItem where ticketNumber = 1100"),
              std::to_string(invoice->lineItems->recordCount()) + "|");
    EXPECT_EQ(
        look(
            at,
            "select heatSealID from taggedpiece where heatSealID in ('B500001', 'AA00100') order by heatSealID"),
        "AA00100|B500001|");
    EXPECT_EQ(look(at, "select count(*) from customerpreference where ticketnumber = 1100"), "5|");
  }
  EXPECT_GT(commit, 8);
  EXPECT_GT(total, commit + 20);
}

// An edit of ticket 1011, whose jacket goes and whose lines are those of the other ticket.
TEST_F(TicketFaults, AFailedEditStaysOpenUntilItIsDropped) {
  const std::string before = ticketAt(store, 1011), books = booksAt(store);
  std::string after;
  int commit = 0, total = 1;
  for (int n = 0; n <= total; ++n) {
    SCOPED_TRACE(n);
    const EmbeddedStore at = store.clone();
    {
      Run run(at, clock);
      const auto invoice = sealedInvoice();
      invoice->ticketNo = 1011;
      run.faults.attachTo(*run.apartment);
      EXPECT_EQ(fails(run, *invoice, "edit", n), n > 0);
      if (n == 0) {
        total = run.faults.seen();
        commit = commitsOf(run).at(0);
        after = ticketAt(at, 1011);
        continue;
      }
      EXPECT_EQ(ticketAt(at, 1011), n <= commit ? before : after) << "as others see it";
      EXPECT_TRUE(n > commit || run.apartment->sharedConnection);
      if (n % 2 == 0) {
        closeTransaction(*run.apartment);
        EXPECT_EQ(booksAt(at) == books, n <= commit);
        saveAgain(*invoice, "edit");
        EXPECT_EQ(ticketAt(at, 1011), after);
      }
    }
    const bool changed = n > commit || n % 2 == 0;
    EXPECT_EQ(ticketAt(at, 1011), changed ? after : before) << "the apartment is gone";
  }
  EXPECT_GT(commit, 8);
  EXPECT_GT(total, commit + 20);
}

// A split order of two departments, whose parent keeps nothing.
TEST_F(TicketFaults, OfASplitOrderTheTicketsAlreadyWrittenStay) {
  std::vector<std::string> whole;
  std::vector<int> commits;
  for (int n = 0, total = 1; n <= total; ++n) {
    SCOPED_TRACE(n);
    const EmbeddedStore at = store.clone();
    Run run(at, clock);
    const auto invoice = invoiceOf(10);
    invoice->addItem2(103, 1);
    const Variant shirt = invoice->addItem2(201, 3);
    Variant seal = "AA00100";
    invoice->addHeatSeal(shirt, seal);
    invoice->splitInvoice("add");
    ASSERT_EQ(invoice->invoicesDictionary->count(), 2);
    run.faults.attachTo(*run.apartment);
    EXPECT_EQ(fails(run, *invoice, "add", n), n > 0);
    if (n == 0) {
      total = run.faults.seen();
      commits = commitsOf(run);
      ASSERT_EQ(commits.size(), 2u);
      whole = {ticketAt(at, 1100), ticketAt(at, 1101)};
    }
    for (size_t k = 0; k < 2; ++k)
      EXPECT_EQ(ticketAt(at, 1100 + static_cast<int>(k)), n == 0 || n > commits[k] ? whole[k] : "") << k;
  }
}

TEST_F(TicketFaults, WhatFollowsAFailedEditJoinsIt) {
  const std::string before = ticketAt(store, 1011);
  const std::string employer = "select employer from Customer where customerSequenceNumber = 1";
  const auto failInTheLines = [&](Run& run) {
    const auto invoice = sealedInvoice();
    invoice->ticketNo = 1011;
    run.faults.attachTo(*run.apartment);
    EXPECT_TRUE(fails(run, *invoice, "edit", 6));
    executeInTransaction(*run.apartment,
                         "update Customer set employer = 'Mill' where customerSequenceNumber = 1");
    EXPECT_TRUE(run.apartment->sharedConnection) << "joined, so not committed by itself";
  };
  const EmbeddedStore read = store.clone(), committed = store.clone();
  Run one(read, clock);
  failInTheLines(one);
  EXPECT_EQ(look(read, employer), "|");
  queryDatabase(*one.apartment, "select 1 as one");  // takes the place of the transaction
  commitTransaction(*one.apartment);
  EXPECT_EQ(look(read, employer), "|");
  EXPECT_EQ(ticketAt(read, 1011), before);

  Run two(committed, clock);
  failInTheLines(two);
  commitTransaction(*two.apartment);
  EXPECT_EQ(look(committed, employer), "Mill|");
  EXPECT_EQ(look(committed, "select count(*) from TicketLineItem where ticketNumber = 1011"), "1|")
      << "as far as the edit came";
}

}  // namespace
}  // namespace ondrel
