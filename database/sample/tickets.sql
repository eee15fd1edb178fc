-- Stored tickets, as the counter would have saved them; numbers go on at 1100 and invoice 5100.
--
--   1001 to 1006, 1012  collected; they make the VIP sums: customer 2 80.00 and 45.50 in the window and 200.00
--                       before it, customer 3 exactly 100.00, customer 4 150.00 and 23.89, customer 14 260.00
--   1007  active, written today 09:30: pants with an upcharge and a color, a suit; surcharge and taxes, 41.91
--   1008  active, written today 08:00 (too old for a prepay discount): four shirts, 11.00
--   1009  active, dropped off uncounted: cleaning 5, shirts 8
--   1010  ready on the rack: laundry and a hem, coupon 1 shared out over both, 45.00, 20.00 paid by check
--   1011  active, a jacket with a heat seal

insert into Ticket (ticketNumber, storeId, invoiceNumber, invoiceType, ticketStatus, priceListId, customerSequenceNumber, starchPreferenceName, finishPreferenceName, createdDate, createdByEmployeeId, lastModifiedDate, lastModifiedByEmployeeId, employeeName, storeName, terminalId, dueDate, pickupTime, amountPaid, invoiceTotal, netTotal, taxTotal, surchargeTotal, vipQualifyingAmount, couponTotal, dateout) values
  (1001, 1, '5001', 'D', 'FI', 1,  2, null, null,    '2026-08-11 14:05:00', 2, '2026-08-11 14:05:00', 2, 'Ines Marlow',  'Fernhill Cleaners', 1, '2026-08-13', '5:00 PM',  80.00,  80.00,  80.00, 0.00, 0.00,  80.00, 0.00, '2026-08-14 09:10:00'),
  (1002, 1, '5002', 'D', 'FI', 1,  2, null, null,    '2026-10-06 09:40:00', 1, '2026-10-06 09:40:00', 1, 'Dora Quill',   'Fernhill Cleaners', 1, '2026-10-08', '5:00 PM',  45.50,  45.50,  45.50, 0.00, 0.00,  45.50, 0.00, '2026-10-08 17:20:00'),
  (1003, 1, '5003', 'D', 'FI', 1,  2, null, null,    '2025-12-15 11:00:00', 1, '2025-12-15 11:00:00', 1, 'Dora Quill',   'Fernhill Cleaners', 1, '2025-12-17', '5:00 PM', 200.00, 200.00, 200.00, 0.00, 0.00, 200.00, 0.00, '2025-12-19 12:00:00'),
  (1004, 1, '5004', 'D', 'FI', 1,  3, null, null,    '2026-10-13 10:15:00', 3, '2026-10-13 10:15:00', 3, 'Tom Ashgrove', 'Fernhill Cleaners', 1, '2026-10-15', '5:00 PM', 100.00, 100.00, 100.00, 0.00, 0.00, 100.00, 0.00, '2026-10-16 08:45:00'),
  (1005, 1, '5005', 'D', 'FI', 1,  4, null, null,    '2026-09-22 15:30:00', 3, '2026-09-22 15:30:00', 3, 'Tom Ashgrove', 'Fernhill Cleaners', 1, '2026-09-24', '5:00 PM', 150.00, 150.00, 150.00, 0.00, 0.00, 150.00, 0.00, '2026-09-25 10:00:00'),
  (1006, 1, '5006', 'D', 'FI', 2, 14, null, null,    '2026-03-10 08:20:00', 2, '2026-03-10 08:20:00', 2, 'Ines Marlow',  'Fernhill Cleaners', 1, '2026-03-12', '5:00 PM', 260.00, 260.00, 260.00, 0.00, 0.00, 260.00, 0.00, '2026-03-12 16:00:00'),
  (1007, 1, '5007', 'D', 'AC', 1,  1, null, 'Boxed', '2026-11-24 09:30:00', 1, '2026-11-24 09:30:00', 1, 'Dora Quill',   'Fernhill Cleaners', 1, '2026-11-30', '5:00 PM',   0.00,  41.87,  41.91, 3.27, 0.64,  41.87, 0.00, null),
  (1008, 1, '5008', 'D', 'AC', 1,  1, null, null,    '2026-11-24 08:00:00', 2, '2026-11-24 08:00:00', 2, 'Ines Marlow',  'Fernhill Cleaners', 1, '2026-11-28', '2:00 PM',   0.00,  11.00,  11.00, 0.60, 0.40,  11.00, 0.00, null),
  (1009, 1, '5009', 'Q', 'AC', 1,  7, null, null,    '2026-11-23 16:30:00', 2, '2026-11-23 16:30:00', 2, 'Ines Marlow',  'Fernhill Cleaners', 1, '2026-11-30', '5:00 PM',   0.00,   0.00,   0.00, 0.00, 0.00,   0.00, 0.00, null),
  (1010, 1, '5010', 'D', 'AC', 1, 16, null, null,    '2026-11-12 12:00:00', 1, '2026-11-12 12:00:00', 1, 'Dora Quill',   'Fernhill Cleaners', 1, '2026-11-18', '5:00 PM',  20.00,  50.00,  45.00, 0.00, 0.00,  45.00, 5.00, null),
  (1011, 1, '5011', 'D', 'AC', 1, 10, null, null,    '2026-11-23 11:20:00', 3, '2026-11-23 11:20:00', 3, 'Tom Ashgrove', 'Fernhill Cleaners', 1, '2026-11-28', '2:00 PM',   0.00,   9.95,   9.96, 0.78, 0.18,   9.95, 0.00, null),
  (1012, 1, '5012', 'D', 'FI', 1,  4, null, null,    '2026-10-10 10:00:00', 3, '2026-10-10 10:00:00', 3, 'Tom Ashgrove', 'Fernhill Cleaners', 1, '2026-10-14', '5:00 PM',  23.91,  23.89,  23.91, 1.55, 0.36,  23.89, 0.00, '2026-10-15 09:30:00');

