#include "tool/onschema.h"

#include "tool/output.h"
#include "tool/tool.h"

namespace
{

int couldNotAsk(const QString &reason)
{
    Output::error(reason);
    return Tool::CouldNotAsk;
}

} // namespace

int onSchemas(const Invocation &invocation, const std::function<int(Schemas &)> &work)
{
    Schemas schemas(invocation.connection);
    const QString failure = schemas.open();
    return failure.isEmpty() ? work(schemas) : couldNotAsk(failure);
}

int onSchema(const Invocation &invocation, SchemaConnection::Access access,
             const std::function<int(const SchemaConnection &)> &work)
{
    return onSchemas(invocation, [&](Schemas &schemas) {
        // Gone before the schemas are, whose manager found the way to it.
        const SchemaConnection connection(schemas, invocation.token, access);
        return connection.error.isEmpty() ? work(connection) : couldNotAsk(connection.error);
    });
}
