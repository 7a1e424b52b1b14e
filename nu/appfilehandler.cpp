#include "nu/appfilehandler.h"

namespace nu {

void AppFileHandler::setClosed()
{
    saved = true;
    opened = false;
    fileName.clear();
}

void AppFileHandler::setNew()
{
    fileName.clear();
    opened = true;
    setModified();
}

void AppFileHandler::setOpened(const QString& name)
{
    fileName = name;
    opened = true;
    setSaved();
}

void AppFileHandler::setSaved()
{
    saved = true;
}

void AppFileHandler::setSaved(const QString& name)
{
    setOpened(name);
}

void AppFileHandler::setModified()
{
    saved = false;
}

} // namespace nu