insert into TicketLineItem (ticketNumber, lineItemNumber, createdByEmployeeID, lastModifiedByEmployeeID, parentLineNumber, displaySequence, departmentID, departmentName, ticketLineType, lineItemID, saleOnly, lineItemName, originalUnitPrice, unitPrice, quantity, lineItemTotal, totalTaxPercent, totalSurchargePercent, lineItemTaxableAmount, totalUpchargeAmount, packagedQuantity, daysToProcess, dueDate, prepaydiscount, heatseal) values
  (1001, 1, 2, 2, -1, 1,  3, 'Laundry',       'IT',  301, 0, 'Wash and Fold Bag', 20.00, 20.00,  4,  80.00, 0.00, 0.00,  80.00, 0.00, 1, 2, '2026-08-13', 1.00, null),
  (1002, 1, 1, 1, -1, 1,  3, 'Laundry',       'IT',  301, 0, 'Wash and Fold Bag', 20.00, 20.00,  2,  40.00, 0.00, 0.00,  40.00, 0.00, 1, 2, '2026-10-08', 1.00, null),
  (1002, 2, 1, 1, -1, 2,  3, 'Laundry',       'IT',  302, 0, 'Bed Sheet',          4.00,  4.00,  1,   4.00, 0.00, 0.00,   4.00, 0.00, 1, 2, '2026-10-08', 0.00, null),
  (1002, 3, 1, 1, -1, 3,  3, 'Laundry',       'IT',  304, 0, 'Pillowcase',         1.50,  1.50,  1,   1.50, 0.00, 0.00,   1.50, 0.00, 1, 2, '2026-10-08', 0.00, null),
  (1003, 1, 1, 1, -1, 1,  3, 'Laundry',       'IT',  301, 0, 'Wash and Fold Bag', 20.00, 20.00, 10, 200.00, 0.00, 0.00, 200.00, 0.00, 1, 2, '2025-12-17', 1.00, null),
  (1004, 1, 3, 3, -1, 1,  3, 'Laundry',       'IT',  301, 0, 'Wash and Fold Bag', 20.00, 20.00,  5, 100.00, 0.00, 0.00, 100.00, 0.00, 1, 2, '2026-10-15', 1.00, null),
  (1005, 1, 3, 3, -1, 1,  3, 'Laundry',       'IT',  301, 0, 'Wash and Fold Bag', 20.00, 20.00,  6, 120.00, 0.00, 0.00, 120.00, 0.00, 1, 2, '2026-09-24', 1.00, null),
  (1005, 2, 3, 3, -1, 2,  3, 'Laundry',       'IT',  303, 0, 'Sheet Set',         12.00, 12.00,  2,  24.00, 0.00, 0.00,  24.00, 0.00, 3, 2, '2026-09-24', 0.00, null),
  (1005, 3, 3, 3, -1, 3,  3, 'Laundry',       'IT',  304, 0, 'Pillowcase',         1.50,  1.50,  4,   6.00, 0.00, 0.00,   6.00, 0.00, 1, 2, '2026-09-24', 0.00, null),
  (1006, 1, 2, 2, -1, 1, 23, 'Linen Service', 'IT', 2301, 0, 'Tablecloth',         6.00,  6.00, 30, 180.00, 0.00, 0.00, 180.00, 0.00, 1, 2, '2026-03-12', 0.00, null),
  (1006, 2, 2, 2, -1, 2, 23, 'Linen Service', 'IT', 2303, 0, 'Chef Coat',          4.00,  4.00, 20,  80.00, 0.00, 0.00,  80.00, 0.00, 1, 2, '2026-03-12', 0.00, null),
  (1007, 1, 1, 1, -1, 1,  1, 'Dry Cleaning',  'IT',  101, 0, 'Pants',              8.00,  8.00,  2,  16.00, 1.36, 0.32,  16.00, 6.00, 1, 3, '2026-11-30', 0.50, null),
  (1007, 2, 1, 1,  1, 2,  1, 'Dry Cleaning',  'UP', null, 0, 'Stain Treatment',    3.00,  3.00,  2,   6.00, 0.51, 0.00,   6.00, null, 1, 0, null,         0.00, null),
  (1007, 3, 1, 1,  1, 3,  1, 'Dry Cleaning',  'CO', null, 0, 'Navy',               0.00,  0.00,  2,   0.00, 0.00, 0.00,   0.00, null, 1, 0, null,         0.00, null),
  (1007, 4, 1, 1, -1, 4,  1, 'Dry Cleaning',  'IT',  103, 0, 'Suit 2-Piece',      16.00, 16.00,  1,  16.00, 1.36, 0.32,  16.00, 0.00, 2, 3, '2026-11-30', 1.00, null),
  (1007, 5, 1, 1, -1, 5,  1, 'Dry Cleaning',  'SU',    1, 0, 'Environmental Fee',  0.00,  0.00,  1,   0.64, 0.00, 0.00,   0.64, null, 1, 0, null,         0.00, null),
  (1007, 6, 1, 1, -1, 6,  1, 'Dry Cleaning',  'TA',    1, 0, 'State Sales Tax',    0.00,  0.00,  1,   2.32, 0.00, 0.00,   0.00, null, 1, 0, null,         0.00, null),
  (1007, 7, 1, 1, -1, 7,  1, 'Dry Cleaning',  'TA',    2, 0, 'City Tax',           0.00,  0.00,  1,   0.95, 0.00, 0.00,   0.00, null, 1, 0, null,         0.00, null),
  (1008, 1, 2, 2, -1, 1,  2, 'Shirts',        'IT',  201, 0, 'Shirt on Hanger',    2.50,  2.50,  4,  10.00, 0.60, 0.40,  10.00, 0.00, 1, 2, '2026-11-28', 0.25, null),
  (1008, 2, 2, 2, -1, 2,  2, 'Shirts',        'SU',    2, 0, 'Hanger Fee',         0.00,  0.00,  1,   0.40, 0.00, 0.00,   0.40, null, 1, 0, null,         0.00, null),
  (1008, 3, 2, 2, -1, 3,  2, 'Shirts',        'TA',    1, 0, 'State Sales Tax',    0.00,  0.00,  1,   0.60, 0.00, 0.00,   0.00, null, 1, 0, null,         0.00, null),
  (1009, 1, 2, 2, -1, 1,  1, 'Dry Cleaning',  'DE', null, 0, 'Dry Cleaning',       0.00,  0.00,  5,   0.00, 0.00, 0.00,   0.00, null, 1, 3, '2026-11-30', 0.00, null),
  (1009, 2, 2, 2, -1, 2,  2, 'Shirts',        'DE', null, 0, 'Shirts',             0.00,  0.00,  8,   0.00, 0.00, 0.00,   0.00, null, 1, 2, '2026-11-28', 0.00, null),
  (1010, 1, 1, 1, -1, 1,  3, 'Laundry',       'IT',  301, 0, 'Wash and Fold Bag', 20.00, 20.00,  2,  40.00, 0.00, 0.00,  36.00, 0.00, 1, 2, '2026-11-14', 1.00, null),
  (1010, 2, 1, 1, -1, 2,  5, 'Alterations',   'IT',  501, 0, 'Hem Pants',         10.00, 10.00,  1,  10.00, 0.00, 0.00,   9.00, 0.00, 1, 5, '2026-11-18', 0.00, null),
  (1010, 3, 1, 1, -1, 3,  3, 'Laundry',       'CU',    1, 0, '5 Off 25',           0.00,  0.00,  1,   4.00, 0.00, 0.00,   0.00, null, 1, 0, null,         0.00, null),
  (1010, 4, 1, 1, -1, 4,  5, 'Alterations',   'CU',    1, 0, '5 Off 25',           0.00,  0.00,  1,   1.00, 0.00, 0.00,   0.00, null, 1, 0, null,         0.00, null),
  (1011, 1, 3, 3, -1, 1,  1, 'Dry Cleaning',  'IT',  102, 0, 'Jacket',             9.00,  9.00,  1,   9.00, 0.77, 0.18,   9.00, 0.00, 1, 3, '2026-11-28', 0.50, 'AA00001'),
  (1011, 2, 3, 3,  1, 2,  1, 'Dry Cleaning',  'CO', null, 0, 'Navy',               0.00,  0.00,  1,   0.00, 0.00, 0.00,   0.00, null, 1, 0, null,         0.00, null),
  (1011, 3, 3, 3,  1, 3,  1, 'Dry Cleaning',  'BR', null, 0, 'Ardenvale',          0.00,  0.00,  1,   0.00, 0.00, 0.00,   0.00, null, 1, 0, null,         0.00, null),
  (1011, 4, 3, 3, -1, 4,  1, 'Dry Cleaning',  'SU',    1, 0, 'Environmental Fee',  0.00,  0.00,  1,   0.18, 0.00, 0.00,   0.18, null, 1, 0, null,         0.00, null),
  (1011, 5, 3, 3, -1, 5,  1, 'Dry Cleaning',  'TA',    1, 0, 'State Sales Tax',    0.00,  0.00,  1,   0.55, 0.00, 0.00,   0.00, null, 1, 0, null,         0.00, null),
  (1011, 6, 3, 3, -1, 6,  1, 'Dry Cleaning',  'TA',    2, 0, 'City Tax',           0.00,  0.00,  1,   0.23, 0.00, 0.00,   0.00, null, 1, 0, null,         0.00, null),
  (1012, 1, 3, 3, -1, 1,  1, 'Dry Cleaning',  'IT',  110, 0, 'Overcoat',          18.00, 18.00,  1,  18.00, 1.53, 0.36,  18.00, 4.00, 1, 3, '2026-10-14', 1.00, 'AA00002'),
  (1012, 2, 3, 3,  1, 2,  1, 'Dry Cleaning',  'UP', null, 0, 'Lining',             4.00,  4.00,  1,   4.00, 0.00, 0.00,   4.00, null, 1, 0, null,         0.00, null),
  (1012, 3, 3, 3,  1, 3,  1, 'Dry Cleaning',  'CO', null, 0, 'Black',              0.00,  0.00,  1,   0.00, 0.00, 0.00,   0.00, null, 1, 0, null,         0.00, null),
  (1012, 4, 3, 3, -1, 4,  1, 'Dry Cleaning',  'SU',    1, 0, 'Environmental Fee',  0.00,  0.00,  1,   0.36, 0.00, 0.00,   0.36, null, 1, 0, null,         0.00, null),
  (1012, 5, 3, 3, -1, 5,  1, 'Dry Cleaning',  'TA',    1, 0, 'State Sales Tax',    0.00,  0.00,  1,   1.10, 0.00, 0.00,   0.00, null, 1, 0, null,         0.00, null),
  (1012, 6, 3, 3, -1, 6,  1, 'Dry Cleaning',  'TA',    2, 0, 'City Tax',           0.00,  0.00,  1,   0.45, 0.00, 0.00,   0.00, null, 1, 0, null,         0.00, null);

