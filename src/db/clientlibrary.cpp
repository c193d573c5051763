#include "db/clientlibrary.h"

#include <QSqlDriver>
#include <QVariant>

#include <dlfcn.h>

MYSQL *clientHandle(const QSqlDatabase &database)
{
    const QVariant handle = database.driver()->handle();
    if (!database.isOpen() || qstrcmp(handle.typeName(), "MYSQL*") != 0)
        return nullptr;
    return *static_cast<MYSQL *const *>(handle.constData());
}

void *clientFunction(const QSqlDatabase &database, const char *name)
{
    Dl_info driver = {};
    if (dladdr(database.driver()->metaObject(), &driver) == 0)
        return nullptr;
    void *library = dlopen(driver.dli_fname, RTLD_LAZY | RTLD_NOLOAD);
    if (!library)
        return nullptr;
    void *function = dlsym(library, name); // also searches the libraries that the driver links
    dlclose(library);
    return function;
}

bool isMariaDb(const QSqlDatabase &database)
{
    return clientFunction(database, "mariadb_get_infov");
}
