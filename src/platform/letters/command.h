#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ondrel {

// The words of a command line: parted by blanks, a word with blanks in quotes of either kind.
std::vector<std::string> commandWords(std::string_view line);

// Runs a program, found along PATH, without a shell and without input, and waits for its end. Gives its exit
// status; 127 when it could not be started, 128 and more when a signal ended it.
int runCommand(const std::vector<std::string>& words);

}  // namespace ondrel
