// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/OwnSettings.h"
#include "tests/support/Resources.h"
#include "tests/ui/FakeCameras.h"
#include "ui/SettingsDialog.h"
#include "ui/SpanletDialog.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QSettings>
#include <QSpinBox>
#include <QTest>
#include <gtest/gtest.h>

#include <windows.h>

namespace {

/// What Windows itself has below the user's key.
template <typename T> LSTATUS read(const wchar_t* key, const wchar_t* name, DWORD type, T& value) {
    DWORD size = sizeof(value);
    return RegGetValueW(HKEY_CURRENT_USER, key, name, type, nullptr, &value, &size);
}

TEST(WindowsRegistry, HasWhatTheDialogKeeps) {
    initResources();
    const OwnSettings own;
    QSettings(QStringLiteral("Meridane"), QStringLiteral("Spanlet"))
        .setValue(QStringLiteral("Support Dialog/active"), false);
    SpanletDialog dialog(unusedOrvSystem(), false, nullptr,
                         makeController(std::make_shared<FakeSystem>(FakeSystem::FakeList{})));
    dialog.findChild<QPushButton*>(QStringLiteral("buttonSettings"))->click();
    auto* settings = dialog.findChild<SettingsDialog*>();
    ASSERT_NE(settings, nullptr);
    settings->findChild<QSpinBox*>(QStringLiteral("GigEInterfaceSpinBox"))->setValue(23);
    settings->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    // It stores when it goes.
    delete settings;

    DWORD margin = 0;
    EXPECT_EQ(read(L"Software\\Meridane\\Spanlet\\Safety Margins", L"interface_GigE",
                   RRF_RT_REG_DWORD, margin),
              ERROR_SUCCESS);
    EXPECT_EQ(margin, 23U);
    wchar_t active[8]{};
    EXPECT_EQ(
        read(L"Software\\Meridane\\Spanlet\\Support Dialog", L"active", RRF_RT_REG_SZ, active),
        ERROR_SUCCESS);
    EXPECT_STREQ(active, L"false");
}

} // namespace
