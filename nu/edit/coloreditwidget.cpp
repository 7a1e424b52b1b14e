#include "nu/edit/coloreditwidget.h"

#include "ui_coloreditwidget.h"

#include <QColorDialog>

namespace nu {
namespace edit {

ColorEditWidget::ColorEditWidget(QWidget* parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::ColorEditWidget>())
{
    ui->setupUi(this);
}

ColorEditWidget::~ColorEditWidget() = default;

void ColorEditWidget::setColor(const QColor& color)
{
    this->color = color;
    ui->colorViewFrame->setStyleSheet(QStringLiteral("background-color: rgb(%1,%2,%3)")
                                          .arg(color.red())
                                          .arg(color.green())
                                          .arg(color.blue()));
    emit editingFinished();
}

void ColorEditWidget::on_editButton_clicked()
{
    const QColor chosen = QColorDialog::getColor(color, this, tr("Select color"),
                                                 QColorDialog::DontUseNativeDialog | QColorDialog::ShowAlphaChannel);
    if (chosen.isValid())
        setColor(chosen);
}

} // namespace edit
} // namespace nu
