#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;

namespace Sorvik {
namespace Viewer {

// The application preferences: the data folder where working charts and the NCBI taxonomy
// cache are kept, and the cache's age with a button to update it. Accepting creates the folder
// when it is missing.
class AppPreferencesDialog : public QDialog
{
    Q_OBJECT
public:
    explicit AppPreferencesDialog(const QString& path, QWidget* parent = nullptr);

    QString getPath() const;
    void setPath(const QString& path);
    // The taxonomy cache in the folder the dialog shows.
    QString getTaxonomyFile() const;
    // What the dialog says of the cache: when it was made and from what, or that there is none.
    QString getTaxonomyText() const;

signals:
    // "Update taxonomy now" was pressed: the window updates getTaxonomyFile().
    void signalUpdateTaxonomy();

public slots:
    void accept() override;
    // Reads the cache's date and origin again (after an update, or another folder).
    void slotRefreshTaxonomy();

private slots:
    void slotChooseFolder();

private:
    QWidget* createTaxonomyGroup();

    QLineEdit* pathEdit = nullptr;
    QLabel* taxonomyLabel = nullptr;
};

} // namespace Viewer
} // namespace Sorvik
