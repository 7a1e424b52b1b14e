#include "cli/command.h"

#include <QTextStream>

namespace Sorvik {
namespace Cli {

Command::Command(QTextStream& o, QTextStream& e)
    : out(o)
    , err(e)
{
}

Command::~Command() = default;

int Command::run(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(getSummary());
    const QCommandLineOption help(QStringList{QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Shows this help."));
    parser.addOption(help);
    setUp(parser);
    helpText = parser.helpText();
    helpText.replace(QLatin1String("[options]"), getName() + QLatin1String(" [options]"));

    if (!parser.parse(QStringList{QStringLiteral("sorvik-cli")} + arguments.mid(1)))
        return usage(parser.errorText());
    if (parser.isSet(help)) {
        out << helpText;
        out.flush();
        return Success;
    }
    return execute(parser);
}

int Command::usage(const QString& message)
{
    err << "sorvik-cli " << getName() << ": " << message << "\n\n" << helpText;
    err.flush();
    return UsageError;
}

int Command::interrupted()
{
    err << "sorvik-cli " << getName() << ": interrupted\n";
    err.flush();
    return Interrupted;
}

int Command::fail(const QString& message)
{
    err << "sorvik-cli " << getName() << ": " << message << '\n';
    err.flush();
    return Failure;
}

} // namespace Cli
} // namespace Sorvik
