// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/ProgramResources.h"

#include <QDir>
#include <QLocale>
#include <QTranslator>

/// Outside of any namespace, as the macro demands. The linker leaves resources of a static library
/// out unless it is told.
static void initViewerResources() {
    Q_INIT_RESOURCE(viewer);
}

namespace viewer {

QIcon windowIcon() {
    initViewerResources();
    QIcon icon;
    const QDir files(QStringLiteral(":/viewer/icons"));
    for (const QString& file : files.entryList())
        icon.addFile(files.filePath(file));
    return icon;
}

bool loadTexts(QTranslator& texts, const QLocale& locale) {
    initViewerResources();
    // By its name, as Spanlet does: a list of languages could give the two different ones. Looks
    // for "de_AT", then for "de".
    return texts.load(QStringLiteral("spanlet-viewer_") + locale.name(),
                      QStringLiteral(":/viewer/texts"));
}

} // namespace viewer
