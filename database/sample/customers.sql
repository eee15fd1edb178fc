-- Customers by case; phone numbers are of the kind that nobody has.
--
--    1  ordinary, two tickets of this morning        10  referrer of 9; garments with heat seals
--    2  VIP who has spent 125.50 in six months       11  card on file
--    3  VIP at exactly 100.00: no discount           12  temporary account
--    4  VIP expired: the date is not looked at       13  permanent account, loyalty offer used up
--    5  exempt from taxes                            14  corporate list, smart VIP, 260.00 in the year
--    6  exempt from surcharges                       15  picks up in parts; apostrophe and accent in the name
--    7  delivery Tuesday and Thursday (shop 1)       16  loyalty offers, a coupon over two departments
--    8  route 1, Tuesdays, list 3 (shop 2)           17  referred too long ago
--    9  new, referred by 10, 4.00 built up           18  nothing but a name

-- No marks.
insert into Customer (customerSequenceNumber, customerID, customername, firstName, middleInitial, lastName, employer, MainAreaCode, MainPhone, email, billingAddress1, billingCity, billingState, billingZipCode, defaultPriceListId, visitCount, createdDate) values
  ( 1, 'C0001', 'Marta Fenwick', 'Marta', 'J',  'Fenwick', null, '802', '5550101', 'marta@example.com', '13 Elm Street',    'Marbury', 'VT', '05002', 1, 2, '2025-03-14'),
  ( 7, 'C0007', 'Nora Whitlow',  'Nora',  'T',  'Whitlow', null, '802', '5550107', 'nora@example.com',  '31 Birch Lane',    'Marbury', 'VT', '05002', 1, 1, '2024-10-01'),
  ( 9, 'C0009', 'Lena Osgood',   'Lena',  null, 'Osgood',  null, '802', '5550109', 'lena@example.com',  '37 Harbor Street', 'Marbury', 'VT', '05001', 1, 0, '2026-10-20'),
  (10, 'C0010', 'Ivan Kettle',   'Ivan',  null, 'Kettle',  null, '802', '5550110', 'ivan@example.com',  '40 Oak Street',    'Marbury', 'VT', '05002', 1, 1, '2025-01-15'),
  (16, 'C0016', 'Dinah Larch',   'Dinah', 'K',  'Larch',   null, '802', '5550116', 'dinah@example.com', '58 Elm Street',    'Marbury', 'VT', '05002', 1, 1, '2024-02-29'),
  (17, 'C0017', 'Felix Umber',   'Felix', null, 'Umber',   null, '802', '5550117', 'felix@example.com', '61 Birch Lane',    'Marbury', 'VT', '05003', 1, 0, '2026-01-05'),
  (18, 'C0018', 'Blank',         null,    null, 'Blank',   null, null,  null,      null,                null,               null,      null, null,    1, 0, null);

-- VIP.
insert into Customer (customerSequenceNumber, customerID, customername, firstName, middleInitial, lastName, employer, MainAreaCode, MainPhone, email, billingAddress1, billingCity, billingState, billingZipCode, defaultPriceListId, visitCount, createdDate, vipEligible, vipExpiryDate, permanentaccount) values
  ( 2, 'C0002', 'Owen Tarrant',    'Owen',     null, 'Tarrant',         null,              '802', '5550102', 'owen@example.com',     '16 Birch Lane',    'Marbury', 'VT', '05003', 1, 3, '2024-05-02', 1, '2027-06-30', 0),
  ( 3, 'C0003', 'Helga Stroud',    'Helga',    null, 'Stroud',          null,              '802', '5550103', 'helga@example.com',    '19 Quarry Road',   'Marbury', 'VT', '05001', 1, 1, '2024-08-19', 1, '2027-06-30', 0),
  ( 4, 'C0004', 'Basil Coyle',     'Basil',    'R',  'Coyle',           null,              '802', '5550104', 'basil@example.com',    '22 Harbor Street', 'Marbury', 'VT', '05002', 1, 2, '2023-01-09', 1, '2026-05-31', 0),
  (14, 'C0014', 'Northgate Hotel', null,       null, 'Northgate Hotel', 'Northgate Hotel', '802', '5550114', 'accounts@example.com', '52 Harbor Street', 'Marbury', 'VT', '05003', 2, 1, '2021-12-01', 1, '2028-01-01', 1);

-- Exempt.
insert into Customer (customerSequenceNumber, customerID, customername, firstName, middleInitial, lastName, employer, MainAreaCode, MainPhone, email, billingAddress1, billingCity, billingState, billingZipCode, defaultPriceListId, visitCount, createdDate, taxExempt, surchargeExempt) values
  (5, 'C0005', 'Ruth Amberly', 'Ruth', null, 'Amberly', 'Saint Clement Parish', '802', '5550105', 'ruth@example.com', '25 Oak Street', 'Marbury', 'VT', '05003', 1, 0, '2025-11-30', 1, 0),
  (6, 'C0006', 'Joss Pender',  'Joss', null, 'Pender',  null,                   '802', '5550106', 'joss@example.com', '28 Elm Street', 'Marbury', 'VT', '05001', 1, 0, '2025-06-17', 0, 1);

