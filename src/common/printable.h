#pragma once

#include <QString>

/// Returns whether a character could control a terminal, end the line, or change the order of the
/// characters around it: a control character, a separator of lines or paragraphs, or a character
/// that marks, embeds, overrides or isolates a direction of writing.
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
