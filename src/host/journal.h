#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "base/date.h"
#include "host/page_engine.h"
#include "host/page_request.h"
#include "host/request_numbers.h"

namespace ondrel {

// A changing call of the work in progress.
struct JournalledCall {
  Date moment;
  PageRequest request;
  std::vector<std::string> records;  // what its recorded pieces of work gave
  int status = 0;
};

// What a journal gives back.
struct JournalContents {
  Clerk clerk;
  std::string kept = "{}";  // as it was when the work in progress began
  std::vector<JournalledCall> calls;
  std::vector<RememberedAnswer> answers;
  bool isDoubtful = false;  // a numbered call of this work may have been committed and was not answered
};

// The journal of one session: a file of its own, readable by its owner only, whose name tells nothing of the
// session's id. It holds what brings the work in progress back after a restart.
//
// | record                    | written                             | on a restart                           |
// |---------------------------|-------------------------------------|----------------------------------------|
// | clerk, kept               | when they change                    | set again                              |
// | call: page, query, form,  | before a changing call runs         | run again, with the clock at its       |
// | body, number, moment      |                                     | moment, if it was answered             |
// | record                    | when a recorded piece has its       | given in place of the piece            |
// |                           | result                              |                                        |
// | committing                | before the first commit of a call   | unanswered: its number says so         |
// | done, with the answer of  | before the answer leaves            |                                        |
// | a numbered call           |                                     | the number gives the answer            |
//
// | certain                   | when a page has asked about it      | no call is in doubt any more           |
// | ended, with kept          | when a page says that the work is   | no call before it runs again           |
// |                           | done                                |                                        |
//
// Headers, cookies and tokens are not written. A call with a field for card data leaves no more than its number; what
// looks like a card number elsewhere is masked.
class Journal {
 public:
  // Begins or goes on with the journal at `path`; without a path nothing is written.
  explicit Journal(std::filesystem::path path);
  ~Journal();
  Journal(const Journal&) = delete;
  Journal& operator=(const Journal&) = delete;

  // Nothing when there is no such file. What stands behind the last whole line is left out.
  static std::optional<JournalContents> read(const std::filesystem::path& path);

  void clerk(const Clerk& clerk);
  void call(const PageRequest& request, Date moment);
  void record(const std::string& result);
  // `toDisk` where the mark must outlive a failure of power.
  void committing(bool toDisk);
  void done(const PageRequest& request, const PageAnswer& answer);
  // False for a call with card data in it.
  static bool takes(const PageRequest& request);
  void certain();
  // The work is done and this stays. A journal that has grown begins anew with it.
  void ended(const JournalContents& contents);

  void rename(std::filesystem::path path);
  void remove();
  // Nothing is written any more: another owns the file. The only operation for other threads.
  void giveUp() noexcept { isGivenUp_ = true; }
  // True once a record could not be written, or was too much; the work is no longer safe then, and the file is gone:
  // what it lacks would bring back what has been saved since.
  bool hasFailed() const noexcept { return hasFailed_; }

 private:
  void write(const std::vector<std::string>& fields, bool toDisk = false);
  void restart(const JournalContents& contents);
  void open(int flags);
  void close();
  void dropTornLine();

  std::filesystem::path path_;
  int file_ = -1;
  size_t bytes_ = 0;
  bool isMarked_ = false;  // the call at hand has its mark of a commit
  std::atomic<bool> isGivenUp_ = false;
  bool hasFailed_ = false;
};

}  // namespace ondrel
