#pragma once

#include <QMap>
#include <QString>

/**
 * What a configuration file says about the connection: the section "database" of an INI file.
 *
 * Keys: host, port, user, name, single, password, password-file.
 */
struct ConfigFile {
    QMap<QString, QString> values; ///< by key, without the section
    QString error;                 ///< why it was refused; empty when all is well

    /// Where a machine keeps it. It may be missing, unlike one that was asked for by name.
    static QString defaultPath();

    /**
     * Reads `path`. Refused are a file that cannot be read, one with a key that nobody knows, and
     * one that holds a password although every account of the machine may read or change it.
     */
    static ConfigFile read(const QString &path);
};
