-- The information database's entries for the two demo companies. It follows tables-info.sql.

INSERT INTO `schemas` (token, name, user, pass) VALUES
  ('kovo',   'kovovyroba', 'autoreport', TO_BASE64('secret')),
  ('obchod', 'obchod',     'autoreport', TO_BASE64('secret')),
  -- Not served, and never opened: its database does not exist.
  ('stara',  'stara_firma', 'autoreport', TO_BASE64('secret'));
UPDATE `schemas` SET status = 0 WHERE token = 'stara';
