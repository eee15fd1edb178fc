#pragma once

#include <span>

#include "automation/dispatch/class_table.h"

namespace ondrel {

// One function a class, in the file of its name.
const ClassTable& recordsetClass();
const ClassTable& recordsetFieldsClass();
const ClassTable& recordsetFieldClass();
const ClassTable& dictionaryClass();
const ClassTable& arrayClass();
const ClassTable& invoiceClass();
const ClassTable& quickInvoiceClass();
const ClassTable& garmentSearchClass();
const ClassTable& ticketTagClass();
const ClassTable& creditCardProcessingClass();
const ClassTable& creditCardFieldsClass();
const ClassTable& pickupClass();
const ClassTable& pickupInvoiceClass();
const ClassTable& claimReceiptFieldsClass();
const ClassTable& marketingLettersClass();
const ClassTable& dbToolClass();
const ClassTable& dbOptionClass();
const ClassTable& helperFunctionsClass();
const ClassTable& databaseClass();

// All of them.
std::span<const ClassTable* const> classTables();

}  // namespace ondrel
