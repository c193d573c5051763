#pragma once

#include <QSqlDatabase>

/// Makes each statement outside a transaction take effect at once, whatever the server's default
/// is, also after the driver has reconnected. Without autocommit, the first SELECT would begin a
/// transaction, and all later ones would return what was stored at that moment.
///
/// If the server refuses that, closes the connection and returns false; lastError() says why. Does
/// nothing if the driver is not QMYSQL.
bool enableAutocommit(QSqlDatabase &database);
