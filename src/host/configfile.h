#pragma once

#include <QMap>
#include <QString>

/**
 * What a configuration file, an INI file, says instead of the command line.
 *
 * Section "database": host, port, user, name, single, password, password-file. Section "reports":
 * language.
 */
struct ConfigFile {
    QMap<QString, QString> values; ///< by section and key, "database/host"
    QString error;                 ///< why it was refused; empty when all is well

    /// Where a machine keeps it. It may be missing, unlike one that was asked for by name.
    static QString defaultPath();

    /**
     * Reads `path`. Refused are a file that cannot be read, one with a key that nobody knows, and
     * one that holds a password although every account of the machine may read or change it.
     */
    static ConfigFile read(const QString &path);
};
