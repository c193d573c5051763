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
    QMap<QString, QString> values; ///< by section and key, "database/host"; none with an error
    QString error;                 ///< why it was refused; empty when all is well
    bool isReadable = true;        ///< this account may read it, whatever stands in it

    /// Where a machine keeps it. It may be missing, unlike one that was asked for by name.
    static QString defaultPath();

    /**
     * Reads `path`. Refused are a file that cannot be read, one with a key that nobody knows or
     * with a value that would not be read as it stands, and one that holds a password although
     * every account of the machine may read or change it. No error shows a value.
     */
    static ConfigFile read(const QString &path);
};
