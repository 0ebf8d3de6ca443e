#pragma once

#include "service/journal/Heard.h"
#include "service/store/Exchanges.h"

namespace service::journal {

// What a request and its reply are, as far as they may be kept: passwords, tokens and credentials are masked here, so
// that none of them reaches the data file by this road. A text beyond kLongestText is cut. Where it cannot be read, it
// is told that there was something.
store::Exchange exchangeOf(const Heard& heard);

}  // namespace service::journal
