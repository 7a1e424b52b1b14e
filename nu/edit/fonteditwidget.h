#pragma once

#include <QFont>
#include <QWidget>

#include <memory>

namespace nu {
namespace edit {

namespace Ui {
class FontEditWidget;
}

// The sheet's font editor: a family chooser and a button that opens a font dialog. The widget
// keeps the whole font itself; choosing a family in the box changes only the family, so size and
// style survive, and a family the system lacks is not replaced by the box's fallback.
class FontEditWidget : public QWidget
{
    Q_OBJECT
public:
    explicit FontEditWidget(QWidget* parent = nullptr);
    ~FontEditWidget() override;

    QFont getFont() const { return font; }
    // Also emits editingFinished().
    void setFont(const QFont& font);

signals:
    void editingFinished();

public slots:
    // Connected by name when the form is set up. A cancelled dialog re-applies the current font.
    void on_editButton_clicked();

private:
    void slotFamilyChosen(const QFont& chosen);

    std::unique_ptr<Ui::FontEditWidget> ui;
    QFont font;
};

} // namespace edit
} // namespace nu
