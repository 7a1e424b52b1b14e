#include "nu/edit/fonteditwidget.h"

#include "ui_fonteditwidget.h"

#include <QFontDialog>
#include <QSignalBlocker>

namespace nu {
namespace edit {

FontEditWidget::FontEditWidget(QWidget* parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::FontEditWidget>())
{
    ui->setupUi(this);
    connect(ui->fontComboBox, &QFontComboBox::currentFontChanged, this, &FontEditWidget::slotFamilyChosen);
}

FontEditWidget::~FontEditWidget() = default;

void FontEditWidget::setFont(const QFont& font)
{
    this->font = font;
    {
        const QSignalBlocker blocker(ui->fontComboBox);
        ui->fontComboBox->setCurrentFont(font);
    }
    emit editingFinished();
}

void FontEditWidget::on_editButton_clicked()
{
    setFont(QFontDialog::getFont(nullptr, font, this, tr("Select font"), QFontDialog::DontUseNativeDialog));
}

void FontEditWidget::slotFamilyChosen(const QFont& chosen)
{
    font.setFamily(chosen.family());
    emit editingFinished();
}

} // namespace edit
} // namespace nu
