-- Offers of the counter list (list 1); each row says in its name what it does.
--
--    1  flat, from 25.00 on                     10  once per customer
--    2  percentage, not beside other offers     11  expired            12  not yet effective
--    3  percentage, capped                      13  withdrawn          14  percentage, from 10 pieces to 500.00
--    4  per piece, three shirts or more         15  its last day is 2026-11-24
--    5  percentage on one department            16  rule on a disabled department: never offered
--    6  flat, on one item from 6 pieces         17  a row for everything and a row for shirts: both add up
--    7  percentage on two departments, each with its own minimum
--    8  both minimums: only the pieces decide
--    9  rule: 10.00 of shirts must be there
--
--   31 and 32 are loyalty offers (customers 2, 13 and 16 hold some), 41 to 43 promotions: 41 this week only,
--   five pieces of laundry or more, beside other offers; 42 two or more comforters or blankets, not beside
--   others; 43 per piece, three neckties or more.

-- Coupons.
insert into Discount (discountID, priceListID, discountType, discountSubType, discountName, discountPercent, discountAmount, maxDiscountAmount, appliesPerUnit, validWithOtherOffer, active, minPieceCount, maxPieceCount, minQualAmount, maxQualAmount, effectiveDate, expiryDate, noOfUses) values
  ( 1, 1, 'CU', 'FLAT',    '5 Off 25',                       null,  5.00,  null, 0, 1, 1, null, null, 25.00,   null, null,         null,         null),
  ( 2, 1, 'CU', 'PERCENT', '10 Percent Off',                   10,  null,  null, 0, 0, 1, null, null,  null,   null, null,         null,         null),
  ( 3, 1, 'CU', 'PERCENT', '20 Percent, At Most 10',           20,  null, 10.00, 0, 1, 1, null, null,  null,   null, null,         null,         null),
  ( 4, 1, 'CU', 'UNIT',    '1 Off Each Shirt',               null,  1.00,  null, 1, 1, 1, null, null,  null,   null, null,         null,         null),
  ( 5, 1, 'CU', 'PERCENT', 'Household 15 Percent',             15,  null,  null, 0, 1, 1, null, null,  null,   null, null,         null,         null),
  ( 6, 1, 'CU', 'FLAT',    'Three Suits 6 Off',              null,  6.00,  null, 0, 1, 1, null, null,  null,   null, null,         null,         null),
  ( 7, 1, 'CU', 'PERCENT', 'Cleaning and Shirts 10 Percent',   10,  null,  null, 0, 1, 1, null, null,  null,   null, null,         null,         null),
  ( 8, 1, 'CU', 'FLAT',    'Laundry 4 Off',                  null,  4.00,  null, 0, 1, 1, null, null,  null,   null, null,         null,         null),
  ( 9, 1, 'CU', 'FLAT',    '3 Off With Shirts',              null,  3.00,  null, 0, 1, 1, null, null,  null,   null, null,         null,         null),
  (10, 1, 'CU', 'FLAT',    '2 Off Once',                     null,  2.00,  null, 0, 1, 1, null, null,  null,   null, null,         null,            1),
  (11, 1, 'CU', 'FLAT',    'Expired Summer 8 Off',           null,  8.00,  null, 0, 1, 1, null, null,  null,   null, null,         '2026-09-30', null),
  (12, 1, 'CU', 'FLAT',    'December 7 Off',                 null,  7.00,  null, 0, 1, 1, null, null,  null,   null, '2026-12-01', null,         null),
  (13, 1, 'CU', 'FLAT',    'Withdrawn 9 Off',                null,  9.00,  null, 0, 1, 0, null, null,  null,   null, null,         null,         null),
  (14, 1, 'CU', 'PERCENT', 'Large Order 12.5 Percent',       12.5,  null,  null, 0, 1, 1,   10, null,  null, 500.00, null,         null,         null),
  (15, 1, 'CU', 'FLAT',    'Last Day 1 Off',                 null,  1.00,  null, 0, 1, 1, null, null,  null,   null, '2026-11-01', '2026-11-24', null),
  (16, 1, 'CU', 'FLAT',    'With Fur 20 Off',                null, 20.00,  null, 0, 1, 1, null, null,  null,   null, null,         null,         null),
  (17, 1, 'CU', 'PERCENT', '10 Percent, Shirts Twice',         10,  null,  null, 0, 1, 1, null, null,  null,   null, null,         null,         null);

-- Loyalty and promotions.
insert into Discount (discountID, priceListID, discountType, discountSubType, discountName, discountPercent, discountAmount, maxDiscountAmount, appliesPerUnit, validWithOtherOffer, active, minPieceCount, maxPieceCount, minQualAmount, maxQualAmount, effectiveDate, expiryDate, noOfUses) values
  (31, 1, 'LY', 'FLAT',    'Loyal 5 Off',             null, 5.00, null, 0, 1, 1, null, null, null, null, null,         null,         null),
  (32, 1, 'LY', 'PERCENT', 'Loyal 10 Percent',          10, null, null, 0, 1, 1, null, null, null, null, null,         null,         null),
  (41, 1, 'PR', 'PERCENT', 'Laundry Week 20 Percent',   20, null, null, 0, 1, 1, null, null, null, null, '2026-11-23', '2026-11-28', null),
  (42, 1, 'PR', 'FLAT',    'Warm Bed 4 Off',          null, 4.00, null, 0, 0, 1, null, null, null, null, null,         null,         null),
  (43, 1, 'PR', 'UNIT',    'Necktie 0.50 Off Each',   null, 0.50, null, 1, 1, 1, null, null, null, null, null,         null,         null);

-- On the other lists.
insert into Discount (discountID, priceListID, discountType, discountSubType, discountName, discountPercent, discountAmount, maxDiscountAmount, appliesPerUnit, validWithOtherOffer, active, minPieceCount, maxPieceCount, minQualAmount, maxQualAmount, effectiveDate, expiryDate, noOfUses) values
  (51, 2, 'CU', 'PERCENT', 'Corporate 5 Percent',     5, null, null, 0, 1, 1, null, null, null, null, null, null, null),
  (61, 3, 'CU', 'FLAT',    'Mill Lane 2 Off',      null, 2.00, null, 0, 1, 1, null, null, null, null, null, null, null),
  (62, 3, 'CU', 'PERCENT', 'Mill Lane 10 Percent',   10, null, null, 0, 0, 1, null, null, null, null, null, null, null);

-- An item of 0 counts as none.
insert into DiscountDepartment (discountID, departmentID, minPieceCount, minQualAmount, priceListItemID) values
  ( 4,    2,    3,  null, null),
  ( 5,    4, null,  null, null),
  ( 6,    1,    6,  null,  103),
  ( 7,    1, null, 20.00, null),
  ( 7,    2,    4,  null, null),
  ( 8,    3,    2, 50.00, null),
  (17, null, null,  null, null),
  (17,    2, null,  null,    0),
  (32,    1, null,  null, null),
  (32,    2, null,  null, null),
  (41,    3,    5,  null, null),
  (42,    4,    2,  null,  401),
  (42,    4,    2,  null,  402),
  (43,    1,    3,  null,  112);

insert into DiscountDepartmentRule (discountid, departmentid, MinPieceCount, MinQualAmount) values
  ( 9, 2, null, 10.00),
  (16, 8,    1,  null);

-- Customer 13 has used hers up.
insert into loyaltyCustomerOffers (customerSequenceNumber, discountId, noOfUses) values
  (16, 31, 2),
  (16, 32, 1),
  ( 2, 31, 1),
  (13, 32, 0);
