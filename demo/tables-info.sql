-- The information database: which customer databases ("schemas") this server serves.
--
-- The product's server brings this table along. What follows is the part of it that the program
-- reads and writes, for a machine without that server: demonstrations and tests.
--
-- Reference is MariaDB 10.11; MySQL 5.7 works. MySQL 8 does not: there `groups`, the name of a
-- table of every customer database, became a reserved word.

CREATE TABLE `schemas` (
  sid         INT UNSIGNED NOT NULL AUTO_INCREMENT,
  -- The key by which everything addresses a customer.
  token       VARCHAR(64) NOT NULL,
  -- The customer's database, on the same server as this one, and the account for it. The
  -- password is kept as Base64; an entry without a name, user or password is never opened.
  name        VARCHAR(64) NOT NULL,
  user        VARCHAR(80) NOT NULL,
  pass        VARCHAR(255) NOT NULL,
  -- 1: served. 0: switched off.
  status      TINYINT NOT NULL DEFAULT 1,
  -- Unix seconds at which the last maintenance began, NULL when there was none.
  maintenance INT UNSIGNED DEFAULT NULL,
  -- Unix seconds of the last recalculation, NULL when there was none.
  recalc      INT UNSIGNED DEFAULT NULL,
  PRIMARY KEY (sid),
  UNIQUE KEY (token)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_slovak_ci;
