#include "inquiry/hostanswer.h"

#include <type_traits>

namespace
{

// The visit functions list the members of each struct once, for both reading and writing.

/// Writes members to a JSON object.
struct Writer {
    QJsonObject object;

    template <typename Value>
    void operator()(const char *key, const Value &value)
    {
        if constexpr (std::is_same_v<Value, qint64>)
            object.insert(QLatin1String(key), double(value)); // exact up to 2^53
        else
            object.insert(QLatin1String(key), value);
    }
};

/// Reads members from a JSON object. A member without a key in the object keeps its value.
struct Reader {
    QJsonObject object;

    template <typename Value>
    void operator()(const char *key, Value &value) const
    {
        const QJsonValue found = object.value(QLatin1String(key));
        if (!found.isUndefined())
            value = qvariant_cast<Value>(found.toVariant());
    }
};

template <typename Visitor, typename Outcome>
void visitOutcome(Visitor &visit, Outcome &outcome)
{
    visit("moment", outcome.moment);
    visit("seconds", outcome.seconds);
    visit("mails", outcome.mails);
    visit("cause", outcome.cause);
    visit("text", outcome.text);
}

template <typename Visitor, typename Schema>
void visitSchema(Visitor &visit, Schema &schema)
{
    visit("served", schema.isServed);
    visit("lastTick", schema.lastTick);
    visit("problem", schema.problem);
    visit("problemMoment", schema.problemMoment);
}

template <typename Visitor, typename Host>
void visitHost(Visitor &visit, Host &host)
{
    visit("version", host.version);
    visit("processId", host.processId);
    visit("server", host.server);
    visit("database", host.database);
    visit("single", host.isSingle);
    visit("zone", host.zone);
    visit("utcOffsetSeconds", host.utcOffsetSeconds);
    visit("moment", host.moment);
    visit("since", host.since);
    visit("paused", host.isPaused);
    visit("lastScan", host.lastScan);
    visit("nextScan", host.nextScan);
    visit("scanProblem", host.scanProblem);
    visit("temporaryDirectory", host.temporaryDirectory);
    visit("temporaryAnswers", host.isTemporaryAnswering);
    visit("temporaryWritable", host.isTemporaryWritable);
    visit("temporaryError", host.temporaryError);
    visit("temporaryFreeBytes", host.temporaryFreeBytes);
}

QJsonObject written(const RunOutcome &outcome)
{
    Writer writer;
    visitOutcome(writer, outcome);
    return writer.object;
}

RunOutcome outcomeIn(const QJsonObject &object)
{
    RunOutcome outcome;
    const Reader reader{object};
    visitOutcome(reader, outcome);
    return outcome;
}

QJsonObject written(const SchemaAnswer &schema)
{
    Writer writer;
    visitSchema(writer, schema);
    QJsonObject reports;
    for (auto report = schema.reports.cbegin(); report != schema.reports.cend(); ++report)
        reports.insert(report.key(),
                       QJsonObject{{QStringLiteral("last"), written(report->last)},
                                   {QStringLiteral("lastFailure"), written(report->lastFailure)}});
    writer.object.insert(QStringLiteral("reports"), reports);
    return writer.object;
}

SchemaAnswer schemaIn(const QJsonObject &object)
{
    SchemaAnswer schema;
    const Reader reader{object};
    visitSchema(reader, schema);
    const QJsonObject reports = object.value(QStringLiteral("reports")).toObject();
    for (auto report = reports.begin(); report != reports.end(); ++report) {
        const QJsonObject both = report.value().toObject();
        schema.reports.insert(report.key(),
                              {outcomeIn(both.value(QStringLiteral("last")).toObject()),
                               outcomeIn(both.value(QStringLiteral("lastFailure")).toObject())});
    }
    return schema;
}

} // namespace

QJsonObject HostAnswer::toJson() const
{
    Writer writer;
    visitHost(writer, *this);
    QJsonObject all;
    for (auto schema = schemas.cbegin(); schema != schemas.cend(); ++schema)
        all.insert(schema.key(), written(*schema));
    writer.object.insert(QStringLiteral("schemas"), all);
    return writer.object;
}

std::optional<HostAnswer> HostAnswer::fromJson(const QJsonObject &object)
{
    if (!object.contains(QStringLiteral("database")) || !object.contains(QStringLiteral("schemas")))
        return std::nullopt;
    HostAnswer host;
    const Reader reader{object};
    visitHost(reader, host);
    const QJsonObject all = object.value(QStringLiteral("schemas")).toObject();
    for (auto schema = all.begin(); schema != all.end(); ++schema)
        host.schemas.insert(schema.key(), schemaIn(schema.value().toObject()));
    return host;
}
