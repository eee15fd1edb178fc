-- List 1 (Counter): VIP discount straight, 10 percent, for more than 100.00 in 6 months; it stands beside
-- other offers. A referral builds up 10 percent for 90 days and is credited in steps of 5.00 up to 10.00.
-- List 2 (Corporate): VIP discount smart, 5.00 for every 50.00, for more than 200.00 in 12 months; it does not
-- stand beside other offers. No referral.
-- List 3 (Mill Lane) has no VIP and no referral. List 4 is disabled.

insert into PriceList (PriceListId, name, disable, VIPMinQualAmount, VIPValidWithOtherOffers, VIPStraight, VIPStraightPercent, VIPSmartAmount, VIPSmartForEveryAmount, VIPValidNbrOfMonths, referralDiscountAmount, referralValidNbrOfDays, referralIncrement, referralLimit) values
  (1, 'Counter',     0, 100.00,    1,    1,   10, null,  null,    6,   10,   90, 5.00, 10.00),
  (2, 'Corporate',   0, 200.00,    0,    0, null, 5.00, 50.00,   12, null, null, null,  null),
  (3, 'Mill Lane',   0,   null, null, null, null, null,  null, null, null, null, null,  null),
  (4, 'Winter 2019', 1,   null, null, null, null, null,  null, null, null, null, null,  null);
