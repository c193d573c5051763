#pragma once

#include <QString>

/// Returns whether `c` is a control character, separates lines or paragraphs, or controls the
/// writing direction. Such a character could control a terminal, end the line, or reorder the
/// characters around it.
inline bool isControl(QChar c)
{
    const ushort code = c.unicode();
    return c.category() == QChar::Other_Control || code == 0x061C || code == 0x200E ||
           code == 0x200F || (code >= 0x2028 && code <= 0x202E) ||
           (code >= 0x2066 && code <= 0x2069);
}

/// Returns `text` with each isControl() character replaced by U+FFFD, so that a text from a
/// database can be shown safely.
inline QString withoutControls(QString text)
{
    for (QChar &c : text) {
        if (isControl(c))
            c = QChar::ReplacementCharacter;
    }
    return text;
}
