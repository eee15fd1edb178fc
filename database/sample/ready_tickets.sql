-- Three tickets of customer 15 that hang ready, of laundry only, which has no tax: 1013 20.00, 1014 40.00,
-- 1015 28.00. Coupon 1 (from 25.00) fits the last two, coupon 3 (20 %) all three. Nothing is paid.

insert into Ticket (ticketNumber, storeId, invoiceNumber, invoiceType, ticketStatus, priceListId, customerSequenceNumber, createdDate, createdByEmployeeId, lastModifiedDate, lastModifiedByEmployeeId, employeeName, storeName, terminalId, dueDate, pickupTime, amountPaid, invoiceTotal, netTotal, vipQualifyingAmount) values
  (1013, 1, '5013', 'D', 'AC', 1, 15, '2026-11-19 09:10:00', 1, '2026-11-19 09:10:00', 1, 'Dora Quill', 'Fernhill Cleaners', 1, '2026-11-21', '2:00 PM', 0.00, 20.00, 20.00, 20.00),
  (1014, 1, '5014', 'D', 'AC', 1, 15, '2026-11-19 09:12:00', 1, '2026-11-19 09:12:00', 1, 'Dora Quill', 'Fernhill Cleaners', 1, '2026-11-21', '2:00 PM', 0.00, 40.00, 40.00, 40.00),
  (1015, 1, '5015', 'D', 'AC', 1, 15, '2026-11-20 16:45:00', 3, '2026-11-20 16:45:00', 3, 'Tom Ashgrove', 'Fernhill Cleaners', 1, '2026-11-23', '5:00 PM', 0.00, 28.00, 28.00, 28.00);

insert into TicketLineItem (ticketNumber, lineItemNumber, createdByEmployeeID, lastModifiedByEmployeeID, parentLineNumber, displaySequence, departmentID, departmentName, ticketLineType, lineItemID, saleOnly, lineItemName, originalUnitPrice, unitPrice, quantity, lineItemTotal, totalTaxPercent, totalSurchargePercent, lineItemTaxableAmount, totalUpchargeAmount, packagedQuantity, daysToProcess, dueDate, prepaydiscount, itemNotes) values
  (1013, 1, 1, 1, -1, 1, 3, 'Laundry', 'IT', 301, 0, 'Wash and Fold Bag', 20.00, 20.00, 1, 20.00, 0.00, 0.00, 20.00, 0.00, 1, 2, '2026-11-21', 1.00, null),
  (1014, 1, 1, 1, -1, 1, 3, 'Laundry', 'IT', 301, 0, 'Wash and Fold Bag', 20.00, 20.00, 2, 40.00, 0.00, 0.00, 40.00, 0.00, 1, 2, '2026-11-21', 1.00, 'fold in thirds'),
  (1015, 1, 3, 3, -1, 1, 3, 'Laundry', 'IT', 301, 0, 'Wash and Fold Bag', 20.00, 20.00, 1, 20.00, 0.00, 0.00, 20.00, 0.00, 1, 2, '2026-11-23', 1.00, null),
  (1015, 2, 3, 3, -1, 2, 3, 'Laundry', 'IT', 302, 0, 'Bed Sheet',          4.00,  4.00, 2,  8.00, 0.00, 0.00,  8.00, 0.00, 1, 2, '2026-11-23', 0.00, null);

insert into TicketCustomer (ticketNumber, customerID, multiplePickup, firstName, lastName, billingAddress1, billingCity, billingState, billingZipCode, MainAreaCode, MainPhone, email) values
  (1013, 'C0015', 1, 'Zoë', 'O''Hanlon', '55 Oak Street', 'Marbury', 'VT', '05001', '802', '5550115', 'zoe@example.com'),
  (1014, 'C0015', 1, 'Zoë', 'O''Hanlon', '55 Oak Street', 'Marbury', 'VT', '05001', '802', '5550115', 'zoe@example.com'),
  (1015, 'C0015', 1, 'Zoë', 'O''Hanlon', '55 Oak Street', 'Marbury', 'VT', '05001', '802', '5550115', 'zoe@example.com');

insert into rackassignment (ticketnumber, racklocation) values
  (1013, 'C1'),
  (1014, 'C2'),
  (1015, 'C2');
