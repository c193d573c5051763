#pragma once

#include <QByteArray>
#include <QString>

class ZasDbSettings;

/// Returns the sender of the schema's mails: its setting "globalEmail", or else the default that
/// the build chose.
QString reportSender(const ZasDbSettings &settings);

/**
 * Returns the JSON document with the file at `path` as its one attachment. Empty when the file
 * cannot be read, or is larger than a byte array holds.
 */
QByteArray attachmentDocument(const QString &path);
