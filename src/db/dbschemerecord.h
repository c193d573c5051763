#pragma once

#include <QString>

/**
 * One row of `schemas` as the connection manager caches it: what it takes to open a customer's
 * database. All four texts are empty when there is no such row.
 */
struct DBSchemeRecord {
    QString name; ///< the customer's database
    QString user;
    QString pass; ///< in clear, no longer Base64
    QString token;
};
