-- Ways of paying by shop, card brands, gift cards and cards on file. On Account, Credit Card, GiftCard and
-- Coupon Payment leave the drawer shut; Trade says nothing about it, which leaves it as it is.
-- Gift cards: 9001 holds 50.00, 9002 12.25, 9003 is empty. Card sale XC-1002 has 10.00 of 60.00 used.

insert into StorePaymentType (storeId, paymentTypeName, doNotOpenCashDrawer, displaySequence) values
  (1, 'Cash',                0, 10),
  (1, 'Check',               0, 20),
  (1, 'Credit Card',         1, 30),
  (1, 'Gift Certificate',    0, 40),
  (1, 'GiftCard',            1, 50),
  (1, 'On Account',          1, 60),
  (1, 'Coupon Payment',      1, 70),
  (1, 'Trade',            null, 80),
  (2, 'Cash',                0, 10),
  (2, 'Credit Card',         1, 20);

insert into creditcardtypedomain (storeid, name, creditCardTypeID) values
  (1, 'Visa',              1),
  (1, 'MasterCard',        2),
  (1, 'American Express',  3),
  (1, 'Discover',          4),
  (2, 'Visa',             11),
  (2, 'MasterCard',       12);

insert into GIFTCARD (giftCardId, giftValue, lastUsedDate) values
  (9001, 50.00, null),
  (9002, 12.25, '2026-10-03'),
  (9003,  0.00, '2026-11-01');

insert into cardpayment (transactionid, customersequencenumber, amount, amountapplied) values
  ('XC-1001', 11, 40.00,  null),
  ('XC-1002', 13, 60.00, 10.00);

insert into xcaccount (xcaccountid, customersequencenumber, recurring, cardtype, accountnumber, expiration) values
  ('4111111111111111', 11, 1, 'Visa', '4111111111111111', '2812');
