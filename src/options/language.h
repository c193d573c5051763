#pragma once

#include <QStringList>

/// The language of the reports' texts. The source texts are Slovak.
namespace Language
{

/// Returns "sk", then the languages that have a translation.
QStringList known();

/// Installs the translation for the process, the plug-in's module included. Call once, on the main
/// thread.
void install(const QString &language);

} // namespace Language
