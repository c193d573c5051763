#pragma once

#include <QString>

/**
 * The columns of a row of `schemas` that are needed to open the customer's database. All members
 * are empty if there is no such row.
 */
struct DBSchemeRecord {
    QString name; ///< the customer's database
    QString user;
    QString pass; ///< in clear, decoded from Base64
    QString token;
};
