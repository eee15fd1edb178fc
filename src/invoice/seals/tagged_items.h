#pragma once

#include <string_view>

#include "invoice/invoice.h"

namespace ondrel {

// What a save keeps of garments and tags; the ticket has its number.

// Remembers each garment of the invoice that wears a seal, and links it to the ticket.
void saveTaggedItems(Invoice& invoice);
// Writes the paper tags that the page brought, in place of those there are for "edit".
void saveTicketTags(const Invoice& invoice, std::string_view userAction);

}  // namespace ondrel
