#include <gtest/gtest.h>

#include <chrono>
#include <limits>
#include <random>

#include "automation/class_factory.h"
#include "automation/classes/class_tables.h"
#include "automation/dispatch/call.h"
#include "base/dictionary.h"
#include "data/query_database.h"
#include "invoice/invoice.h"
#include "support/store_fixture.h"
#include "support/temporary_folder.h"

namespace ondrel {
namespace {

// Calls any member of any object with anything, as a page gone wild would. What may come out is a value or the
// library's error; a crash, another exception, a call that takes seconds, or a store that is not the same for the
// next page is a fault. ONDREL_RANDOM_CALLS and ONDREL_RANDOM_SEED make it longer and other, ONDREL_RANDOM_TELL=1
// shows the last call before a crash.
class RandomCaller : public StoreTest {
 protected:
  RandomCaller() : random_(number("ONDREL_RANDOM_SEED", 20261124)) {
    apartment->files = Files(folder_.path);
    apartment->trace.stop();
  }

  static unsigned number(const char* name, unsigned fallback) {
    const char* text = std::getenv(name);
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : fallback;
  }

  size_t below(size_t end) { return random_() % end; }

  void renewObjects() {
    objects_ = {createObject("Scripting.Dictionary"), createObject("ADODB.Recordset")};
    for (const PublicClass& each : publicClasses()) objects_.push_back(each.create());
    // Most of the members are the invoice's, and do more on one that has lines.
    auto invoice = std::make_shared<Invoice>();
    invoice->LoadDefaults();
    for (const int item : {201, 101, 102, 301}) {
      Variant arguments[] = {item, 1, 2};
      callMember(invoice, "addItem", arguments);
    }
    objects_.push_back(invoice);
  }

  Variant value() {
    using Limits = std::numeric_limits<double>;
    static const Variant hostile[] = {Variant(),
                                      Variant::null(),
                                      true,
                                      -1,
                                      0,
                                      std::numeric_limits<std::int32_t>::min(),
                                      std::numeric_limits<std::int32_t>::max(),
                                      0.1 + 0.2,
                                      1e300,
                                      Limits::infinity(),
                                      Limits::quiet_NaN(),
                                      "",
                                      "'",
                                      "null",
                                      "1,2;3",
                                      "</script>",
                                      "\xF0\x9F\x98\x80",
                                      "\xE9\x01",
                                      std::string(300, 'x'),
                                      "itemType='IT'",
                                      "'); drop table Ticket --",
                                      Date::of(2026, 12, 1),
                                      Date(1e300)};
    static const Variant usual[] = {1,    2,    3,   4,    5,    101,       201,
                                    1001, 5011, 8.5, "IT", "UP", "AA00031", "11/30/2026"};
    const size_t kind = below(10);
    if (kind < 4) return hostile[below(std::size(hostile))];
    return kind < 9 ? usual[below(std::size(usual))] : Variant(objects_[below(objects_.size())]);
  }

  // Gives the name of what was called.
  std::string callAnything() {
    const ObjectRef object = objects_[below(objects_.size())];
    const ClassTable& table = classTableOf(*object);
    const Member& member = table.members()[below(table.members().size())];
    std::vector<Variant> arguments(below(20) == 0 ? below(6) : member.parameters.size());
    for (Variant& each : arguments) each = value();
    if (isTold_) std::fprintf(stderr, "%s.%s\n", table.className().data(), member.name.data());
    try {
      if (member.put && below(2) == 0 && member.name != "DBConnectionString" &&
          member.name != "XChargeTimeout") {
        putMember(table, object, member, value(), arguments);
      } else {
        const Variant result = callMember(table, object, member, arguments);
        if (result.isObject() && result.toObject() && objects_.size() < kMostObjects)
          objects_.push_back(result.toObject());
      }
    } catch (const Error&) {
      ++errors_;
    }
    return std::string(table.className()) + "." + std::string(member.name);
  }

  static constexpr size_t kMostObjects = 40;

  TemporaryFolder folder_;
  std::mt19937 random_;
  std::vector<ObjectRef> objects_;
  unsigned errors_ = 0;
  bool isTold_ = number("ONDREL_RANDOM_TELL", 0) > 0;  // each call before it is made
};

TEST_F(RandomCaller, FindsErrorsAndNothingElse) {
  const unsigned calls = number("ONDREL_RANDOM_CALLS", 100'000);
  for (unsigned call = 0; call < calls; ++call) {
    if (call % 500 == 0) renewObjects();
    const auto start = std::chrono::steady_clock::now();
    const std::string name = callAnything();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5)) << name << ", call " << call;
  }
  EXPECT_TRUE(errors_ > calls / 10 && errors_ < calls) << errors_;
  closeTransaction(*apartment);
  EXPECT_GT(scalar("select count(*) from Ticket").toLong(), 0) << "no text became a statement";
}

}  // namespace
}  // namespace ondrel
