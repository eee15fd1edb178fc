#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "data/dialect/procedures/procedure.h"
#include "data/dialect/schema.h"

namespace ondrel::sql {

// What statements of one database may name: its tables and procedures, for all of its sessions. Safe to share
// between threads; a schema that was handed out stays as it is.
class Catalogue {
 public:
  // Whether the declared tables have been read.
  bool isKnown() const;
  std::shared_ptr<const Schema> schema() const;
  void setSchema(std::shared_ptr<const Schema> schema);
  // The next session reads the declarations again.
  void forgetSchema();
  // Enters a declaration; sessions drop what they have prepared before.
  void addTable(TableDefinition table);
  void removeTable(std::string_view name);

  // The procedure of that name: one put in its place here, else the store's. Nothing when there is none.
  std::shared_ptr<const Procedure> procedure(std::string_view name) const;
  void replaceProcedure(Procedure procedure);
  void restoreProcedures();

 private:
  mutable std::mutex mutex_;
  std::shared_ptr<const Schema> schema_ = std::make_shared<Schema>();
  bool isKnown_ = false;
  std::map<std::string, std::shared_ptr<const Procedure>> replaced_;
};

}  // namespace ondrel::sql
