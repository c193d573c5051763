-- Kovovýroba Tatry: a factory with three shifts. Its reports show decimal hours, overtime as
-- approved, and the day's interruptions. It follows tables-schema.sql; company-data.sql follows.

SET @people = 44;      -- how many people it has
SET @shifts = 3;       -- they take turns week by week; 0: no shifts
SET @fond = 27000;     -- planned seconds of a working day, 7.5 hours
SET @first_pid = 1001; -- the lowest personal number

INSERT INTO `groups` (name) VALUES ('Výroba'), ('Údržba'), ('Administratíva');
INSERT INTO departs (name) VALUES ('Zlievareň'), ('Obrobňa'), ('Lakovňa'), ('Sklad'), ('Mzdy');
INSERT INTO branches (name) VALUES ('Poprad'), ('Kežmarok');

INSERT INTO vars (name, value) VALUES
  -- Due since midnight. There is no "lastGenerated" yet, so both reports are made at once.
  ('autoReport.DailyAtten.enabled',   '1'),
  ('autoReport.DailyAtten.time',      '00:00:00'),
  ('autoReport.DailyAtten.emails',    'mzdy@kovovyroba.example, majster@kovovyroba.example'),
  ('autoReport.MonthlyAtten.enabled', '1'),
  ('autoReport.MonthlyAtten.time',    '00:00:00'),
  ('autoReport.MonthlyAtten.emails',  'riaditel@kovovyroba.example'),
  ('globalEmail',          'dochadzka@kovovyroba.example'),
  ('dattenIsTimeDec',      '1'),
  ('dattenIsMinusSign',    '1'),
  ('dattenInters',         '1'),
  ('advancedOvertime',     '1'),
  ('monthAttenUsePamID',   '1'),
  -- Columns of their own in the monthly report, by their shortcuts.
  ('monthAttenInterrupts', 'SC,HO');
