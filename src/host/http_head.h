#pragma once

#include <optional>
#include <string_view>

#include "host/http_request.h"

namespace ondrel {

// Where the head of a request ends: the offset behind its empty line, nothing while that is missing. A line that does
// not end as lines of a head do (CR LF) ends it as well, for `readHead` to refuse. The first `searched` bytes were
// looked at before.
std::optional<size_t> headEnd(std::string_view bytes, size_t searched = 0);

// Reads the head of a request word for word, as narrowly as a reader can, so that nobody in front of this host, proxy
// or browser, can take the bytes for other requests than this host does. `refusal` tells what is not served whatever
// it asks for:
//
// | what                                                              | status | since                               |
// |-------------------------------------------------------------------|--------|-------------------------------------|
// | anything but "METHOD SP /TARGET SP HTTP/1.0 or 1.1", lines of     | 400    | what one reader skips another takes |
// | "NAME:VALUE", each ended by CR LF; a blank before a colon, a      |        | for the end of a request            |
// | folded line, a control character, NUL                             |        |                                     |
// | a length that is told twice or is no row of digits; two hosts     | 400    | a proxy may believe the other one   |
// | a length for anything but a POST                                  | 400    | it would be the next request        |
// | another method                                                    | 405    |                                     |
// | a coded transfer, a POST without a length                         | 411    | its limit is known when it is there |
// | a length beyond the limit                                         | 413    |                                     |
// | a path that is too long                                           | 414    |                                     |
// | a body in another coding                                          | 415    | it may be a thousand times as long  |
// | parts of an answer                                                | 416    | many parts are more than the whole  |
// | an expectation other than "100-continue"                          | 417    |                                     |
HttpRequest readHead(std::string_view head, const HttpLimits& limits);

}  // namespace ondrel
