-- One customer's database: the tables and columns that the reports read and write.
--
-- The product's own tables hold more columns than these. Everywhere durations are seconds, dates
-- are Unix seconds of a local midnight, and points in time are Unix seconds.
--
-- The reports name columns without their table where a name is unique among the joined tables. A
-- column added here may make such a query ambiguous: above all, `inters` must have no `del`, and
-- `groups`, `departs` and `branches` must have no `uid` and no `pid`.

-- Settings. `name` must be unique: storing a value replaces the row of that name.
CREATE TABLE vars (
  name  VARCHAR(190) NOT NULL,
  value MEDIUMTEXT,
  PRIMARY KEY (name)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_slovak_ci;

CREATE TABLE `groups` (
  gid  INT UNSIGNED NOT NULL AUTO_INCREMENT,
  name VARCHAR(100) NOT NULL,
  PRIMARY KEY (gid)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_slovak_ci;

CREATE TABLE departs (
  did  INT UNSIGNED NOT NULL AUTO_INCREMENT,
  name VARCHAR(100) NOT NULL,
  PRIMARY KEY (did)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_slovak_ci;

CREATE TABLE branches (
  bid  INT UNSIGNED NOT NULL AUTO_INCREMENT,
  name VARCHAR(100) NOT NULL,
  PRIMARY KEY (bid)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_slovak_ci;

CREATE TABLE people (
  uid     INT UNSIGNED NOT NULL AUTO_INCREMENT,
  -- The personal number that people know, and the number of the payroll system (text).
  pid     INT UNSIGNED NOT NULL DEFAULT 0,
  pamId   VARCHAR(32) DEFAULT NULL,
  -- '<anonym>' as a name marks a person who was made anonymous; the reports leave such rows out.
  name    VARCHAR(100) NOT NULL,
  surname VARCHAR(100) NOT NULL,
  -- Titles before and after the name; NULL, not '', where there is none: '' leaves a blank.
  title   VARCHAR(32) DEFAULT NULL,
  title2  VARCHAR(32) DEFAULT NULL,
  gid     INT UNSIGNED DEFAULT NULL,
  did     INT UNSIGNED DEFAULT NULL,
  -- The home branch.
  bid     INT UNSIGNED DEFAULT NULL,
  -- 1: active.
  status  TINYINT NOT NULL DEFAULT 1,
  -- Employment: the first moment, and the last one or NULL for an open end.
  begin   INT UNSIGNED NOT NULL DEFAULT 0,
  end     INT UNSIGNED DEFAULT NULL,
  PRIMARY KEY (uid)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_slovak_ci;

-- History of the branches that a person was assigned to; the latest `since` counts.
CREATE TABLE brape (
  id    INT UNSIGNED NOT NULL AUTO_INCREMENT,
  uid   INT UNSIGNED NOT NULL,
  bid   INT UNSIGNED NOT NULL,
  since INT UNSIGNED NOT NULL,
  PRIMARY KEY (id),
  KEY (uid)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_slovak_ci;

-- Which people an administrator may see.
CREATE TABLE admins_people (
  aid INT UNSIGNED NOT NULL,
  uid INT UNSIGNED NOT NULL,
  PRIMARY KEY (aid, uid)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_slovak_ci;

-- A person's day.
CREATE TABLE atten (
  id      INT UNSIGNED NOT NULL AUTO_INCREMENT,
  uid     INT UNSIGNED NOT NULL,
  date    INT UNSIGNED NOT NULL,
  -- Day of the month, 1 to 31, of `date`.
  dom     TINYINT UNSIGNED NOT NULL,
  -- Number of the shift; 0 for none.
  shift   INT NOT NULL DEFAULT 0,
  -- Planned, worked, and the difference of the two; overtime where positive.
  fond    DOUBLE NOT NULL DEFAULT 0,
  work    DOUBLE NOT NULL DEFAULT 0,
  diff    DOUBLE NOT NULL DEFAULT 0,
  expFund DOUBLE NOT NULL DEFAULT 0,
  -- Approved overtime, the source of overtime with "advancedOvertime".
  saldo_p DOUBLE NOT NULL DEFAULT 0,
  -- Above 0 when the day is closed; only then does its overtime count.
  ok      TINYINT NOT NULL DEFAULT 0,
  PRIMARY KEY (id),
  -- The daily report asks once per person and day.
  UNIQUE KEY (uid, date)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_slovak_ci;

-- Single records of a day. `iid` 1 is attendance itself, 2 to 999 an interruption (see `inters`),
-- 1000 to 1003 a correction: time not recognised, rounding, penalty, moved time.
CREATE TABLE atten_data (
  id       INT UNSIGNED NOT NULL AUTO_INCREMENT,
  uid      INT UNSIGNED NOT NULL,
  iid      INT UNSIGNED NOT NULL,
  `from`   INT UNSIGNED NOT NULL,
  duration DOUBLE NOT NULL DEFAULT 0,
  -- 1: deleted by a person.
  del      TINYINT NOT NULL DEFAULT 0,
  PRIMARY KEY (id),
  KEY (uid, `from`)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_slovak_ci;

-- Catalogue of interruptions. The monthly report has columns of its own for the ids 3 (holiday),
-- 7 (paid absence), 8 (doctor), 9 (time off in lieu), 14 (family care) and 15 (sick leave).
CREATE TABLE inters (
  iid      INT UNSIGNED NOT NULL,
  shortcut VARCHAR(16) NOT NULL,
  name     VARCHAR(100) NOT NULL,
  PRIMARY KEY (iid)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_slovak_ci;

-- A person's month. `month` is year * 100 + month; `vouchers` is a count, all else seconds.
CREATE TABLE atten_month (
  uid         INT UNSIGNED NOT NULL,
  month       INT UNSIGNED NOT NULL,
  -- Planned and worked.
  fond        DOUBLE NOT NULL DEFAULT 0,
  work        DOUBLE NOT NULL DEFAULT 0,
  -- Balances; `saldo_p` is the source of overtime with "advancedOvertime", else `totalSaldo`.
  saldo       DOUBLE NOT NULL DEFAULT 0,
  saldo_p     DOUBLE NOT NULL DEFAULT 0,
  saldo_c     DOUBLE NOT NULL DEFAULT 0,
  totalSaldo  DOUBLE NOT NULL DEFAULT 0,
  -- Holidays: number of days, planned time on them, time worked on them.
  holidays    INT NOT NULL DEFAULT 0,
  holidayFond DOUBLE NOT NULL DEFAULT 0,
  holidaySum  DOUBLE NOT NULL DEFAULT 0,
  -- Time with extra pay, on Saturdays, on Sundays and at night.
  bonus       DOUBLE NOT NULL DEFAULT 0,
  day6sum     DOUBLE NOT NULL DEFAULT 0,
  day7sum     DOUBLE NOT NULL DEFAULT 0,
  night       DOUBLE NOT NULL DEFAULT 0,
  -- Meal vouchers.
  vouchers    INT NOT NULL DEFAULT 0,
  PRIMARY KEY (uid, month)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_slovak_ci;

-- The mail queue. The reports insert; the product's sender picks up what has the status 'Q'.
CREATE TABLE emails (
  mid     INT UNSIGNED NOT NULL AUTO_INCREMENT,
  type    CHAR(1) DEFAULT NULL,
  status  CHAR(1) NOT NULL DEFAULT 'Q',
  `from`  VARCHAR(255) NOT NULL,
  `to`    VARCHAR(255) NOT NULL,
  subject VARCHAR(255) NOT NULL,
  body    MEDIUMTEXT,
  -- Unix seconds: queued (set here), and sent and finished (set by the sender).
  created INT UNSIGNED NOT NULL DEFAULT 0,
  sent    INT UNSIGNED DEFAULT NULL,
  done    INT UNSIGNED DEFAULT NULL,
  -- Administrator and person that a mail belongs to. `aid` is 0 without one, `uid` NULL.
  aid     INT UNSIGNED NOT NULL DEFAULT 0,
  uid     INT UNSIGNED DEFAULT NULL,
  -- A JSON document with the attachments. It must fit into the server's max_allowed_packet.
  data    LONGBLOB,
  -- The sender's own id of the mail.
  apiID   VARCHAR(64) DEFAULT NULL,
  PRIMARY KEY (mid),
  KEY (status)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_slovak_ci;
