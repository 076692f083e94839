// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QTableWidget>

/// The table of log lines: a plain table from which selected rows can be copied. Bound to the GUI
/// thread.
class LogTable : public QTableWidget {
    Q_OBJECT

public:
    explicit LogTable(QWidget* parent = nullptr);
    ~LogTable() override;

protected:
    /// Copies the first selected range to the clipboard, tabs between the cells and a newline
    /// after each row, so that it pastes into a spreadsheet.
    void keyPressEvent(QKeyEvent* event) override;
};
