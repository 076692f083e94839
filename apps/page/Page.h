// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "chart/StackedChart.h"

#include <QString>
#include <QStringList>

#include <variant>
#include <vector>

/// A document to be read by people, without its format. Its texts may be any; writers escape them.
namespace page {

/// Sentences.
struct Paragraph {
    QString text;
};

/// A statement, what it rests on, and a command that a reader may copy; both may be empty.
struct Note {
    QString text;
    QString detail;
    QString command;
};

struct Notes {
    std::vector<Note> notes;
};

/// The first cell of each row names the row. All rows have a cell for each heading.
struct Table {
    QString caption;
    QStringList headings;
    std::vector<QStringList> rows;
    /// For each column whether it is to be aligned to the right.
    std::vector<bool> isNumber;
};

using Block = std::variant<Paragraph, Notes, Table, chart::StackedChart>;

struct Section {
    QString title;
    std::vector<Block> blocks;
};

/// A document whose outcome, good or not, is its first sentence.
struct Page {
    QString title;
    bool isGood = false;
    QString outcome;
    std::vector<Section> sections;
};

} // namespace page
