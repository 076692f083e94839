// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QTableWidget>

#include <map>

/// The table of log lines, from which selected rows can be copied. The cost of a new row does not
/// grow with the table. Bound to the GUI thread.
class LogTable : public QTableWidget {
    Q_OBJECT

public:
    explicit LogTable(QWidget* parent = nullptr);
    ~LogTable() override;

protected:
    /// Copies the first selected range to the clipboard, tabs between the cells and a newline
    /// after each row, so that it pastes into a spreadsheet.
    void keyPressEvent(QKeyEvent* event) override;

    /// The widest cell that was ever measured: a narrower column would cut off older rows.
    int sizeHintForColumn(int column) const override;
    /// Widens the columns for the rows that are now visible.
    void verticalScrollbarValueChanged(int value) override;

private:
    mutable std::map<int, int> m_columnWidths;
};
