// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QTableWidget>

#include <map>

/// The table of log lines: a plain table from which selected rows can be copied. It is made for
/// many rows: what a new row costs does not depend on what the others show. Bound to the GUI
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

    /// The widest cell that was ever measured: rows are not removed, and a column that got narrower
    /// again would cut off older rows.
    int sizeHintForColumn(int column) const override;
    /// Measures the cells that came into sight.
    void verticalScrollbarValueChanged(int value) override;

private:
    mutable std::map<int, int> m_columnWidths;
};
