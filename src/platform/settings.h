#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ondrel {

// Named texts of this machine under keys of steps, "Software\Ondrel Corporation\OVS\DB\default". They stand
// in files of JSON: a key's step is an object, a value is a text. Names of keys and values match without
// regard to case.
//
// | file, in this order              | when                                            |
// |----------------------------------|-------------------------------------------------|
// | ONDREL_SETTINGS                  | the environment has it; it is then the only one |
// | XDG_CONFIG_HOME/FILE             | "~/.config" where the environment has none      |
// | each of XDG_CONFIG_DIRS/FILE     | "/etc/xdg" where the environment has none       |
//
// FILE is "ondrel/settings.json". The first file that has a value counts; changes go to the first file alone.
// Every operation reads the files as they are at that moment. A file that is no such JSON is error 321, one that
// cannot be read or written error 75.
class Settings {
 public:
  using Values = std::vector<std::pair<std::string, std::string>>;

  // The files of this machine.
  Settings();
  explicit Settings(std::vector<std::string> files) : files_(std::move(files)) {}

  // Nothing where there is no such value.
  std::optional<std::string> find(std::string_view key, std::string_view name) const;
  // The empty text where there is no such value.
  std::string value(std::string_view key, std::string_view name) const;
  const std::vector<std::string>& files() const { return files_; }

  // Sets the values of a key, which is made if need be and keeps its other values. The file is replaced whole,
  // unless nothing changes: a reader sees it before or after all of `changes`. Of two programs that change it at
  // the same moment, the later one wins.
  struct Change {
    std::string key;
    Values values;  // none removes the key with all that is below it, and keys above it that are then empty
  };
  void apply(const std::vector<Change>& changes) const;

 private:
  std::vector<std::string> files_;
};

}  // namespace ondrel
