#include "cli/progressbar.h"

#include "nu/asynctask.h"
#include "ontology/buildersource.h"

#include <QFileInfo>
#include <QTextStream>

#include <climits>
#include <sys/ioctl.h>
#include <unistd.h>

namespace Sorvik {
namespace Cli {

namespace {

constexpr int barWidth = 20;
constexpr int redrawInterval = 100; // milliseconds

double fraction(const ProgressBar::Level& level)
{
    if (level.maximum <= 0)
        return 0.0;
    return qBound(0.0, double(level.value) / level.maximum, 1.0);
}

} // namespace

ProgressBar::ProgressBar(QTextStream& textStream, bool on)
    : stream(textStream)
    , enabled(on)
{
}

ProgressBar::~ProgressBar()
{
    finish();
}

void ProgressBar::follow(nu::AsyncTask& task)
{
    QObject::connect(&task, &nu::AsyncTask::progressChanged, &task,
                     [this](int level, int value, int maximum, const QString& message) {
                         update(level, value, maximum, message);
                     });
}

void ProgressBar::follow(Zem::Ontology::BuilderSource& builder, const QString& title, int steps)
{
    using Zem::Ontology::BuilderSource;
    step = 0;
    update(0, 0, steps, title);
    auto advance = [this, title, steps](const QString& message, int maximum) {
        update(0, step++, steps, title);
        update(1, 0, maximum, message);
    };
    QObject::connect(&builder, &BuilderSource::signalSourceReadingStart, &builder,
                     [advance](int, const QString& description) {
                         advance(QStringLiteral("Reading file ") + QFileInfo(description).fileName(), 0);
                     });
    QObject::connect(&builder, &BuilderSource::signalSourceTotalSize, &builder, [this](qint64 total) {
        positionShift = 0;
        while ((total >> positionShift) > INT_MAX)
            ++positionShift;
        if (!levels.isEmpty())
            update(1, 0, static_cast<int>(total >> positionShift), levels.size() > 1 ? levels[1].message : QString());
    });
    auto position = [this](qint64 value) {
        if (levels.size() > 1)
            update(1, static_cast<int>(value >> positionShift), levels[1].maximum, levels[1].message);
    };
    QObject::connect(&builder, &BuilderSource::signalSourceCurrentPos, &builder, position);
    QObject::connect(&builder, &BuilderSource::signalCountingStart, &builder,
                     [advance](int total) { advance(QStringLiteral("Counting nodes..."), total); });
    QObject::connect(&builder, &BuilderSource::signalBuildingStart, &builder,
                     [advance](int total) { advance(QStringLiteral("Inserting nodes..."), total); });
    QObject::connect(&builder, &BuilderSource::signalNodesCounted, &builder, position);
    QObject::connect(&builder, &BuilderSource::signalNodesInserted, &builder, position);
}

void ProgressBar::update(int level, int value, int maximum, const QString& message)
{
    if (level < 0)
        return;
    // As in the task: news of a level drops the levels below it.
    const bool newMessage = level >= levels.size() || levels[level].message != message;
    levels.resize(level + 1);
    levels[level] = {value, maximum, message};
    draw(newMessage);
}

void ProgressBar::draw(bool force)
{
    if (!enabled)
        return;
    if (!force && lastDraw.isValid() && lastDraw.elapsed() < redrawInterval)
        return;
    lastDraw.start();
    stream << '\r' << render(levels, terminalWidth() - 1) << "\x1b[K";
    stream.flush();
    drawn = true;
}

void ProgressBar::finish()
{
    if (enabled && drawn) {
        stream << "\r\x1b[K";
        stream.flush();
    }
    drawn = false;
}

QString ProgressBar::render(const QVector<Level>& levels, int width)
{
    if (levels.isEmpty() || width <= 0)
        return QString();
    const Level& overall = levels.first();
    // The overall bar moves on inside its step as the step itself advances.
    double done = fraction(overall);
    if (levels.size() > 1 && overall.maximum > 0)
        done = qBound(0.0, done + fraction(levels[1]) / overall.maximum, 1.0);
    const int filled = static_cast<int>(done * barWidth);
    QString line = QLatin1Char('[') + QString(filled, QLatin1Char('#')) + QString(barWidth - filled, QLatin1Char('-'))
        + QStringLiteral("] %1% ").arg(static_cast<int>(done * 100), 3) + overall.message;
    if (levels.size() > 1 && !levels[1].message.isEmpty()) {
        line += QStringLiteral(" | ") + levels[1].message;
        if (levels[1].maximum > 0)
            line += QStringLiteral(" %1%").arg(static_cast<int>(fraction(levels[1]) * 100));
    }
    if (line.size() > width)
        line = line.left(qMax(0, width - 3)) + QStringLiteral("...");
    return line.left(width);
}

int ProgressBar::terminalWidth()
{
    winsize size{};
    if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 10)
        return size.ws_col;
    return 80;
}

} // namespace Cli
} // namespace Sorvik
