// SPDX-License-Identifier: BSD-3-Clause
#include "page/HtmlPage.h"
#include "page/MarkdownPage.h"
#include "tests/support/HtmlReading.h"

#include <gmock/gmock.h>

namespace {

/// Markup of both formats, a control character and half a surrogate pair.
QString hostile() {
    return QStringLiteral("1. <script>|`*_[a](http://x)_@b \\& \u0002") + QChar(0xd800);
}

page::Page hostilePage() {
    const QString text = hostile();
    chart::StackedChart chart{text, {1, 2}, {{text, {3, 4}, {2.1}}}, 5};
    chart.series[0].lostAtSeconds = {1.9, 2};
    return {text,
            false,
            text,
            {{text,
              {page::Paragraph{text}, page::Notes{{{text, text, QStringLiteral("echo `a` ``b``")}}},
               page::Table{text, {text, QStringLiteral("MB/s")}, {{text, {}}}, {false, true}},
               chart}}}};
}

TEST(Page, showsHostileTextsAsTheyAreInHtml) {
    const HtmlReading read = readHtml(page::toHtml(hostilePage()));
    const QString shown = hostile().chopped(2) + QStringLiteral("??");
    for (const char* element : {"h1", "p", "h2", "li", "div", "caption", "th", "title", "desc"}) {
        const QStringList texts = read.textsOf(element);
        EXPECT_TRUE(texts.filter(shown).size() > 0) << element;
    }
    EXPECT_EQ(read.tables, (QVector<QVector<QStringList>>{{{shown, QStringLiteral("MB/s")},
                                                           {shown, QString(QChar(0x2013))}}}));
    EXPECT_EQ(read.textsOf("pre"), QStringList{QStringLiteral("echo `a` ``b``")});
}

TEST(Page, showsHostileTextsAsTheyAreInMarkdown) {
    const std::string shown = R"(1\. \<script\>\|\`\*\_\[a\](http\://x)\_\@b \\\& ??)";
    EXPECT_EQ(page::toMarkdown(hostilePage()).toStdString(),
              "# " + shown + "\n\n**" + shown + "**\n\n## " + shown + "\n\n" + shown + "\n\n- " +
                  shown + "\\\n  " + shown + "\\\n  ``` echo `a` ``b`` ```\n\n**" + shown +
                  "**\n\n| " + shown + " | MB/s |\n| --- | ---: |\n| " + shown + " |  |\n\n**" +
                  shown + "**\n\n| Time in s | " + shown +
                  ", MB/s |\n| ---: | ---: |\n| 1.00 | 3.0 |\n| 2.00 | 4.0, lost |\n");
}

} // namespace
