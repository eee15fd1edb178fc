#pragma once

#include <string>
#include <string_view>

namespace ondrel {

// The check of card numbers: every second digit from the right doubled, 9 taken off a doubled value of 10 or
// more, the sum a multiple of 10. The text holds digits only.
bool passesLuhn(std::string_view digits);

// "************" and the last four characters of the trimmed number.
std::string maskedCardNumber(std::string_view number);

// `text` fit for a log: the one place that knows what card data looks like.
//
// | in the text                                       | becomes                                |
// |---------------------------------------------------|----------------------------------------|
// | 13 to 19 digits that pass the check, also in      | the masked number                      |
// | groups parted by a blank or a dash                |                                        |
// | such a number with "^" or "=" behind it, a track  | the masked number and "[track]", up to |
// |                                                   | the end sentinel, a quote or line end  |
std::string maskCardData(std::string_view text);

}  // namespace ondrel
