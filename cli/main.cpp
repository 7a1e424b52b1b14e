#include "cli/commandline.h"
#include "resources/resources.h"

#include <QApplication>
#include <QTextStream>

#include <cstdio>
#include <memory>

namespace {

QtMessageHandler qtHandler = nullptr;

// A drawing application on a machine without a desktop session warns that it has no runtime
// folder; Qt copes with that, and scripts reading stderr should not see it.
void quietHandler(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (type == QtWarningMsg && message.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set")))
        return;
    qtHandler(type, context, message);
}

} // namespace

int main(int argc, char* argv[])
{
    QTextStream out(stdout);
    QTextStream err(stderr);
    Sorvik::Cli::CommandLine commandLine(out, err);
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);

    // Only drawing needs a GUI application; it never opens a window.
    std::unique_ptr<QCoreApplication> app;
    if (commandLine.needsGui(arguments)) {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        qtHandler = qInstallMessageHandler(quietHandler);
        app = std::make_unique<QApplication>(argc, argv);
    } else {
        app = std::make_unique<QCoreApplication>(argc, argv);
    }
    // The viewer's name, so that both find the same application data folder.
    QCoreApplication::setApplicationName(QStringLiteral("sorvik"));
    Sorvik::initResources();
    return commandLine.run(arguments);
}
