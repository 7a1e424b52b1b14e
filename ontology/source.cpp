#include "ontology/source.h"

#include <QFile>
#include <QTextStream>

namespace Zem {
namespace Ontology {

Source::~Source() = default;

bool Source::openText(QFile& file, QTextStream& stream)
{
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    stream.setDevice(&file);
    stream.setCodec("UTF-8");
    return true;
}

} // namespace Ontology
} // namespace Zem
