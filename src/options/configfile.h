#pragma once

#include <QMap>
#include <QString>

/**
 * A configuration file: options in INI format.
 *
 * Section "database": host, port, user, name, single, password, password-file, ca, cert, key.
 * Section "serve": metrics, clear-workbooks.
 * Section "reports": language.
 */
struct ConfigFile {
    QMap<QString, QString> values; ///< keyed like "database/host"; empty after an error
    QString error;                 ///< why the file was refused; empty on success
    bool isReadable = true;        ///< whether the file could be read, valid or not

    /// Returns the path of the file to read if the command line names none. Only this file may be
    /// missing.
    static QString defaultPath();

    /**
     * Reads `path`. Refuses a file that cannot be read or is not in INI format, an unknown key, an
     * ambiguous value, and a password in a file that every account of the machine can read or
     * change. Error texts never contain a value.
     */
    static ConfigFile read(const QString &path);
};
