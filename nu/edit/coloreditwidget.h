#pragma once

#include <QColor>
#include <QWidget>

#include <memory>

namespace nu {
namespace edit {

namespace Ui {
class ColorEditWidget;
}

// The sheet's colour editor: a swatch of the colour and a button that opens a colour dialog,
// in which the alpha can be changed too. The swatch shows red, green and blue only.
class ColorEditWidget : public QWidget
{
    Q_OBJECT
public:
    explicit ColorEditWidget(QWidget* parent = nullptr);
    ~ColorEditWidget() override;

    QColor getColor() const { return color; }
    // Also emits editingFinished().
    void setColor(const QColor& color);

signals:
    void editingFinished();

public slots:
    // Connected by name when the form is set up.
    void on_editButton_clicked();

private:
    std::unique_ptr<Ui::ColorEditWidget> ui;
    QColor color;
};

} // namespace edit
} // namespace nu
