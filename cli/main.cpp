#include "cli/commandline.h"
#include "resources/resources.h"

#include <QApplication>
#include <QTextStream>

#include <cstdio>

int main(int argc, char* argv[])
{
    // The command line never opens a window; drawing charts still needs a GUI application.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    Sorvik::initResources();
    QTextStream out(stdout);
    QTextStream err(stderr);
    Sorvik::Cli::CommandLine commandLine(out, err);
    return commandLine.run(app.arguments().mid(1));
}
