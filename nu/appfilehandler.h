#pragma once

#include <QString>

namespace nu {

// The state of the document a main window shows: whether one is open, whether it has unsaved
// changes, and its file name.
class AppFileHandler
{
public:
    void setClosed();
    void setNew();
    void setOpened(const QString& fileName);
    void setSaved();
    void setSaved(const QString& fileName);
    void setModified();

    bool isOpened() const { return opened; }
    bool isSaved() const { return saved; }
    QString getFileName() const { return fileName; }
    bool shouldSave() const { return opened && !saved; }
    bool shouldSaveAs() const { return shouldSave() && fileName.isEmpty(); }

private:
    bool opened = false;
    bool saved = true;
    QString fileName;
};

} // namespace nu
