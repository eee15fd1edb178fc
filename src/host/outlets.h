#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace ondrel {

// Where something leaves the shop's computer: a printer, a label printer, messages to customers. An outlet is
//
// | text              | the bytes go                                                   |
// |-------------------|----------------------------------------------------------------|
// | file:PATH         | behind what the file holds                                     |
// | device:PATH       | to a device that is there already                              |
// | tcp:HOST:PORT     | to a listener, on a connection of their own                    |
// | command:PATH      | to the input of a program, which says by status 0 that it took them |
//
// Returns when the bytes are taken. Raises ErrorNumber::FileNotFound, with words for the clerk, when they are not, or
// not within the time.
void deliver(const std::string& outlet, std::string_view bytes,
             std::chrono::milliseconds within = std::chrono::seconds(10));

}  // namespace ondrel
