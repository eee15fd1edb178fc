#pragma once

#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <exception>
#include <functional>
#include <iostream>
#include <stdexcept>

namespace ondrel {

// Runs `work` in a process of its own, so that no handle of a database is ever inherited. Its status is 0, or 3
// after an exception.
inline pid_t inChild(const std::function<void()>& work) {
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("fork failed");
  if (child > 0) return child;
  try {
    work();
  } catch (const std::exception& error) {
    std::cerr << "child: " << error.what() << "\n";
    _exit(3);
  }
  _exit(0);
}

// The status of a child that has ended, as waitpid gives it.
inline int statusOf(pid_t child) {
  int status = 0;
  waitpid(child, &status, 0);
  return status;
}

}  // namespace ondrel
