// SPDX-License-Identifier: BSD-3-Clause
#include "ui/RowHeights.h"

#include <QEvent>
#include <QHeaderView>
#include <QScrollBar>
#include <QTableWidget>

#include <algorithm>

RowHeights::RowHeights(QTableWidget* table, QObject* parent) : QObject(parent), m_table(table) {
    // Without a minimum of its own the header works it out anew, from the font, for every row.
    QHeaderView* header = m_table->verticalHeader();
    header->setMinimumSectionSize(header->minimumSectionSize());

    m_measureLater.setSingleShot(true);
    connect(&m_measureLater, &QTimer::timeout, this, &RowHeights::measure);
    const auto measureLater = [this] {
        m_measureLater.start(0);
    };

    connect(m_table->model(), &QAbstractItemModel::rowsInserted, this,
            [this, measureLater](const QModelIndex&, int first, int last) {
                fixOlderRows(first, last);
                measureLater();
            });
    connect(m_table->verticalScrollBar(), &QScrollBar::valueChanged, this, measureLater);
    m_table->viewport()->installEventFilter(this);
}

bool RowHeights::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize || event->type() == QEvent::Show)
        m_measureLater.start(0);
    return QObject::eventFilter(watched, event);
}

bool RowHeights::isSizedToContents(int row) const {
    return m_table->verticalHeader()->sectionResizeMode(row) == QHeaderView::ResizeToContents;
}

void RowHeights::fixOlderRows(int first, int last) {
    const int begin = std::max(first, newestRows);
    const int end = std::min(begin + last - first + 1, m_table->rowCount());
    for (int row = begin; row < end; ++row) {
        if (isSizedToContents(row))
            m_table->verticalHeader()->setSectionResizeMode(row, QHeaderView::Fixed);
    }
}

void RowHeights::measure() {
    if (m_table->rowCount() == 0 || !m_table->isVisible() || !isSizedToContents(0))
        return;
    takeOverUsualHeight();
    measureRowsInSight();
}

/// Rows that were never in sight get the height of a row of one line, so that the scroll bar is
/// about right.
void RowHeights::takeOverUsualHeight() {
    if (m_knowsUsualHeight)
        return;
    m_knowsUsualHeight = true;
    m_table->rowAt(0); // lets the header size its rows now
    int height = m_table->rowHeight(0);
    for (int row = 1; row < std::min(newestRows, m_table->rowCount()); ++row)
        height = std::min(height, m_table->rowHeight(row));
    m_table->verticalHeader()->setDefaultSectionSize(height);
}

void RowHeights::measureRowsInSight() {
    const QHeaderView* header = m_table->verticalHeader();
    const int bottom = m_table->viewport()->height();
    for (int row = std::max(m_table->rowAt(0), newestRows);
         row < m_table->rowCount() && header->sectionViewportPosition(row) < bottom; ++row) {
        if (!isSizedToContents(row))
            m_table->resizeRowToContents(row);
    }
}
