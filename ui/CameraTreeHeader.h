// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QHeaderView>

/// The header of the camera tree: no column that sizes to its contents is narrower than its label,
/// though the model asks for less. Bound to the GUI thread.
class CameraTreeHeader : public QHeaderView {
    Q_OBJECT

public:
    explicit CameraTreeHeader(QWidget* parent);

protected:
    QSize sectionSizeFromContents(int logicalIndex) const override;
};
