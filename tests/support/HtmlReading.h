// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QSet>
#include <QStringList>
#include <QVector>
#include <QXmlStreamReader>
#include <gtest/gtest.h>

/// What a reader finds in an HTML file that is well-formed XML.
struct HtmlReading {
    /// Of each table its rows, the headings first.
    QVector<QVector<QStringList>> tables;
    /// Text of each element of that name, in order, without that of elements in it.
    QStringList textsOf(const char* name) const {
        QStringList found;
        for (const auto& [element, text] : texts) {
            if (element == QLatin1String(name))
                found += text;
        }
        return found;
    }
    QVector<QPair<QString, QString>> texts;
    QSet<QString> elements;
};

/// Reads the file, and checks that it is well-formed, refers to nothing outside and has no script,
/// that cells of tables have headings, and that every chart is named.
inline HtmlReading readHtml(const QByteArray& html) {
    HtmlReading found;
    QXmlStreamReader reader(html);
    QVector<int> open;
    bool isChartNamed = true;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isCharacters() && !open.isEmpty()) {
            found.texts[open.last()].second += reader.text();
            const QString element = found.texts[open.last()].first;
            if (element == QLatin1String("td") || element == QLatin1String("th"))
                found.tables.last().last().last() += reader.text();
        }
        if (reader.isEndElement())
            open.removeLast();
        if (!reader.isStartElement())
            continue;
        const QString name = reader.name().toString();
        found.elements.insert(name);
        open.append(found.texts.size());
        found.texts.append({name, {}});
        for (const QXmlStreamAttribute& attribute : reader.attributes()) {
            const QString key = attribute.qualifiedName().toString();
            EXPECT_FALSE(key.startsWith(QLatin1String("on")) ||
                         key.contains(QLatin1String("src")) ||
                         key.contains(QLatin1String("href")) || key == QLatin1String("style") ||
                         key == QLatin1String("data") || key == QLatin1String("action"))
                << key.toStdString();
        }
        EXPECT_TRUE(isChartNamed || name == QLatin1String("title")) << name.toStdString();
        isChartNamed = name != QLatin1String("svg");
        if (name == QLatin1String("table"))
            found.tables.append(QVector<QStringList>());
        if (name == QLatin1String("tr"))
            found.tables.last().append(QStringList());
        EXPECT_TRUE(name != QLatin1String("th") ||
                    reader.attributes().hasAttribute(QLatin1String("scope")));
        if (name == QLatin1String("td") || name == QLatin1String("th"))
            found.tables.last().last().append(QString());
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    EXPECT_FALSE(html.contains("url(") || html.contains("@import"));
    EXPECT_FALSE(found.elements.contains(QStringLiteral("script")));
    for (const auto& table : found.tables) {
        for (const QStringList& row : table)
            EXPECT_EQ(row.size(), table.first().size());
    }
    return found;
}
