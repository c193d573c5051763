#include "options/usage.h"

#include <QCommandLineParser>
#include <QRegularExpression>
#include <QVector>

#include <algorithm>

namespace
{

/// Returns the edit distance: how many letters are missing, wrong, superfluous, or swapped with
/// their neighbour.
int distance(const QString &from, const QString &to)
{
    QVector<QVector<int>> table(from.size() + 1, QVector<int>(to.size() + 1));
    for (int row = 0; row <= from.size(); ++row) {
        for (int col = 0; col <= to.size(); ++col) {
            int &cell = table[row][col];
            if (row == 0 || col == 0) {
                cell = row + col;
                continue;
            }
            const int wrong = from.at(row - 1) == to.at(col - 1) ? 0 : 1;
            cell = std::min({table[row - 1][col] + 1, table[row][col - 1] + 1,
                             table[row - 1][col - 1] + wrong});
            if (row > 1 && col > 1 && from.at(row - 1) == to.at(col - 2) &&
                from.at(row - 2) == to.at(col - 1))
                cell = std::min(cell, table[row - 2][col - 2] + 1);
        }
    }
    return table[from.size()][to.size()];
}

/// Returns the options of the parser. Reads them from the parser's help, because the parser has no
/// function that lists them.
QStringList optionsOf(const QCommandLineParser &parser)
{
    static const QRegularExpression option(QStringLiteral("(?:^  |, )--([a-z-]+)"),
                                           QRegularExpression::MultilineOption);
    QStringList options;
    for (auto match = option.globalMatch(parser.helpText()); match.hasNext();)
        options.append(match.next().captured(1));
    return options;
}

} // namespace

QStringList Usage::threeLines(const UsageError &error, const QString &synopsis, const QString &help)
{
    return {QStringLiteral("autoreport: ") + error.text,
            error.meant.isEmpty() ? QStringLiteral("Usage: ") + synopsis
                                  : QStringLiteral("Did you mean '%1'?").arg(error.meant),
            QStringLiteral("Help: ") + help};
}

UsageError Usage::parserError(const QCommandLineParser &parser)
{
    QString text = parser.errorText();
    text[0] = text.at(0).toLower();
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    const QStringList unknown = parser.unknownOptionNames();
    if (unknown.isEmpty())
        return {text};
    const QString option = nearest(unknown.first(), optionsOf(parser));
    return {QStringLiteral("unknown option '%1'").arg(unknown.first()),
            option.isEmpty() ? option : QStringLiteral("--") + option};
}

QString Usage::nearest(const QString &word, const QStringList &known)
{
    // Skip long words, because comparing them takes too much time and memory.
    constexpr int longest = 64;
    QString found;
    int least = std::max(2, word.size() / 3 + 1);
    for (const QString &candidate : known) {
        if (word.size() > longest || candidate.size() > longest)
            continue;
        const bool continues = word.size() > 1 && candidate.startsWith(word);
        const int letters = continues ? 1 : distance(word.toLower(), candidate.toLower());
        if (letters < least && letters < candidate.size()) {
            least = letters;
            found = candidate;
        }
    }
    return found;
}
