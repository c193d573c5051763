#pragma once

#include <QString>

/**
 * The columns of `schemas` that are needed to open a customer's database. All members are empty if
 * no row was found.
 */
struct DBSchemeRecord {
    QString name; ///< the customer's database
    QString user;
    QString pass; ///< plain text, decoded from Base64
    QString token;
};
