#include "tool/onschema.h"

#include "tool/output.h"
#include "tool/tool.h"

int onSchema(const Invocation &invocation, SchemaConnection::Access access,
             const std::function<int(const SchemaConnection &)> &work)
{
    Schemas schemas(invocation.connection);
    const QString failure = schemas.open();
    if (!failure.isEmpty()) {
        Output::error(failure);
        return Tool::CouldNotAsk;
    }
    // Gone before the schemas are, whose manager found the way to it.
    const SchemaConnection connection(schemas, invocation.token, access);
    if (connection.error.isEmpty())
        return work(connection);
    Output::error(connection.error);
    return Tool::CouldNotAsk;
}
