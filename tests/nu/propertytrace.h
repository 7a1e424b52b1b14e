#pragma once

#include "nu/edit/propertyset.h"

#include <QStringList>

namespace Sorvik {
namespace Test {

// A property tree as text: "<g" where a set starts, ">" where one ends, the name of every basic
// property.
inline QString tracePropertyTree(const nu::edit::PropertySet& set)
{
    QStringList steps;
    for (auto it = set.getProperties(); !it.atEnd(); ++it) {
        if (it.atSetStart())
            steps << QLatin1Char('<') + it->getName();
        else if (it.atSetEnd())
            steps << QStringLiteral(">");
        else
            steps << it->getName();
    }
    return steps.join(QLatin1Char(' '));
}

} // namespace Test
} // namespace Sorvik
