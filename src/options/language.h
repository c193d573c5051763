#pragma once

#include <QStringList>

#include <functional>

/// The language of the reports' texts. The source texts are Slovak.
namespace Language
{

/// Returns the known languages: "sk" first, followed by those that have a translation.
QStringList known();

/// Installs the translation for the whole process, including the plug-in's module. Call once, on
/// the main thread.
void install(const QString &language);

/// Calls `work` once for each known language, with the reports' texts in that language. Call on the
/// main thread.
void forEach(const std::function<void()> &work);

} // namespace Language
