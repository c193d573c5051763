#include "host/hostanswers.h"

#include "db/serverlist.h"
#include "host/hoststate.h"
#include "host/serveoptions.h"
#include "host/workers.h"
#include "inquiry/hostanswer.h"
#include "inquiry/socketfolder.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QJsonDocument>
#include <QTimeZone>

#include <chrono>

namespace
{

constexpr auto listenInterval = std::chrono::seconds(5);
constexpr auto temporaryPatience = std::chrono::seconds(2); // no signal is handled during the wait

HostAnswer aboutProcess(const ConnectionOptions &connection)
{
    HostAnswer answer;
    answer.version = QCoreApplication::applicationVersion();
    answer.processId = QCoreApplication::applicationPid();
    answer.server = serverText(connection.host, connection.port);
    answer.database = connection.databaseName;
    answer.isSingle = connection.single;
    const QDateTime now = QDateTime::currentDateTime();
    answer.zone = QString::fromLatin1(QTimeZone::systemTimeZoneId());
    answer.utcOffsetSeconds = now.offsetFromUtc();
    answer.moment = now.toSecsSinceEpoch();
    return answer;
}

/// Checks the directory for every answer, because its disk may have filled up.
void addTemporaryDirectory(HostAnswer &answer, TemporaryDirectoryProbe &probe)
{
    using State = TemporaryDirectory::State;
    const TemporaryDirectory directory = probe.check(temporaryPatience);
    answer.temporaryDirectory = directory.state == State::Missing ? QString() : directory.path;
    answer.isTemporaryAnswering = directory.state != State::Silent;
    answer.isTemporaryWritable = directory.state == State::Usable;
    answer.temporaryError = directory.error;
    answer.temporaryFreeBytes = directory.freeBytes;
}

void addState(HostAnswer &answer, const HostSnapshot &snapshot)
{
    answer.isPaused = snapshot.isPaused;
    answer.lastScan = snapshot.lastScan;
    answer.nextScan = snapshot.nextScan;
    answer.scanProblem = snapshot.scanProblem;
    for (auto schema = snapshot.schemas.cbegin(); schema != snapshot.schemas.cend(); ++schema)
        answer.schemas.insert(schema.key(), schema->answer);
    for (const QString &token : servedTokens())
        answer.schemas[answer.isSingle ? answer.database : token].isServed = true;
}

} // namespace

HostAnswers::HostAnswers(const ServeOptions &options, const HostState &state)
    : server([this, connection = options.connection, since = QDateTime::currentSecsSinceEpoch(),
              &state] {
        HostAnswer answer = aboutProcess(connection);
        answer.since = since;
        addTemporaryDirectory(answer, temporary);
        addState(answer, state.snapshot());
        return QJsonDocument(answer.toJson()).toJson(QJsonDocument::Compact);
    })
{
    QObject::connect(&timer, &QTimer::timeout, &timer, [this] { listen(); });
    timer.start(listenInterval);
    listen();
}

void HostAnswers::listen()
{
    const QString error = server.listen(ownSocketFolder());
    if (!error.isEmpty() && !isWarned)
        qWarning("Host - cannot answer the operator's commands: %s", qUtf8Printable(error));
    else if (error.isEmpty() && isWarned)
        qInfo("Host - can answer the operator's commands again");
    isWarned = !error.isEmpty();
}
