#include "options/language.h"

#include <QCoreApplication>
#include <QTranslator>

/// Keeps the linker from dropping the library's resource. Not in a namespace: the macro declares a
/// function.
static void keepResource()
{
    Q_INIT_RESOURCE(translations);
}

QStringList Language::known()
{
    return {QStringLiteral("sk"), QStringLiteral("en")};
}

void Language::install(const QString &language)
{
    if (language == known().constFirst())
        return;
    keepResource();
    auto *translator = new QTranslator(QCoreApplication::instance());
    if (translator->load(QStringLiteral(":/translations/autoreport_%1.qm").arg(language)))
        QCoreApplication::installTranslator(translator);
    else
        qCritical("Host - cannot load the translation '%s'", qUtf8Printable(language));
}
