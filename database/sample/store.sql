-- The shops, their calendar and their people. The day of all stories is Tuesday 2026-11-24, 10:30.
--
-- Shop 1, Fernhill: closed on Sundays; ready at 5:00 PM, but Friday 6:00 PM and Saturday 2:00 PM; three days
-- by default. After 16:00 a ticket takes one day more (Saturday after 12:00: two); the cut-off of Thursday is
-- blanks, which is none. Thanksgiving closes Thursday and Friday, 26 and 27 November.
-- Shop 2, Mill Lane: no hours kept, so open every day with no cut-off and no ready time; two days by default.
--
-- Options: shop 1 groups similar items, allows several discounts, counts uses, looks at customerdelivery for
-- routes and runs a conveyor; shop 2 allows one discount, counts nothing and looks at route.

insert into Store (storeId, name, address, city, state, zipCode, phone, defaultpickuptime, defaultProcessingDays) values
  (1, 'Fernhill Cleaners', '12 Fernhill Road', 'Marbury', 'VT', '05001', '802-555-0100', '5:00 PM', 3),
  (2, 'Mill Lane Express', '3 Mill Lane',      'Marbury', 'VT', '05001', '802-555-0190', null,      2);

-- Monday is 1.
insert into StoreHour (storeId, dayOfWeek, storeOpen, defaultPickupTime, addDaysAfter, addAfterTime) values
  (1, 1, 1, null,         1, '16:00'),
  (1, 2, 1, null,         1, '16:00'),
  (1, 3, 1, null,         1, '16:00'),
  (1, 4, 1, null,         1, '   '),
  (1, 5, 1, '6:00 PM',    1, '16:00'),
  (1, 6, 1, '2:00 PM',    2, '12:00'),
  (1, 7, 0, null,      null, null);

insert into StoreHoliday (storeid, firstDay, duration, description) values
  (1, '2026-09-07', 1, 'Labor Day'),
  (1, '2026-11-26', 2, 'Thanksgiving'),
  (1, '2026-12-25', 1, 'Christmas'),
  (1, '2027-01-01', 1, 'New Year'),
  (1, '2027-05-31', 1, 'Memorial Day'),
  (2, '2026-12-25', 1, 'Christmas');

insert into miscsetup (storeid, routeVersion, RollOverDueDateAbove, ItemSortMethod, conveyorType, oneDiscountPerInvoice, groupSimilarItems) values
  (1, 2,  120, 1, 'WH', 0, 1),
  (2, 1, null, 0, null, 1, 0);

-- Terminal 1 has a file name of its own for card requests, the others take a new one each time.
insert into terminal (terminalid, storeId, terminalName, creditCardRequestFilename) values
  (1, 1, 'Front counter left',  'FRONT1'),
  (2, 1, 'Front counter right', null),
  (3, 2, 'Mill Lane',           '');

-- Employee 4 has an apostrophe in her name; employee 6 has left.
insert into employee (employeeid, employeename, storeId, active) values
  (1, 'Dora Quill',   1, 1),
  (2, 'Ines Marlow',  1, 1),
  (3, 'Tom Ashgrove', 1, 1),
  (4, 'Pat O''Dell',  1, 1),
  (5, 'Rafe Linden',  2, 1),
  (6, 'Greta Holm',   1, 0);

-- Routes of shop 2. Route 1 runs on Tuesdays only: written on a Tuesday, it comes a week later.
insert into route (routeNumber, routeName, deliverySun, deliveryMon, deliveryTue, deliveryWed, deliveryThu, deliveryFri, deliverySat) values
  (1, 'Tuesday round',       0, 0, 1, 0, 0, 0, 0),
  (2, 'Monday and Thursday', 0, 1, 0, 0, 1, 0, 0),
  (3, 'Resting',             0, 0, 0, 0, 0, 0, 0);

-- Shirts take two days and have no upcharge called Two Day Rush, so their normal time costs nothing more.
-- Shop 2 has no rush.
insert into rushupcharge (storeid, daystoprocess, upchargename) values
  (1, 0, 'Same Day Rush'),
  (1, 1, 'Next Day Rush'),
  (1, 2, 'Two Day Rush');

-- With 120 percent in the options the limits of a day are 120, 240, 96, 24 and 12 pieces.
insert into departmentquota (DepartmentName, PiecesDue) values
  ('Dry Cleaning', 100),
  ('Shirts',       200),
  ('Laundry',       80),
  ('Household',     20),
  ('Leather',       10);

-- Dry cleaning of Monday 30 November is over its limit and rolls to 1 December, which stands exactly at it.
-- Shirts of 28 November stand at the limit and stay. Household of 2 December rolls over two days to the 4th.
insert into dailystatistics (Date, DepartmentName, PiecesDue) values
  ('2026-11-25', 'Dry Cleaning',   95),
  ('2026-11-28', 'Dry Cleaning',   88),
  ('2026-11-30', 'Dry Cleaning',  121),
  ('2026-12-01', 'Dry Cleaning',  120),
  ('2026-11-25', 'Shirts',        150),
  ('2026-11-28', 'Shirts',        240),
  ('2026-11-28', 'Laundry',      null),
  ('2026-12-02', 'Household',      30),
  ('2026-12-03', 'Household',      25);

insert into NumberCounter (storeId, counterName, nextNumber) values
  (0, 'TICKET',  1100),
  (1, 'INVOICE', 5100),
  (1, 'TAG',      301),
  (2, 'INVOICE',  100),
  (2, 'TAG',        1);
