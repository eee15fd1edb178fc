#include "automation/classes/class_tables.h"
#include "invoice/ticket_tag.h"

namespace ondrel {

const ClassTable& ticketTagClass() {
  // clang-format off
  static const ClassTable table("TicketTag", {
      property("TagNumber", &TicketTag::TagNumber),
      property("TagColor", &TicketTag::TagColor),
      property("LotNumber", &TicketTag::LotNumber),
  });
  // clang-format on
  return table;
}

}  // namespace ondrel
