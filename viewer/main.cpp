#include "resources/resources.h"
#include "viewer/mainwindow.h"

#include <QApplication>
#include <QCommandLineParser>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("sorvik"));
    QApplication::setApplicationDisplayName(QStringLiteral("Sorvik"));
    QApplication::setApplicationVersion(QStringLiteral(SORVIK_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("sorvik"));
    Sorvik::initResources();

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Multi-ring pie charts of taxonomic classifications."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("FILE"),
                                 QStringLiteral("A chart saved by Sorvik, opened at start, or an input file to make a "
                                                "new chart from."),
                                 QStringLiteral("[FILE]"));
    parser.process(app);
    const QStringList charts = parser.positionalArguments();
    if (charts.size() > 1)
        parser.showHelp(2);

    int result = 0;
    {
        Sorvik::Viewer::MainWindow window;
        window.show();
        if (!charts.isEmpty())
            window.openChartOrInput(charts.first());
        result = app.exec();
    }
    return result;
}
