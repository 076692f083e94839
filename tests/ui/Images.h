// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "tests/support/Resources.h"

#include <QIcon>
#include <QImage>
#include <QString>

#include <gtest/gtest.h>

/// What an icon shows, 16 pixels high.
inline QImage imageOf(const QIcon& icon, QIcon::State state = QIcon::Off,
                      QIcon::Mode mode = QIcon::Normal) {
    return icon.pixmap(16, mode, state).toImage();
}

/// A picture of the program, which must exist.
inline QImage programImage(const char* name) {
    const QImage image =
        imageOf(QIcon(QStringLiteral(":/images/images/%1.png").arg(QLatin1String(name))));
    EXPECT_FALSE(image.isNull()) << name;
    return image;
}
