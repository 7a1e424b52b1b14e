#pragma once

#include <QDialog>

class QLineEdit;

namespace Sorvik {
namespace Viewer {

// The application preferences: the data folder where working charts and the NCBI taxonomy
// cache are kept. Accepting creates the folder when it is missing.
class AppPreferencesDialog : public QDialog
{
    Q_OBJECT
public:
    explicit AppPreferencesDialog(const QString& path, QWidget* parent = nullptr);

    QString getPath() const;
    void setPath(const QString& path);

public slots:
    void accept() override;

private slots:
    void slotChooseFolder();

private:
    QLineEdit* pathEdit = nullptr;
};

} // namespace Viewer
} // namespace Sorvik