-- Accounts.
insert into Customer (customerSequenceNumber, customerID, customername, firstName, middleInitial, lastName, employer, MainAreaCode, MainPhone, email, billingAddress1, billingCity, billingState, billingZipCode, defaultPriceListId, visitCount, createdDate, temporaryaccount, permanentaccount) values
  (12, 'C0012', 'Silas Thorne', 'Silas', null, 'Thorne', null,                  '802', '5550112', 'silas@example.com', '46 Birch Lane',  'Marbury', 'VT', '05001', 1, 0, '2026-08-01', 1, 0),
  (13, 'C0013', 'Edith Mabry',  'Edith', null, 'Mabry',  'Mabry and Daughters', '802', '5550113', 'edith@example.com', '49 Quarry Road', 'Marbury', 'VT', '05002', 1, 0, '2022-04-04', 0, 1);

-- Card on file.
insert into Customer (customerSequenceNumber, customerID, customername, firstName, middleInitial, lastName, employer, MainAreaCode, MainPhone, email, billingAddress1, billingCity, billingState, billingZipCode, defaultPriceListId, visitCount, createdDate, creditCardTypeName, creditCardNumber, creditCardExpDate, creditCardInXc) values
  (11, 'C0011', 'Petra Vance', 'Petra', null, 'Vance', null, '802', '5550111', 'petra@example.com', '43 Elm Street', 'Marbury', 'VT', '05003', 1, 0, '2025-09-09', 'Visa', '4111111111111111', '2812', 0);

-- On a route.
insert into Customer (customerSequenceNumber, customerID, customername, firstName, middleInitial, lastName, employer, MainAreaCode, MainPhone, email, billingAddress1, billingCity, billingState, billingZipCode, defaultPriceListId, visitCount, createdDate, routenumber) values
  (8, 'C0008', 'Caleb Roe', 'Caleb', null, 'Roe', null, '802', '5550108', 'caleb@example.com', '34 Quarry Road', 'Marbury', 'VT', '05003', 3, 0, '2026-02-20', 1);

-- Picks up in parts.
insert into Customer (customerSequenceNumber, customerID, customername, firstName, middleInitial, lastName, employer, MainAreaCode, MainPhone, email, billingAddress1, billingCity, billingState, billingZipCode, defaultPriceListId, visitCount, createdDate, multiplePickup, shippingAddress1, shippingCity, shippingState, shippingZipCode, AltAreaCode, AltPhone) values
  (15, 'C0015', 'Zoë O''Hanlon', 'Zoë', null, 'O''Hanlon', null, '802', '5550115', 'zoe@example.com', '55 Oak Street', 'Marbury', 'VT', '05001', 1, 0, '2025-07-07', 1, 'Back door, 9 Tide Street', 'Marbury', 'VT', '05002', '802', '5550155');

-- Collected on Monday (2), both on Tuesday (3), delivered on Thursday (1); customer 6 has stopped.
insert into customerdelivery (id, customersequencenumber, routeid, active, deliverSun, deliverMon, deliverTue, deliverWed, deliverThu, deliverFri, deliverSat) values
  (1, 7, 2, 1, 0, 2, 3, 0, 1, 0, 0),
  (2, 6, 2, 0, 0, 1, 1, 1, 1, 1, 1);

insert into customerreferral (customersequencenumber, referredby, amountToDate) values
  ( 9, 10, 4.00),
  (17, 10, 2.00);

-- Special Care has no options to choose from.
insert into customerpreferencetype (customerpreferencetypeid, name, [default], options, displayorder) values
  (1, 'Starch',       'None',     'None|Light|Medium|Heavy', 10),
  (2, 'Finish',       'Hanger',   'Hanger|Folded|Boxed',     20),
  (3, 'Crease',       'Yes',      'Yes|No',                  30),
  (4, 'Detergent',    'Standard', 'Standard|Scent Free',     40),
  (5, 'Special Care', '',         null,                      50);

-- Customer 1 likes things folded, but boxed on ticket 1007.
insert into customerpreference (customerpreferencetypeid, customersequencenumber, ticketnumber, value) values
  (1,  2, null, 'Heavy'),
  (2,  2, null, 'Boxed'),
  (1,  7, null, 'Light'),
  (4,  7, null, 'Scent Free'),
  (1, 14, null, 'Medium'),
  (2,  1, null, 'Folded'),
  (2,  1, 1007, 'Boxed'),
  (3,  1, 1007, 'No');

-- The letter run of today.
insert into marketingLettersCSN (customerSequenceNumber, customerName, firstName, lastName, address1, city, state, zipCode, email, letterDate) values
  ( 1, 'Marta Fenwick', 'Marta', 'Fenwick',   '13 Elm Street', 'Marbury', 'VT', '05002', 'marta@example.com', '2026-11-24'),
  ( 2, 'Owen Tarrant',  'Owen',  'Tarrant',   '16 Birch Lane', 'Marbury', 'VT', '05003', 'owen@example.com',  '2026-11-24'),
  (15, 'Zoë O''Hanlon', 'Zoë',   'O''Hanlon', '55 Oak Street', 'Marbury', 'VT', '05001', 'zoe@example.com',   '2026-11-24');
