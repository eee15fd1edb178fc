#pragma once

#include <string>
#include <string_view>

namespace ondrel {

// `text`, a statement or what a store says about one, fit for a log: the one place that knows what card data
// looks like.
//
// | in the text                                              | becomes                                |
// |----------------------------------------------------------|----------------------------------------|
// | a value bound to a column of card data (card_columns.h)  | masked, whatever its check digit       |
// | 13 to 19 digits that pass the check, whatever the brand, | the masked number                      |
// | their groups parted by up to three marks                 |                                        |
// | a number that checkCardNumber takes with other digits    | the masked number                      |
// | close behind it                                          |                                        |
// | a literal '...' that checkCardNumber takes, as it drops  | the masked number                      |
// | whatever is no digit                                     |                                        |
// | a number of a track, with "^" or "=" behind it           | the masked number and "[track]", up to |
// |                                                          | the end sentinel, a quote or line end  |
//
// Full-width digits count as digits. GUIDs stay, and so do moments (a day with or without a time of this century or the
// last) and amounts: digits on both sides of a single point.
std::string maskCardData(std::string_view text);

}  // namespace ondrel
