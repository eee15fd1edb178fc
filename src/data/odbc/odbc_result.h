#pragma once

#include <memory>
#include <string>
#include <vector>

#include "data/odbc/odbc_handle.h"
#include "data/recordset/recordset.h"

namespace ondrel {

// Fetches the open result of a statement. Kept between statements for its buffers.
//
// | column of the server                     | of the table                                  |
// |------------------------------------------|-----------------------------------------------|
// | int, smallint, tinyint                   | Long                                          |
// | bigint                                   | Long when all of its values fit, else Double  |
// | bit                                      | Boolean                                       |
// | real, float, decimal, money              | Double                                        |
// | datetime, date                           | Date, to the second                           |
// | char, varchar, text, uniqueidentifier, . | Text, as UTF-8, whole however long            |
class OdbcResult {
 public:
  // Columns of the result; 0 when the statement gave none. Negative when the driver fails.
  static int columnCount(const OdbcHandle& statement);
  // Nothing when the driver fails in the middle, which the statement's diagnosis then tells.
  RecordsetRef fetch(const OdbcHandle& statement, int columns);

 private:
  struct ResultColumn {
    std::string name;
    FieldType type = FieldType::Text;
    SQLSMALLINT form = SQL_C_CHAR;  // in which it is fetched
    int size = 0;
  };

  bool describe(const OdbcHandle& statement, int columns);
  bool read(const OdbcHandle& statement, int column);
  bool readText(const OdbcHandle& statement, int column);
  void settle();
  RecordsetRef table() const;

  std::vector<ResultColumn> columns_;
  std::vector<Variant> cells_;
  std::string text_;
};

}  // namespace ondrel
