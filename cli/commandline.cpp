#include "cli/commandline.h"

#include "cli/buildcommand.h"
#include "cli/command.h"
#include "cli/htmlcommand.h"
#include "cli/importtaxonomycommand.h"
#include "cli/infocommand.h"
#include "cli/mergecommand.h"
#include "cli/rendercommand.h"
#include "cli/tablecommand.h"
#include "cli/updatetaxonomycommand.h"

#include <QTextStream>

namespace Sorvik {
namespace Cli {

CommandLine::CommandLine(QTextStream& o, QTextStream& e)
    : out(o)
    , err(e)
{
    commands.push_back(std::make_unique<InfoCommand>(out, err));
    commands.push_back(std::make_unique<ImportTaxonomyCommand>(out, err));
    commands.push_back(std::make_unique<UpdateTaxonomyCommand>(out, err));
    commands.push_back(std::make_unique<BuildCommand>(out, err));
    commands.push_back(std::make_unique<MergeCommand>(out, err));
    commands.push_back(std::make_unique<RenderCommand>(out, err));
    commands.push_back(std::make_unique<TableCommand>(out, err));
    commands.push_back(std::make_unique<HtmlCommand>(out, err));
}

CommandLine::~CommandLine() = default;

void CommandLine::printUsage(QTextStream& stream) const
{
    stream << "Usage: sorvik-cli COMMAND [options] [arguments]\n\n"
              "Builds, inspects, renders and exports Sorvik pie charts from the command line.\n\n"
              "Commands:\n";
    for (const auto& command : commands)
        stream << "  " << command->getName().leftJustified(18) << command->getSummary() << '\n';
    stream << "\nRun 'sorvik-cli COMMAND --help' for the options of a command.\n";
    stream.flush();
}

bool CommandLine::needsGui(const QStringList& arguments) const
{
    for (const auto& command : commands) {
        if (!arguments.isEmpty() && command->getName() == arguments.first())
            return command->needsGui();
    }
    return false;
}

int CommandLine::run(const QStringList& arguments)
{
    if (arguments.isEmpty()) {
        printUsage(err);
        return Command::UsageError;
    }
    const QString& name = arguments.first();
    if (name == QLatin1String("--help") || name == QLatin1String("-h") || name == QLatin1String("help")) {
        printUsage(out);
        return Command::Success;
    }
    for (const auto& command : commands) {
        if (command->getName() == name)
            return command->run(arguments);
    }
    err << "sorvik-cli: unknown command '" << name << "'\n\n";
    printUsage(err);
    return Command::UsageError;
}

} // namespace Cli
} // namespace Sorvik
