#pragma once

#include <string>

#include "data/odbc/odbc_target.h"

namespace ondrel {

// The drivers and data sources that are set up here.
const OdbcMachine& thisMachine();

// What on this machine makes FreeTDS write traffic to a file, in words: an environment variable or a line of
// a freetds.conf. Empty when nothing does.
std::string trafficLog();

}  // namespace ondrel
