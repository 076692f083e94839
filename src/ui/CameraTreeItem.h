// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ui/tree/BasicTreeItem.h"

#include <QString>

#include <memory>

class CameraHandler;

/// A row of the camera tree. Only camera rows have a handler.
class CameraTreeItem : public BasicTreeItem {
public:
    explicit CameraTreeItem(QVector<QVariant> values, std::shared_ptr<CameraHandler> handler = {});
    ~CameraTreeItem() override;

    const std::shared_ptr<CameraHandler>& handler() const { return m_handler; }
    /// Whether the camera takes part in benchmarks and Auto Set.
    bool isChecked() const { return m_checked; }
    void setChecked(bool checked) { m_checked = checked; }
    /// Whether the row's widgets may be used.
    bool isEnabled() const { return m_enabled; }
    void setEnabled(bool enabled) { m_enabled = enabled; }
    /// What is wrong with the camera; empty when nothing is.
    const QString& warningText() const { return m_warningText; }
    void setWarningText(const QString& text) { m_warningText = text; }

private:
    std::shared_ptr<CameraHandler> m_handler;
    bool m_checked = false;
    bool m_enabled = false;
    QString m_warningText;
};
