#pragma once

#include <QElapsedTimer>
#include <QString>

/**
 * A progress bar for work that takes longer than a second. The bar is drawn on standard error, but
 * only if that is a terminal. Print nothing until the destructor has erased the bar.
 */
class Progress
{
public:
    /// `counted` names what is counted, for example "schemas". `ofAll` is the total; if it is 0, no
    /// bar is shown.
    Progress(const QString &counted, int ofAll);
    ~Progress();
    Q_DISABLE_COPY(Progress)

    /// Counts one more item as done. Cheap enough to be called for every row of a workbook.
    void step();

private:
    void draw() const;

    QString what;
    int total;
    int done = 0;
    bool possible;
    bool shown = false;
    QElapsedTimer sinceStart;
    QElapsedTimer sinceDrawn;
};
