// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/OwnSettings.h"

#include <QSettings>
#include <QTemporaryDir>

struct OwnSettings::Store {
    QTemporaryDir folder;
};

OwnSettings::OwnSettings() : m_store(std::make_unique<Store>()) {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_store->folder.path());
}

OwnSettings::~OwnSettings() = default;
