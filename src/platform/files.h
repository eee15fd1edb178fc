#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace ondrel {

// Files under the paths that shops write: a drive letter and backslashes, "C:\xc\in\". This is the one
// place that knows where such a path lies on the host:
//
// | path          | on the host                |
// |---------------|----------------------------|
// | C:\xc\in\a    | DRIVES/c/xc/in/a           |
// | \xc\in\a      | /xc/in/a                   |
// | xc\in\a       | xc/in/a, the working folder |
//
// DRIVES is the folder that holds one folder a drive. ".." does not lead out of a drive. Case does not count
// on a drive: a step that has no folder or file of its very name goes to one that differs in case.
class Files {
 public:
  // DRIVES as the environment's ONDREL_DRIVES says, or ".ondrel/drives" in the user's home.
  Files();
  explicit Files(std::string drives) : drives_(std::move(drives)) {}

  std::string hostPath(std::string_view path) const;

  bool exists(std::string_view path) const;
  // The folder with those above it, unless it is there. Error 75 when that fails.
  void makeFolder(std::string_view path) const;
  // Nobody can write to the file from now on. Error 75 when that fails.
  void makeReadOnly(std::string_view path) const;
  // False when there was no such file; error 70 when it cannot be deleted.
  bool remove(std::string_view path) const;
  // Writes a new file, or one anew, and sees it onto the disk. Error 75 when that fails.
  void write(std::string_view path, std::string_view text) const;
  // In one step: `to` is seen whole or not at all. Error 53 when there is no file `from`, 75 on others.
  void rename(std::string_view from, std::string_view to) const;
  // The first `limit` bytes; nothing when the file is not there or cannot be read.
  std::optional<std::string> read(std::string_view path, size_t limit) const;

 private:
  std::string drives_;
};

}  // namespace ondrel
