#include "platform/letters/command.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace ondrel {
namespace {

constexpr int kNotStarted = 127, kSignalled = 128;
constexpr std::string_view kWordBlanks = " \t";

}  // namespace

std::vector<std::string> commandWords(std::string_view line) {
  std::vector<std::string> words;
  for (size_t k = 0; (k = line.find_first_not_of(kWordBlanks, k)) != std::string_view::npos;) {
    const bool isQuoted = line[k] == '"' || line[k] == '\'';
    const size_t from = isQuoted ? k + 1 : k;
    const size_t end =
        std::min(isQuoted ? line.find(line[k], from) : line.find_first_of(kWordBlanks, from), line.size());
    words.emplace_back(line.substr(from, end - from));
    k = std::min(end + (isQuoted ? 1 : 0), line.size());
  }
  return words;
}

int runCommand(const std::vector<std::string>& words) {
  std::vector<std::string> kept = words;
  std::vector<char*> arguments;
  arguments.reserve(kept.size() + 1);
  for (std::string& word : kept) arguments.push_back(word.data());
  arguments.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  const int failure = ::posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
  ::posix_spawn_file_actions_destroy(&actions);
  if (failure != 0) return kNotStarted;

  int status = 0;
  while (::waitpid(child, &status, 0) < 0)
    if (errno != EINTR) return kNotStarted;
  return WIFEXITED(status) ? WEXITSTATUS(status) : kSignalled + WTERMSIG(status);
}

}  // namespace ondrel
