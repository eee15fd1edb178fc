-- Heat seals: rolls of seven characters, AA00001 to AA09999 and B500001 to B509999.
--
-- Known garments, by number: 1 jacket of customer 10, on an active ticket; 2 overcoat, last on a collected
-- ticket of customer 4; 3 shirt that never was on a ticket; 4 fur coat of a disabled department; 5 costume,
-- itself disabled; 6 cape of a disabled price list; 7 suit with a seal on each of its two pieces.

insert into validheatsealranges (starths, endhs) values
  ('AA00001', 'AA09999'),
  ('B500001', 'B509999');

-- Numbered 1 to 7 as they come.
insert into taggeditem (OccupationPercent, PriceListItemID) values
  (25,  102),
  (25,  110),
  (25,  201),
  (25,  801),
  (25,  124),
  (25, 4101),
  (50,  103);

insert into taggedpiece (heatSealID, taggedItemID) values
  ('AA00001', 1),
  ('AA00002', 2),
  ('B500001', 3),
  ('AA00004', 4),
  ('AA00005', 5),
  ('AA00006', 6),
  ('AA00007', 7),
  ('AA00008', 7);

insert into taggeditemdescriptor (taggeditemid, descriptorname, descriptortype) values
  (1, 'Navy',      'CO'),
  (1, 'Ardenvale', 'BR'),
  (2, 'Black',     'CO'),
  (2, 'Lining',    'UP'),
  (3, 'White',     'CO'),
  (7, 'Gray',      'CO'),
  (7, 'Pinstripe', 'PA');

insert into ticketlineitemtaggeditem (taggedItemID, ticketNumber, lineItemNumber) values
  (1, 1011, 1),
  (2, 1012, 1);
