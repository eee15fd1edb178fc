#include "support/failing_connection.h"

namespace ondrel {

class FaultyConnection : public Connection {
 public:
  FaultyConnection(StatementFaults& faults, std::unique_ptr<Connection> real)
      : faults_(faults), real_(std::move(real)) {}

  void setCommandTimeout(int seconds) override { real_->setCommandTimeout(seconds); }
  void open() override { real_->open(); }
  void begin() override { real_->begin(); }
  void commit() override {
    faults_.pass();
    real_->commit();
  }
  void execute(std::string_view sql) override {
    faults_.pass();
    real_->execute(sql);
  }
  RecordsetRef query(std::string_view sql) override {
    faults_.pass();
    return real_->query(sql);
  }
  void close() override { real_->close(); }

 private:
  StatementFaults& faults_;
  std::unique_ptr<Connection> real_;
};

void StatementFaults::attachTo(Apartment& apartment) {
  apartment.connect = [this, connect = apartment.connect](const ConnectionSettings& settings) {
    return std::make_unique<FaultyConnection>(*this, connect(settings));
  };
}

void StatementFaults::pass() {
  if (++seen_ == failAt_)
    throw Error(ErrorNumber::ConnectionFailed, "StatementFaults", "the server does not answer");
}

}  // namespace ondrel
