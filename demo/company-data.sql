-- People and their attendance of this month up to today, for either demo company.
--
-- It follows a company's own file in the same session, which sets @people, @shifts, @fond and
-- @first_pid and fills `groups`, `departs` and `branches`. Nothing is random: what a person does
-- on a day is drawn from a checksum over both, so that a day shows the same on every run.

SET NAMES utf8mb4 COLLATE utf8mb4_slovak_ci;
SET @month_start = DATE_FORMAT(CURDATE(), '%Y-%m-01');

INSERT INTO inters (iid, shortcut, name) VALUES
  (1,  'P',   'Príchod'),
  (2,  'O',   'Obed'),
  (3,  'D',   'Dovolenka'),
  (4,  'SC',  'Služobná cesta'),
  (5,  'HO',  'Práca z domu'),
  (7,  'PA',  'Paragraf'),
  (8,  'L',   'Lekár'),
  (9,  'NV',  'Náhradné voľno'),
  (14, 'OČR', 'Ošetrovanie člena rodiny'),
  (15, 'PN',  'Práceneschopnosť');

-- People -------------------------------------------------------------------------------------

CREATE TEMPORARY TABLE surnames (n INT PRIMARY KEY, his VARCHAR(40), hers VARCHAR(40))
  CHARSET utf8mb4 COLLATE utf8mb4_slovak_ci;
INSERT INTO surnames VALUES
  (0, 'Horváth', 'Horváthová'), (1, 'Kováč', 'Kováčová'), (2, 'Varga', 'Vargová'),
  (3, 'Tóth', 'Tóthová'), (4, 'Nagy', 'Nagyová'), (5, 'Baláž', 'Balážová'),
  (6, 'Szabó', 'Szabová'), (7, 'Molnár', 'Molnárová'), (8, 'Lukáč', 'Lukáčová'),
  (9, 'Novák', 'Nováková'), (10, 'Čonka', 'Čonková'), (11, 'Kollár', 'Kollárová'),
  (12, 'Šimko', 'Šimková'), (13, 'Žák', 'Žáková'), (14, 'Hudák', 'Hudáková'),
  (15, 'Ďurica', 'Ďuricová'), (16, 'Ľupták', 'Ľuptáková'), (17, 'Oravec', 'Oravcová'),
  (18, 'Ondruš', 'Ondrušová');

CREATE TEMPORARY TABLE names (n INT PRIMARY KEY, his VARCHAR(40), hers VARCHAR(40))
  CHARSET utf8mb4 COLLATE utf8mb4_slovak_ci;
INSERT INTO names VALUES
  (0, 'Ján', 'Mária'), (1, 'Peter', 'Anna'), (2, 'Jozef', 'Zuzana'), (3, 'Milan', 'Ľubica'),
  (4, 'Štefan', 'Katarína'), (5, 'Ľuboš', 'Jana'), (6, 'Matúš', 'Božena'),
  (7, 'Ondrej', 'Žofia'), (8, 'Tomáš', 'Želmíra'), (9, 'František', 'Eva'),
  (10, 'Dušan', 'Šarlota');

INSERT INTO people (uid, pid, pamId, name, surname, title, title2, gid, did, bid, begin)
WITH RECURSIVE numbers (i) AS (
  SELECT 0 UNION ALL SELECT i + 1 FROM numbers WHERE i + 1 < @people)
SELECT i + 1, @first_pid + i, CONCAT('M', LPAD(i + 1, 5, '0')),
  IF(i % 2, names.hers, names.his), IF(i % 2, surnames.hers, surnames.his),
  IF(i % 9 = 4, 'Ing.', NULL), IF(i % 18 = 4, 'PhD.', NULL),
  1 + i % (SELECT COUNT(*) FROM `groups`),
  1 + i % (SELECT COUNT(*) FROM departs),
  1 + i % (SELECT COUNT(*) FROM branches),
  UNIX_TIMESTAMP('2015-01-01') + i * 86400 * 30
FROM numbers JOIN names ON names.n = (i + @first_pid) * 7 % 11
  JOIN surnames ON surnames.n = (i + @first_pid) * 5 % 19;

-- Three who are in no report: one who was made anonymous, one who is inactive, one who left.
INSERT INTO people (pid, name, surname, status, begin, end) VALUES
  (9001, '<anonym>', '<anonym>', 1, 0, NULL),
  (9002, 'Viera', 'Neaktívna', 0, 0, NULL),
  (9003, 'Karol', 'Odídený', 1, 0, UNIX_TIMESTAMP(@month_start) - 1);

-- Everybody began at the home branch; every fifth moved to the next one this year.
INSERT INTO brape (uid, bid, since) SELECT uid, bid, begin FROM people WHERE bid IS NOT NULL;
INSERT INTO brape (uid, bid, since)
SELECT uid, 1 + bid % (SELECT COUNT(*) FROM branches),
  UNIX_TIMESTAMP(DATE_FORMAT(CURDATE(), '%Y-01-01'))
FROM people WHERE uid % 5 = 0 AND bid IS NOT NULL;

INSERT INTO admins_people (aid, uid) SELECT 2, uid FROM people WHERE uid % 2 = 0;

-- Days ---------------------------------------------------------------------------------------

-- `draw` decides about absences: below 8 the whole day, below 12 two hours. `detail` decides the
-- rest.
CREATE TEMPORARY TABLE plan AS
WITH RECURSIVE days (day) AS (
  SELECT CAST(@month_start AS DATE)
  UNION ALL SELECT day + INTERVAL 1 DAY FROM days WHERE day < CURDATE())
