#pragma once

#include <QString>

namespace Sorvik {
namespace Test {

// A file of the project's own test data (tests/data/...).
QString fixturePath(const QString& name);

// A folder of the real public inputs beside the checkout (../shared/data/real/...), or an empty
// string when the checkout has none.
QString realDataPath(const QString& name = QString());

} // namespace Test
} // namespace Sorvik
