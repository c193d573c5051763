#include "tool/onschema.h"

#include "options/usage.h"
#include "tool/output.h"
#include "tool/tool.h"

namespace
{

int couldNotAsk(const QString &error)
{
    Output::error(error);
    return Tool::CouldNotAsk;
}

} // namespace

int onSchemas(const Invocation &invocation, const std::function<int(const Schemas &)> &work)
{
    const Schemas schemas(invocation.connection);
    const auto error = schemas.open();
    return error ? couldNotAsk(error->text) : work(schemas);
}

int noSuchSchema(const Schemas &schemas, const QString &token)
{
    const auto tokens = schemas.tokens();
    const UsageError error{QStringLiteral("there is no active schema '%1'").arg(token),
                           Usage::nearest(token, tokens.isOk() ? tokens.value() : QStringList())};
    Output::errorLines(
        Usage::threeLines(error, QStringLiteral("TOKEN is one of those in the table schemas"),
                          QStringLiteral("autoreport status lists the schemas")));
    return Tool::CouldNotAsk;
}

int onSchema(const Invocation &invocation, SchemaConnection::Access access,
             SchemaConnection::Statements statements,
             const std::function<int(const SchemaConnection &)> &work)
{
    return onSchemas(invocation, [&](const Schemas &schemas) {
        const auto found = schemas.find(invocation.token);
        if (found.isOk() && !found.value())
            return noSuchSchema(schemas, invocation.token);
        const SchemaConnection connection(schemas, invocation.token, access, statements);
        return connection.error.isEmpty() ? work(connection) : couldNotAsk(connection.error);
    });
}
