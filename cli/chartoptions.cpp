#include "cli/chartoptions.h"

#include "ontology/ontology.h"
#include "viewer/charttree.h"
#include "viewer/colourmap.h"
#include "viewer/palette.h"
#include "viewer/settings.h"

#include <QCommandLineParser>

#include <cmath>

namespace Sorvik {
namespace Cli {

namespace {

const QString levelsOption = QStringLiteral("max-levels");
const QString percentOption = QStringLiteral("min-percent");
const QString noCollapseOption = QStringLiteral("no-collapse");
const QString paletteOption = QStringLiteral("palette");
const QString coloursFromOption = QStringLiteral("colours-from");
const QString rawNamesOption = QStringLiteral("raw-names");

// The viewer's limits when a chart is first shown.
const int defaultLevels = App::Settings::firstViewMaxLevels;
const QString defaultPercent = QString::number(App::Settings::firstViewMinPercentage);

} // namespace

void ChartOptions::setUp(QCommandLineParser& parser)
{
    parser.addOption({levelsOption,
                      QStringLiteral("The number of rings, the centre included (default %1).").arg(defaultLevels),
                      QStringLiteral("N")});
    parser.addOption({percentOption,
                      QStringLiteral("The smallest share of the total a slice must hold, in percent (default %1).")
                          .arg(defaultPercent),
                      QStringLiteral("P")});
    parser.addOption(
        {noCollapseOption, QStringLiteral("Draw every node of a single-child chain on a ring of its own.")});
    parser.addOption({paletteOption,
                      QStringLiteral("The colours: %1 (default %2).")
                          .arg(Viewer::Palette::names().join(QStringLiteral(", ")), Viewer::Palette().getName()),
                      QStringLiteral("NAME")});
    parser.addOption({coloursFromOption,
                      QStringLiteral("Give the taxa this chart shares with OTHER the colours they have there."),
                      QStringLiteral("OTHER")});
    parser.addOption({rawNamesOption, QStringLiteral("Show names as stored, rank prefixes and all.")});
}

QString ChartOptions::parse(const QCommandLineParser& parser)
{
    bool ok = true;
    levels = parser.isSet(levelsOption) ? parser.value(levelsOption).toInt(&ok) : defaultLevels;
    if (!ok || levels < 1)
        return QStringLiteral("--max-levels needs a whole number of at least 1");
    percent = (parser.isSet(percentOption) ? parser.value(percentOption) : defaultPercent).toDouble(&ok);
    if (!ok || !std::isfinite(percent) || percent < 0 || percent > 100)
        return QStringLiteral("--min-percent needs a number from 0 to 100");
    collapse = !parser.isSet(noCollapseOption);
    rawNames = parser.isSet(rawNamesOption);
    paletteName = parser.value(paletteOption);
    if (!paletteName.isEmpty() && !Viewer::Palette::names().contains(paletteName))
        return QStringLiteral("--palette must be one of %1").arg(Viewer::Palette::names().join(QStringLiteral(", ")));
    coloursFrom = parser.value(coloursFromOption);
    return QString();
}

std::shared_ptr<const Viewer::ChartTree> ChartOptions::readTree(const QString& fileName, QString& problem)
{
    const Zem::Ontology::Ontology ontology(fileName);
    if (ontology.getNodeNumber() < 1) {
        problem = QStringLiteral("the chart has no nodes");
        return nullptr;
    }
    if (!ontology.isCounted()) {
        problem = QStringLiteral("the chart is not counted");
        return nullptr;
    }
    return std::make_shared<const Viewer::ChartTree>(Viewer::ChartTree::read(ontology));
}

bool ChartOptions::read(const QString& chartFile, QString& problem)
{
    const Viewer::Palette palette = paletteName.isEmpty() ? Viewer::Palette() : Viewer::Palette::byName(paletteName);
    // The colours of the taxa shared with the other chart, by their keys.
    QHash<QString, QColor> given;
    if (!coloursFrom.isEmpty()) {
        try {
            const auto other = readTree(coloursFrom, problem);
            if (!other) {
                problem = coloursFrom + QLatin1String(": ") + problem;
                return false;
            }
            given = Viewer::ColourMap::assign(*other, palette).byKey(*other);
        } catch (const std::exception& e) {
            problem = coloursFrom + QLatin1String(": ") + QString::fromUtf8(e.what());
            return false;
        }
    }
    try {
        tree = readTree(chartFile, problem);
    } catch (const std::exception& e) {
        problem = chartFile + QLatin1String(": ") + QString::fromUtf8(e.what());
        return false;
    }
    if (!tree) {
        problem = chartFile + QLatin1String(": ") + problem;
        return false;
    }
    colours = std::make_shared<const Viewer::ColourMap>(Viewer::ColourMap::assign(*tree, palette, given));
    return true;
}

} // namespace Cli
} // namespace Sorvik
