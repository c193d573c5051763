#include "options/language.h"

#include <QCoreApplication>
#include <QTranslator>

#include <memory>

/// Prevents the linker from dropping the resource that contains the translations. Must not be in a
/// namespace, because the macro declares a global function.
static void keepResource()
{
    Q_INIT_RESOURCE(translations);
}

namespace
{

/// The installed translator; null for the source texts. Owned by the application, except while
/// forEach() runs.
QTranslator *installed = nullptr;

void replace(QTranslator *translator)
{
    if (installed)
        QCoreApplication::removeTranslator(installed);
    installed = translator;
    if (installed)
        QCoreApplication::installTranslator(installed);
}

/// Returns the translator for `language`; null for the language of the source texts. If the
/// translation cannot be loaded, logs an error and returns null.
QTranslator *load(const QString &language)
{
    if (language == Language::known().constFirst())
        return nullptr;
    keepResource();
    auto *translator = new QTranslator(QCoreApplication::instance());
    if (translator->load(QStringLiteral(":/translations/autoreport_%1.qm").arg(language)))
        return translator;
    qCritical("Host - cannot load the translation '%s'", qUtf8Printable(language));
    delete translator;
    return nullptr;
}

} // namespace

QStringList Language::known()
{
    return {QStringLiteral("sk"), QStringLiteral("en")};
}

void Language::install(const QString &language)
{
    replace(load(language));
}

void Language::forEach(const std::function<void()> &work)
{
    QTranslator *before = installed;
    for (const QString &language : known()) {
        const std::unique_ptr<QTranslator> translator(load(language));
        replace(translator.get());
        work();
        replace(nullptr);
    }
    replace(before);
}
