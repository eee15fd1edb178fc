#include "host/outlets.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <netdb.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <memory>

#include "base/error.h"

extern char** environ;

namespace ondrel {
namespace {

using OutletClock = std::chrono::steady_clock;

[[noreturn]] void failDelivery(const std::string& words) {
  throw Error(ErrorNumber::FileNotFound, "Host", words);
}

class OutletDescriptor {
 public:
  explicit OutletDescriptor(int number = -1) : number_(number) {}
  ~OutletDescriptor() { close(); }
  OutletDescriptor(const OutletDescriptor&) = delete;
  OutletDescriptor& operator=(const OutletDescriptor&) = delete;

  int get() const { return number_; }
  void close() {
    if (number_ >= 0) ::close(number_);
    number_ = -1;
  }

 private:
  int number_;
};

int millisecondsUntil(OutletClock::time_point end) {
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - OutletClock::now()).count();
  return left > 0 ? static_cast<int>(left) : 0;
}

bool isReady(int number, short events, OutletClock::time_point end) {
  pollfd waited{number, events, 0};
  int found = 0;
  while ((found = ::poll(&waited, 1, millisecondsUntil(end))) < 0 && errno == EINTR) {
  }
  return found > 0;
}

void writeAll(int number, std::string_view bytes, OutletClock::time_point end, const std::string& name) {
  while (!bytes.empty()) {
    if (!isReady(number, POLLOUT, end)) failDelivery(name + " takes nothing: is it on, and has it paper?");
    const ssize_t count = ::write(number, bytes.data(), bytes.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (count < 0) failDelivery(fmt::format("{} broke off: {}", name, std::strerror(errno)));
    bytes.remove_prefix(static_cast<size_t>(count));
  }
}

void toFile(const std::string& path, std::string_view bytes, bool isDevice, OutletClock::time_point end) {
  const int how = O_WRONLY | O_CLOEXEC | (isDevice ? O_NONBLOCK : O_APPEND | O_CREAT);
  const OutletDescriptor file(::open(path.c_str(), how, S_IRUSR | S_IWUSR));
  if (file.get() < 0) failDelivery(fmt::format("{} cannot be opened: {}", path, std::strerror(errno)));
  writeAll(file.get(), bytes, end, path);
  if (!isDevice && ::fsync(file.get()) != 0) failDelivery(fmt::format("{} is not safe on the disk", path));
}

void toListener(const std::string& place, std::string_view bytes, OutletClock::time_point end) {
  const size_t colon = place.rfind(':');
  if (colon == std::string::npos) failDelivery("An outlet tcp: is HOST:PORT");
  addrinfo wanted{};
  wanted.ai_socktype = SOCK_STREAM;
  addrinfo* all = nullptr;
  if (::getaddrinfo(place.substr(0, colon).c_str(), place.substr(colon + 1).c_str(), &wanted, &all) != 0)
    failDelivery(place + " is not known");
  const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> found(all, ::freeaddrinfo);
  const OutletDescriptor socket(::socket(all->ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  if (socket.get() < 0) failDelivery(place + " cannot be reached");
  int problem = 0;
  socklen_t size = sizeof problem;
  if (::connect(socket.get(), all->ai_addr, all->ai_addrlen) != 0 &&
      (errno != EINPROGRESS || !isReady(socket.get(), POLLOUT, end) ||
       ::getsockopt(socket.get(), SOL_SOCKET, SO_ERROR, &problem, &size) != 0 || problem != 0))
    failDelivery(place + " does not answer");
  writeAll(socket.get(), bytes, end, place);
  ::shutdown(socket.get(), SHUT_WR);
}

// The program's status; it is ended when its time is over.
int statusOf(pid_t child, OutletClock::time_point end, const std::string& path) {
  const OutletDescriptor ended(static_cast<int>(::syscall(SYS_pidfd_open, child, 0)));
  const bool isEnded = ended.get() >= 0 && isReady(ended.get(), POLLIN, end);
  if (!isEnded) ::kill(child, SIGKILL);
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  if (!isEnded) failDelivery(path + " did not end in time");
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void toCommand(const std::string& path, std::string_view bytes, OutletClock::time_point end) {
  int ends[2];
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
    failDelivery("No more files can be opened");
  OutletDescriptor ours(ends[0]);
  OutletDescriptor theirs(ends[1]);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, theirs.get(), STDIN_FILENO);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  // The host's threads hold signals back that the program needs.
  sigset_t none;
  sigemptyset(&none);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
  char* arguments[] = {const_cast<char*>(path.c_str()), nullptr};
  pid_t child = 0;
  const int code = ::posix_spawn(&child, path.c_str(), &actions, &attributes, arguments, environ);
  posix_spawn_file_actions_destroy(&actions);
  posix_spawnattr_destroy(&attributes);
  if (code != 0) failDelivery(fmt::format("{} cannot be started: {}", path, std::strerror(code)));
  theirs.close();
  while (!bytes.empty() && isReady(ours.get(), POLLOUT, end)) {
    const ssize_t count = ::send(ours.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count < 0 && errno != EINTR && errno != EAGAIN)
      break;  // a program need not read all; its status counts
    if (count > 0) bytes.remove_prefix(static_cast<size_t>(count));
  }
  ours.close();
  const int status = statusOf(child, end, path);
  if (status != 0) failDelivery(fmt::format("{} refused it with status {}", path, status));
}

}  // namespace

void deliver(const std::string& outlet, std::string_view bytes, std::chrono::milliseconds within) {
  const size_t colon = outlet.find(':');
  const std::string kind = outlet.substr(0, colon);
  const std::string rest = colon == std::string::npos ? "" : outlet.substr(colon + 1);
  const OutletClock::time_point end = OutletClock::now() + within;
  if (kind == "file" || kind == "device")
    toFile(rest, bytes, kind == "device", end);
  else if (kind == "tcp")
    toListener(rest, bytes, end);
  else if (kind == "command")
    toCommand(rest, bytes, end);
  else
    failDelivery("An outlet is file:, device:, tcp: or command:, not " + kind);
}

}  // namespace ondrel
