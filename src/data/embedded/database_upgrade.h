#pragma once

#include <string>
#include <vector>

namespace ondrel {

// What a database of an earlier version lacks, a sentence each; nothing when it is up to date. The database is
// the file of that path.
std::vector<std::string> missingFromDatabase(const std::string& path);

// Brings a database file of any earlier version to this one: missing tables, columns and indices are added, and
// indices with other columns made anew; all of it or nothing. No row is changed. `copy` is the file that holds the
// database as it was, or empty when there was nothing to do; its name is the path with ".before-VERSION" or that
// with a number. A database of a newer program is refused with ErrorNumber::ConnectionFailed.
struct DatabaseUpgrade {
  int from = 0;  // 0 for a database that has no version yet
  int to = 0;
  std::vector<std::string> added;  // a sentence each
  std::string copy;
};
DatabaseUpgrade upgradeDatabase(const std::string& path);

// Copies a database file while others work with it: the copy holds what was committed when it began. Error 58 when
// `target` is there already, ErrorNumber::ConnectionFailed when it cannot be written.
void backUpDatabase(const std::string& path, const std::string& target);

}  // namespace ondrel
