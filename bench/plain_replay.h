#pragma once

#include <sqlite3.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/text.h"
#include "data/dialect/schema_statement.h"
#include "data/dialect/store_texts.h"
#include "data/embedded/sqlite_schema.h"

namespace ondrel {

// The statements of a trace on SQLite alone: the same tables and rows, every statement prepared beforehand, its
// literals bound as numbers and texts. What a program would cost that did nothing but that.
class PlainReplay {
 public:
  PlainReplay() {
    sqlite3* handle = nullptr;
    if (sqlite3_open(":memory:", &handle) != SQLITE_OK) throw std::runtime_error("no memory database");
    database_.reset(handle);
    run("pragma journal_mode = memory");
    for (const std::string_view statement : sql::splitScript(sql::schemaText())) run(tableText(statement));
    for (const std::string_view sample : sql::sampleTexts()) run(sample);
  }
  ~PlainReplay() {
    for (const auto& [shape, statement] : prepared_) sqlite3_finalize(statement);
  }
  PlainReplay(const PlainReplay&) = delete;
  PlainReplay& operator=(const PlainReplay&) = delete;

  // Adds a statement to the list; the literal `ticket` in it stands for the ticket of the replay.
  void add(std::string_view statement, int ticket) {
    if (statement == "<close>") return;
    if (statement == "<begin>") statement = "begin";
    if (statement == "<commit>") statement = "commit";
    Step step;
    const std::string shape = lift(translated(statement), ticket, step.values);
    sqlite3_stmt*& prepared = prepared_[shape];
    if (!prepared && sqlite3_prepare_v2(database_.get(), shape.c_str(), -1, &prepared, nullptr) != SQLITE_OK)
      throw std::runtime_error(shape + ": " + sqlite3_errmsg(database_.get()));
    step.statement = prepared;
    steps_.push_back(std::move(step));
  }

  void clear() { steps_.clear(); }

  // Runs the list once and reads every value of every row. Gives the number of values.
  std::size_t replay(int ticket) {
    std::size_t values = 0;
    for (const Step& step : steps_) {
      bind(step, ticket);
      int result = SQLITE_ROW;
      while ((result = sqlite3_step(step.statement)) == SQLITE_ROW)
        for (int column = 0; column < sqlite3_column_count(step.statement); ++column) {
          read_ = reinterpret_cast<const char*>(sqlite3_column_text(step.statement, column));
          ++values;
        }
      if (result != SQLITE_DONE) throw std::runtime_error(sqlite3_errmsg(database_.get()));
      sqlite3_reset(step.statement);
    }
    return values;
  }

 private:
  struct Ticket {};
  using Value = std::variant<std::int64_t, double, std::string, Ticket>;
  struct Step {
    sqlite3_stmt* statement = nullptr;
    std::vector<Value> values;
  };

  // Tables as they stand; only a computed column has to be put in the engine's words.
  static std::string tableText(std::string_view statement) {
    if (statement.find(" as convert(") == std::string_view::npos) return std::string(statement);
    return replaceAll(sql::sqliteStatement(sql::readSchemaStatement(statement)), " collate store", "");
  }

  void run(std::string_view script) {
    char* message = nullptr;
    if (sqlite3_exec(database_.get(), std::string(script).c_str(), nullptr, nullptr, &message) != SQLITE_OK)
      throw std::runtime_error(message ? message : "a script failed");
  }

  // The few words of the tickets' statements that SQLite spells otherwise.
  static std::string translated(std::string_view statement) {
    std::string text = replaceAll(statement, "dbo.getCustomerVisits(customersequencenumber, null, null)",
                                  "(select count(*) from Ticket t where t.customerSequenceNumber = "
                                  "Customer.customersequencenumber)");
    for (const char* name : {"IsNull(", "isnull(", "isNull("}) text = replaceAll(text, name, "ifnull(");
    text = replaceAll(text, " delete customerpreference", " delete from customerpreference");
    return text;
  }

  // The statement with its literals as parameters; the literals go to `values`.
  static std::string lift(std::string_view text, int ticket, std::vector<Value>& values) {
    const std::string ticketText = std::to_string(ticket);
    std::string shape;
    for (std::size_t at = 0; at < text.size();) {
      const char c = text[at];
      const bool inWord = at > 0 && (isLetter(text[at - 1]) || isDigit(text[at - 1]));
      if (c == '\'') {
        std::size_t end = text.find('\'', at + 1);
        while (text.substr(end, 2) == "''") end = text.find('\'', end + 2);
        std::string value = replaceAll(text.substr(at + 1, end - at - 1), "''", "'");
        if (value == ticketText)
          values.emplace_back(Ticket{});
        else
          values.emplace_back(std::move(value));
        shape += '?';
        at = end + 1;
      } else if (isDigit(c) && !inWord) {
        std::size_t end = at;
        while (end < text.size() && (isDigit(text[end]) || text[end] == '.')) ++end;
        const std::string number(text.substr(at, end - at));
        if (number == ticketText)
          values.emplace_back(Ticket{});
        else if (number.find('.') == std::string::npos)
          values.emplace_back(std::int64_t{std::atoll(number.c_str())});
        else
          values.emplace_back(std::atof(number.c_str()));
        shape += '?';
        at = end;
      } else {
        shape += c;
        ++at;
      }
    }
    return shape;
  }

  static void bind(const Step& step, int ticket) {
    int index = 0;
    for (const Value& value : step.values) {
      ++index;
      if (const auto* whole = std::get_if<std::int64_t>(&value))
        sqlite3_bind_int64(step.statement, index, *whole);
      else if (const auto* number = std::get_if<double>(&value))
        sqlite3_bind_double(step.statement, index, *number);
      else if (const auto* text = std::get_if<std::string>(&value))
        sqlite3_bind_text(step.statement, index, text->data(), static_cast<int>(text->size()), SQLITE_STATIC);
      else
        sqlite3_bind_int64(step.statement, index, ticket);
    }
  }

  std::unique_ptr<sqlite3, decltype(&sqlite3_close)> database_{nullptr, sqlite3_close};
  std::map<std::string, sqlite3_stmt*> prepared_;
  std::vector<Step> steps_;
  const char* read_ = nullptr;
};

}  // namespace ondrel
