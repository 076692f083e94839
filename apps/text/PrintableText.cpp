// SPDX-License-Identifier: BSD-3-Clause
#include "text/PrintableText.h"

QString printableText(QString text) {
    for (int i = 0; i < text.size(); ++i) {
        const QChar character = text.at(i);
        const QChar next = i + 1 < text.size() ? text.at(i + 1) : QChar();
        if (character.isHighSurrogate() && next.isLowSurrogate())
            ++i;
        else if (!character.isPrint())
            text[i] = QLatin1Char('?');
    }
    return text;
}
