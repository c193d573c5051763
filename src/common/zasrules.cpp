#include "common/zasrules.h"

#include <QCoreApplication>
#include <QRandomGenerator>
#include <QRegExp>

#include <algorithm>
#include <array>

namespace
{

constexpr std::array<int, 6> roundingSteps{0, 60, 300, 900, 1800, 3600};
constexpr std::array<const char *, roundingSteps.size()> roundingLabels{
    QT_TRANSLATE_NOOP("ZAS", "bez zaokrúhľovania"),
    QT_TRANSLATE_NOOP("ZAS", "minúta"),
    QT_TRANSLATE_NOOP("ZAS", "5 minút"),
    QT_TRANSLATE_NOOP("ZAS", "15 minút"),
    QT_TRANSLATE_NOOP("ZAS", "30 minút"),
    QT_TRANSLATE_NOOP("ZAS", "hodina")};
constexpr std::array<unsigned short, 4> dayIssueSteps{0, 60, 300, 900};

/// Returns the index of `value` in `steps`, or 0 if `steps` does not contain it.
template <class Steps>
int indexOf(const Steps &steps, int value)
{
    const auto found = std::find(steps.begin(), steps.end(), value);
    return found == steps.end() ? 0 : static_cast<int>(found - steps.begin());
}

} // namespace

bool ZAS::thinZAS = false;

QString ZAS::getProgramName()
{
    return thinZAS ? QStringLiteral("T-ZAS") : QStringLiteral("ZAS");
}

int ZAS::roundIndexToVal(int index)
{
    return index >= 0 && index < static_cast<int>(roundingSteps.size())
               ? roundingSteps.at(static_cast<std::size_t>(index))
               : 0;
}

int ZAS::roundValToIndex(int seconds)
{
    return indexOf(roundingSteps, seconds);
}

QString ZAS::roundValToString(int seconds)
{
    return QCoreApplication::translate(
        "ZAS", roundingLabels.at(static_cast<std::size_t>(roundValToIndex(seconds))));
}

int ZAS::dayIssuesIndexFromInterval(unsigned short seconds)
{
    return indexOf(dayIssueSteps, std::min(seconds, dayIssueSteps.back()));
}

unsigned short ZAS::dayIssuesIntervalFromIndex(int index)
{
    return index >= 0 && index < static_cast<int>(dayIssueSteps.size())
               ? dayIssueSteps.at(static_cast<std::size_t>(index))
               : static_cast<unsigned short>(0);
}

bool ZAS::validEmail(const QString &address)
{
    const QRegExp shape(QStringLiteral("\\b[A-Z0-9._%+-]+@[A-Z0-9.-]+\\.[A-Z]{2,15}\\b"),
                        Qt::CaseInsensitive);
    return shape.exactMatch(address);
}

bool ZAS::checkDuplicateEntry(const QString &errorText)
{
    return errorText.contains(QLatin1String("Duplicate entry"));
}

QString ZAS::getRandomString(int length, const QString &alphabet)
{
    QString text;
    if (alphabet.isEmpty())
        return text;
    for (int i = 0; i < length; ++i)
        text.append(alphabet.at(QRandomGenerator::global()->bounded(alphabet.size())));
    return text;
}

QString ZAS::shiftKeyFromNum(int shift, unsigned char dayOfMonth, unsigned char order)
{
    return QStringLiteral("%1-%2-%3")
        .arg(QString::number(shift), QString::number(dayOfMonth), QString::number(order));
}

QString ZAS::makeShiftString(unsigned char shift, unsigned char variant, bool changed, bool planned)
{
    QString text = QString::number(shift);
    if (variant != 0)
        text += QLatin1Char('/') + QString::number(variant);
    if (changed)
        text += QLatin1Char('*');
    return planned ? QLatin1Char('(') + text + QLatin1Char(')') : text;
}

QString ZAS::firstInterruption(const QString &interruptions)
{
    const int end = interruptions.indexOf(QLatin1Char(']'));
    return interruptions.startsWith(QLatin1Char('[')) && end > 0 ? interruptions.mid(1, end - 1)
                                                                 : QString();
}

QString ZAS::shortcutFromInters(const QString &interruptions)
{
    // A shortcut may contain blanks; the amount after the shortcut contains none.
    return firstInterruption(interruptions).section(QLatin1Char(' '), 0, -2);
}