insert into TicketCustomer (ticketNumber, customerID, firstName, middleInitial, lastName, employer, billingAddress1, billingCity, billingState, billingZipCode, MainAreaCode, MainPhone, email) values
  (1001, 'C0002', 'Owen',  null, 'Tarrant',         null,              '16 Birch Lane',    'Marbury', 'VT', '05003', '802', '5550102', 'owen@example.com'),
  (1002, 'C0002', 'Owen',  null, 'Tarrant',         null,              '16 Birch Lane',    'Marbury', 'VT', '05003', '802', '5550102', 'owen@example.com'),
  (1003, 'C0002', 'Owen',  null, 'Tarrant',         null,              '16 Birch Lane',    'Marbury', 'VT', '05003', '802', '5550102', 'owen@example.com'),
  (1004, 'C0003', 'Helga', null, 'Stroud',          null,              '19 Quarry Road',   'Marbury', 'VT', '05001', '802', '5550103', 'helga@example.com'),
  (1005, 'C0004', 'Basil', 'R',  'Coyle',           null,              '22 Harbor Street', 'Marbury', 'VT', '05002', '802', '5550104', 'basil@example.com'),
  (1006, 'C0014', null,    null, 'Northgate Hotel', 'Northgate Hotel', '52 Harbor Street', 'Marbury', 'VT', '05003', '802', '5550114', 'accounts@example.com'),
  (1007, 'C0001', 'Marta', 'J',  'Fenwick',         null,              '13 Elm Street',    'Marbury', 'VT', '05002', '802', '5550101', 'marta@example.com'),
  (1008, 'C0001', 'Marta', 'J',  'Fenwick',         null,              '13 Elm Street',    'Marbury', 'VT', '05002', '802', '5550101', 'marta@example.com'),
  (1009, 'C0007', 'Nora',  'T',  'Whitlow',         null,              '31 Birch Lane',    'Marbury', 'VT', '05002', '802', '5550107', 'nora@example.com'),
  (1010, 'C0016', 'Dinah', 'K',  'Larch',           null,              '58 Elm Street',    'Marbury', 'VT', '05002', '802', '5550116', 'dinah@example.com'),
  (1011, 'C0010', 'Ivan',  null, 'Kettle',          null,              '40 Oak Street',    'Marbury', 'VT', '05002', '802', '5550110', 'ivan@example.com'),
  (1012, 'C0004', 'Basil', 'R',  'Coyle',           null,              '22 Harbor Street', 'Marbury', 'VT', '05002', '802', '5550104', 'basil@example.com');

