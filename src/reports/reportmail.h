#pragma once

#include <QByteArray>
#include <QString>

class ZasDbSettings;

/// Returns the sender of the schema's mails: its setting "globalEmail", or else the build's
/// default.
QString reportSender(const ZasDbSettings &settings);

/**
 * Returns a JSON document with the file at `path` as its only attachment. Empty if the file cannot
 * be read, or if the document would be too large for a byte array.
 */
QByteArray attachmentDocument(const QString &path);
