#pragma once

// A morning's worth of browsers may knock at once. The one place that includes the library, for it counts everywhere.
#define CPPHTTPLIB_LISTEN_BACKLOG 256
#include <httplib.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace ondrel {

// The open connections of a server. One whose request is being answered works; the others wait for a request, for
// the rest of one, or for the end of an answer. Safe to share between threads.
class ConnectionTable {
 public:
  void enter(int socket, std::string address);
  // Before the socket is closed.
  void leave(int socket);
  void setWorking(int socket, bool isWorking);
  // Ends one that waits: of the address with the most of them the one that waits longest, so that an address that
  // opens many takes the place of its own. False when all work.
  bool endWaiting();
  size_t size() const;

 private:
  struct Connection {
    std::string address;
    std::chrono::steady_clock::time_point since;
    bool isWorking = false;
    bool isEnding = false;
  };

  mutable std::mutex mutex_;
  std::map<int, Connection> connections_;
};

// A thread for each connection, made when it is needed and kept for the next. Where there are as many as may be, one
// that waits makes room.
class ConnectionThreads : public httplib::TaskQueue {
 public:
  ConnectionThreads(size_t most, ConnectionTable& connections) : most_(most), connections_(connections) {}

  // True within a task that is run because nothing makes room: the connection is one too many.
  static bool isTooMany();

  void enqueue(std::function<void()> task) override;
  void shutdown() override;

 private:
  void serve();

  size_t most_;
  ConnectionTable& connections_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::function<void()>> tasks_;
  std::vector<std::thread> threads_;
  size_t idle_ = 0;
  bool isStopping_ = false;
};

}  // namespace ondrel
