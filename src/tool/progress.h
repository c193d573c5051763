#pragma once

#include <QElapsedTimer>
#include <QString>

/**
 * A bar on standard error, for work that takes longer than a second; none where standard error is
 * no terminal. Erased by the destructor; nothing may be printed while it lives.
 */
class Progress
{
public:
    /// `what` is counted, "schemas" for example; with a `total` of 0 there is no bar.
    Progress(const QString &what, int total);
    ~Progress();
    Q_DISABLE_COPY(Progress)

    /// One more is done; cheap enough for every row.
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
