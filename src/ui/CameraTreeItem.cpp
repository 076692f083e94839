// SPDX-License-Identifier: BSD-3-Clause
#include "ui/CameraTreeItem.h"

#include <utility>

CameraTreeItem::CameraTreeItem(QVector<QVariant> values, std::shared_ptr<CameraHandler> handler)
    : BasicTreeItem(std::move(values)), m_handler(std::move(handler)) {}

CameraTreeItem::~CameraTreeItem() = default;
