#include "tool/onschema.h"

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

int onSchema(const Invocation &invocation, SchemaConnection::Access access,
             SchemaConnection::Statements statements,
             const std::function<int(const SchemaConnection &)> &work)
{
    return onSchemas(invocation, [&](const Schemas &schemas) {
        const SchemaConnection connection(schemas, invocation.token, access, statements);
        return connection.error.isEmpty() ? work(connection) : couldNotAsk(connection.error);
    });
}
