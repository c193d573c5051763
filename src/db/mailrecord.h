#pragma once

#include <QByteArray>
#include <QMetaType>
#include <QString>

/**
 * One row of a schema's table `emails`. Points in time are Unix seconds.
 */
struct MailRecord {
    uint mid = 0;                  ///< 0: not stored, not found
    QChar type = QLatin1Char('E'); ///< the null character stands for SQL NULL
    QString status;                ///< "Q": waiting for the sender
    QString from;
    QString to;
    QString subject;
    QString body;
    uint created = 0; ///< set by the database when the mail is queued
    uint sent = 0;    ///< this and `done` are the sender's
    uint done = 0;
    uint aid = 0;    ///< administrator, 0 for none
    uint uid = 0;    ///< person, 0 for none
    QByteArray data; ///< JSON document with the attachments
};

Q_DECLARE_METATYPE(MailRecord)
