#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QVector>

class QTextStream;

namespace nu {
class AsyncTask;
}

namespace Zem {
namespace Ontology {
class BuilderSource;
}
} // namespace Zem

namespace Sorvik {
namespace Cli {

// A one-line progress display on a terminal: the overall step and the current step's share, as
// the build task reports them in levels (level 0 overall, level 1 the current step). Redrawn at
// most ten times a second; a disabled bar prints nothing.
class ProgressBar
{
public:
    struct Level
    {
        int value = 0;
        int maximum = 0;
        QString message;
    };

    ProgressBar(QTextStream& stream, bool enabled);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    bool isEnabled() const { return enabled; }

    // Follows a task's progress signals.
    void follow(nu::AsyncTask& task);
    // Follows a builder run on this thread, counted in steps: each source, counting, inserting.
    void follow(Zem::Ontology::BuilderSource& builder, const QString& title, int steps);

    void update(int level, int value, int maximum, const QString& message);
    // Clears the line.
    void finish();

    // The text of the line for the levels, at most width characters.
    static QString render(const QVector<Level>& levels, int width);

private:
    void draw(bool force);
    static int terminalWidth();

    QTextStream& stream;
    bool enabled;
    bool drawn = false;
    QVector<Level> levels;
    QElapsedTimer lastDraw;
    int step = 0;
    int positionShift = 0;
};

} // namespace Cli
} // namespace Sorvik
