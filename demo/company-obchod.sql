-- Obchod Dunaj: shops without shifts. Its reports show times as text and no interruptions, and
-- take the branch from the person instead of the history of assignments. It follows
-- tables-schema.sql; company-data.sql follows.

SET @people = 31;
SET @shifts = 0;
SET @fond = 28800; -- 8 hours
SET @first_pid = 1;

INSERT INTO `groups` (name) VALUES ('Predaj'), ('Vedenie');
INSERT INTO departs (name) VALUES ('Potraviny'), ('Drogéria'), ('Pokladne');
INSERT INTO branches (name) VALUES ('Bratislava'), ('Komárno'), ('Štúrovo');

INSERT INTO vars (name, value) VALUES
  ('autoReport.DailyAtten.enabled',   '1'),
  ('autoReport.DailyAtten.time',      '00:00:00'),
  ('autoReport.DailyAtten.emails',    'uctaren@obchod.example, vedenie@obchod.example'),
  ('autoReport.MonthlyAtten.enabled', '1'),
  ('autoReport.MonthlyAtten.time',    '00:00:00'),
  ('autoReport.MonthlyAtten.emails',  'uctaren@obchod.example'),
  ('globalEmail',       'dochadzka@obchod.example'),
  ('dattenIsTimeDec',   '0'),
  ('dattenIsMinusSign', '1'),
  ('dattenInters',      '0'),
  ('dattenHomeBranch',  '1'),
  ('exportUseXLSX',     '1');
