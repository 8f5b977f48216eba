// Velmora - the resource files a .ui names, made available before the form
// loads: its ":/" images, icons and style-sheet backgrounds show as they
// do in the author's application.
#pragma once

#include <QString>
#include <QStringList>

namespace FormResources {

// Compiles each .qrc `locations` names (relative to the .ui at `uiPath`)
// with Qt's rcc and registers it for this process. One warning per file
// that is missing or cannot be compiled, naming it.
QStringList registerFor(const QString &uiPath, const QStringList &locations);

} // namespace FormResources