insert into TicketTag (ticketNumber, tagNumber, tagNumberType, tagColor, lotNumber) values
  (1007, '201', 'T', 'Green', 'L1'),
  (1007, '202', 'T', 'Green', 'L1'),
  (1007, '203', 'T', 'Green', 'L1'),
  (1007, '204', 'T', 'Green', 'L1'),
  (1008, '205', 'T', 'Blue',  'L1');

insert into rackassignment (ticketnumber, racklocation) values
  (1010, 'A12'),
  (1010, 'B3');

insert into Payment (paymentDate, paymentAction, storeId, terminalId, employeeId, customerSequenceNumber, ticketNumber, paymentType, paymentAmount, checkOrCardNumber) values
  ('2026-08-14 09:10:00', 'Pickup',  1, 1, 2,  2, 1001, 'Cash',   80.00, null),
  ('2026-10-08 17:20:00', 'Pickup',  1, 1, 1,  2, 1002, 'Cash',   45.50, null),
  ('2025-12-19 12:00:00', 'Pickup',  1, 1, 1,  2, 1003, 'Cash',  200.00, null),
  ('2026-10-16 08:45:00', 'Pickup',  1, 1, 3,  3, 1004, 'Cash',  100.00, null),
  ('2026-09-25 10:00:00', 'Pickup',  1, 1, 3,  4, 1005, 'Cash',  150.00, null),
  ('2026-03-12 16:00:00', 'Pickup',  1, 1, 2, 14, 1006, 'Cash',  260.00, null),
  ('2026-11-12 12:00:00', 'Pre pay', 1, 1, 1, 16, 1010, 'Check',  20.00, '1887'),
  ('2026-10-15 09:30:00', 'Pickup',  1, 1, 3,  4, 1012, 'Cash',   23.91, null);

insert into ticketlog (ticketnumber, logdate, logtype, employeename) values
  (1001, '2026-08-14 09:10:00', 'R', 'Ines Marlow'),
  (1002, '2026-10-08 17:20:00', 'R', 'Dora Quill'),
  (1003, '2025-12-19 12:00:00', 'R', 'Dora Quill'),
  (1004, '2026-10-16 08:45:00', 'R', 'Tom Ashgrove'),
  (1005, '2026-09-25 10:00:00', 'R', 'Tom Ashgrove'),
  (1006, '2026-03-12 16:00:00', 'R', 'Ines Marlow'),
  (1012, '2026-10-15 09:30:00', 'R', 'Tom Ashgrove');
