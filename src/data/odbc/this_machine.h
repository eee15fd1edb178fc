#pragma once

#include <string>

#include "data/odbc/odbc_target.h"

namespace ondrel {

// The drivers and data sources that are set up here.
const OdbcMachine& thisMachine();

// What on this machine makes the driver manager or FreeTDS write traffic to a file, in words: an
// environment variable, the driver manager's trace, a line of a freetds.conf. Empty when nothing does.
std::string trafficLog();

}  // namespace ondrel
