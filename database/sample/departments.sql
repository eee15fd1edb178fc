-- Splitting: dry cleaning and household share group 1, shirts and laundry group 2, leather is group 3;
-- alterations and redo (group 0) travel with any. Limits: dry cleaning 10 pieces, shirts 20, leather 3 are cut
-- into tickets by themselves; household 5 is left to the clerk; the others have none.
-- Heat seals: dry cleaning and shirts of shop 1. Redo has no days of its own and takes the shop's.
-- Department 8 is disabled. Laundry is the plain one for sums: no tax and no surcharge on its items.

-- Counter, shop 1.
insert into Department (departmentID, storeid, pricelistid, name, notes, printNotes, splitInvoice, splitGroup, maxItemsInReceipt, userMaxItem, daysToProcess, useHeatSeals, disabled, displaySequence) values
  (1, 1, 1, 'Dry Cleaning', null,                             0, 1, 1,   10, 0,    3, 1, 0, 1),
  (2, 1, 1, 'Shirts',       'Count the hangers',              0, 1, 2,   20, 0,    2, 1, 0, 2),
  (3, 1, 1, 'Laundry',      null,                             0, 1, 2, null, 0,    2, 0, 0, 3),
  (4, 1, 1, 'Household',    'Measure rugs and drapes',        1, 0, 1,    5, 1,    5, 0, 0, 4),
  (5, 1, 1, 'Alterations',  'Pin before the customer leaves', 1, 0, 0, null, 0,    4, 0, 0, 5),
  (6, 1, 1, 'Leather',      'Sent to the leather works',      1, 1, 3,    3, 0,   14, 0, 0, 6),
  (7, 1, 1, 'Redo',         null,                             0, 0, 0, null, 0, null, 0, 0, 7),
  (8, 1, 1, 'Fur Storage',  null,                             0, 0, 0, null, 0,   30, 0, 1, 8);

-- Corporate, shop 1.
insert into Department (departmentID, storeid, pricelistid, name, notes, printNotes, splitInvoice, splitGroup, maxItemsInReceipt, userMaxItem, daysToProcess, useHeatSeals, disabled, displaySequence) values
  (21, 1, 2, 'Corporate Cleaning', null,              0, 0, 0, null, 0, 4, 0, 0, 21),
  (22, 1, 2, 'Uniforms',           null,              0, 1, 5,   50, 0, 3, 0, 0, 22),
  (23, 1, 2, 'Linen Service',      'Weigh and count', 0, 1, 6, null, 0, 2, 0, 0, 23);

-- Mill Lane, and the department of the disabled list.
insert into Department (departmentID, storeid, pricelistid, name, notes, printNotes, splitInvoice, splitGroup, maxItemsInReceipt, userMaxItem, daysToProcess, useHeatSeals, disabled, displaySequence) values
  (31, 2, 3, 'Dry Cleaning', null, 0, 0, 0, null, 0,    2, 0, 0,  1),
  (32, 2, 3, 'Shirts',       null, 0, 0, 0, null, 0, null, 0, 0,  2),
  (41, 1, 4, 'Winter Wear',  null, 0, 0, 0, null, 0,    5, 0, 0, 41);

-- Dry cleaning written from 12:00 takes one day more, from 16:00 two; shirts from 14:00 one. At 10:30 only
-- alterations have a row that counts; the one of laundry is empty.
insert into departmentdays (departmentid, hour, adddays) values
  (1, 12,    1),
  (1, 16,    1),
  (2, 14,    1),
  (3,  8, null),
  (5,  9,    1);