SELECT uid, day, UNIX_TIMESTAMP(day) AS date,
  CRC32(CONCAT(DATABASE(), uid, '/', day)) % 100 AS draw,
  CRC32(CONCAT(DATABASE(), day, '/', uid)) % 1000 AS detail,
  DATE_FORMAT(day, '%d.%m') IN ('01.01', '06.01', '01.05', '08.05', '05.07', '29.08', '15.09',
    '01.11', '24.12', '25.12', '26.12') AS holiday,
  WEEKDAY(day) >= 5 AS weekend,
  IF(@shifts = 0, 0, 1 + (uid + WEEK(day, 1)) % GREATEST(@shifts, 1)) AS shift
FROM days, people WHERE status = 1 AND gid IS NOT NULL;

-- A day off has a row only for the few who work on it. Today is still going on.
INSERT INTO atten (uid, date, dom, shift, fond, work, ok)
SELECT uid, date, DAYOFMONTH(day), IF(weekend, 0, shift), IF(weekend, 0, @fond),
  CASE
    WHEN weekend OR holiday THEN IF(detail % 12 = 0, 18000, 0)
    WHEN draw < 8 THEN 0
    WHEN day = CURDATE() THEN @fond / 2
    WHEN draw < 12 THEN @fond - 7200
    ELSE @fond + (CAST(detail % 13 AS SIGNED) - 3) * 900
  END,
  day < CURDATE()
FROM plan WHERE NOT weekend OR detail % 12 = 0;

-- Overtime is approved by the half hour.
UPDATE atten SET diff = work - fond, expFund = fond,
  saldo_p = GREATEST(FLOOR((work - fond) / 1800) * 1800, 0);

-- Records ------------------------------------------------------------------------------------

INSERT INTO atten_data (uid, iid, `from`, duration)
SELECT uid, 1, date + 21600, work FROM atten WHERE work > 0;

INSERT INTO atten_data (uid, iid, `from`, duration)
SELECT uid,
  CASE WHEN draw < 3 THEN 3 WHEN draw < 5 THEN 15 WHEN draw < 6 THEN 14 WHEN draw < 7 THEN 9
       WHEN draw < 8 THEN 7 ELSE 8 END,
  date + 28800, IF(draw < 8, @fond, 7200)
FROM plan WHERE draw < 12 AND NOT weekend AND NOT holiday;

-- What is recorded only on days with work.
CREATE TEMPORARY TABLE worked AS
SELECT uid, date, work, detail FROM plan JOIN atten USING (uid, date) WHERE work > 0;

-- Lunch, sometimes in two parts, and work elsewhere.
INSERT INTO atten_data (uid, iid, `from`, duration)
SELECT uid, 2, date + 39600, IF(detail % 7 = 0, 900, 1800) FROM worked WHERE work > 14400;
INSERT INTO atten_data (uid, iid, `from`, duration)
SELECT uid, 2, date + 46800, 900 FROM worked WHERE work > 14400 AND detail % 7 = 0;
INSERT INTO atten_data (uid, iid, `from`, duration)
SELECT uid, IF(detail % 2, 4, 5), date + 32400, 10800 FROM worked
WHERE work > 14400 AND detail % 15 = 0;

-- One deleted by a person; it does not count.
INSERT INTO atten_data (uid, iid, `from`, duration, del)
SELECT uid, 8, date + 36000, 3600, 1 FROM worked WHERE detail % 40 = 0;

-- Corrections: time not recognised, rounding (below a minute it is not shown), penalties of which
-- a day may hold two, and moved time.
INSERT INTO atten_data (uid, iid, `from`, duration)
SELECT uid, 1000, date + 21600, 900 FROM worked WHERE detail % 11 = 0;
INSERT INTO atten_data (uid, iid, `from`, duration)
SELECT uid, 1001, date + 21600, detail % 15 * 30 FROM worked WHERE detail % 3 = 0;
INSERT INTO atten_data (uid, iid, `from`, duration)
SELECT uid, 1002, date + 21600, 900 FROM worked WHERE detail % 23 = 0;
INSERT INTO atten_data (uid, iid, `from`, duration)
SELECT uid, 1002, date + 50400, 600 FROM worked WHERE detail % 46 = 0;
INSERT INTO atten_data (uid, iid, `from`, duration)
SELECT uid, 1003, date + 21600, 1800 FROM worked WHERE detail % 17 = 0;

-- Months -------------------------------------------------------------------------------------

-- Bonus time is worked on the late and the night shift; a voucher is for four hours and more.
INSERT INTO atten_month (uid, month, fond, work, saldo, saldo_p, saldo_c, totalSaldo, holidays,
  holidayFond, holidaySum, bonus, day6sum, day7sum, night, vouchers)
SELECT uid, DATE_FORMAT(CURDATE(), '%Y%m'), SUM(fond), SUM(work), SUM(diff), SUM(saldo_p),
  SUM(diff) - SUM(saldo_p), SUM(GREATEST(diff, 0)), SUM(holiday),
  SUM(IF(holiday, fond, 0)), SUM(IF(holiday, work, 0)), SUM(IF(plan.shift > 1, work, 0)),
  SUM(IF(WEEKDAY(day) = 5, work, 0)), SUM(IF(WEEKDAY(day) = 6, work, 0)),
  SUM(IF(plan.shift = 3, work, 0)), SUM(work >= 14400)
FROM atten JOIN plan USING (uid, date) GROUP BY uid;
