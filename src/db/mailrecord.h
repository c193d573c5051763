#pragma once

#include <QByteArray>
#include <QMetaType>
#include <QString>

/**
 * A row of a schema's table `emails`. Times are Unix seconds.
 */
struct MailRecord {
    uint mid = 0;                  ///< 0: not stored or not found
    QChar type = QLatin1Char('E'); ///< stored as SQL NULL if this is the null character
    QString status;                ///< "Q" while the mail waits to be sent
    QString from;
    QString to;
    QString subject;
    QString body;
    uint created = 0; ///< set by the server when the mail is queued
    uint sent = 0;    ///< set by the sender
    uint done = 0;    ///< set by the sender
    uint aid = 0;     ///< id of the administrator; 0 for none
    uint uid = 0;     ///< id of the person; 0 for none
    QByteArray data;  ///< JSON document with the attachments
};

Q_DECLARE_METATYPE(MailRecord)
