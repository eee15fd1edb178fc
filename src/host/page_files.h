#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace ondrel {

// A file of the pages folder at one moment. `version` differs once the file has changed.
struct PageFile {
  std::string name;  // below the folder: "ticket.js", "assets/counter.css"
  std::filesystem::path path;
  std::string version;
};

// The folder that holds the pages of the application.
//
// | a browser asks for | it gets                                                  |
// |--------------------|----------------------------------------------------------|
// | /                  | what the page index.js answers                           |
// | /pickup/tender     | what the page pickup/tender.js answers                   |
// | /assets/NAME       | the file, for the kinds of file that assetType knows     |
//
// Names are letters, digits, dashes and underscores; an asset's may hold dots, but not begin with one. What
// stands in shared/ is for the pages and answers nobody. A link that leads out of the folder is not
// followed.
class PageFiles {
 public:
  // Error 76 when there is no such folder.
  explicit PageFiles(const std::filesystem::path& folder);

  // The page of a path that a browser names, decoded. Nothing when there is none.
  std::optional<PageFile> page(std::string_view path) const;
  std::optional<PageFile> asset(std::string_view path) const;
  // A script of the folder by its name, for a page that includes it.
  std::optional<PageFile> script(std::string_view name) const;

  // What a file holds. Error 53 when it cannot be read.
  static std::string textOf(const PageFile& file);

 private:
  std::optional<PageFile> find(const std::string& name) const;

  std::filesystem::path folder_;
};

// Content type of an asset by its ending; empty for one that is not served.
std::string_view assetType(std::string_view name);

// The page that asks for a clerk and a PIN; the host has one of its own where the folder has none.
inline constexpr std::string_view kSignInPage = "sign_in.js";

// The folder's page around what is refused or fails, with {{message}} for why. Without it the browser shows the bare
// words.
inline constexpr std::string_view kRefusedPage = "/assets/refused.html";

}  // namespace ondrel
