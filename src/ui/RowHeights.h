// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QObject>
#include <QTimer>

class QTableWidget;

/// Keeps it cheap to prepend rows to a table whose vertical header sizes to contents. Such a header
/// measures all of its rows whenever one is added: half a second with 10,000 rows. So only the
/// newest rows stay in that mode. An older row becomes fixed, and is measured when it comes into
/// sight. Rows of a header of another mode keep their heights. Bound to the GUI thread.
///
/// Set the contents precision of the horizontal header to newestRows, not to 0: 0 measures the rows
/// in sight, but in a hidden table every row.
class RowHeights : public QObject {
    Q_OBJECT

public:
    /// Rows at the top that the header itself sizes.
    static constexpr int newestRows = 32;

    /// \p table is not owned and must outlive this object.
    explicit RowHeights(QTableWidget* table, QObject* parent = nullptr);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool isSizedToContents(int row) const;
    void fixOlderRows(int first, int last);
    void measure();
    void takeOverUsualHeight();
    void measureRowsInSight();

    QTableWidget* m_table;
    /// Delays measuring until pending events are done, so that a burst of rows is measured once.
    QTimer m_measureLater;
    bool m_knowsUsualHeight = false;
};
