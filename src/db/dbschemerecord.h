#pragma once

#include <QString>

/**
 * A row of `schemas`, as DBManager caches it: what is needed to open a customer's database. All
 * members are empty if there is no such row.
 */
struct DBSchemeRecord {
    QString name; ///< the customer's database
    QString user;
    QString pass; ///< in clear, decoded from Base64
    QString token;
};
