#include "viewer/buildreportdialog.h"

#include "ontology/buildreport.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace Sorvik {
namespace Viewer {

BuildReportDialog::BuildReportDialog(const Zem::Ontology::BuildReport& report, QWidget* parent)
    : QDialog(parent)
    , text(report.getSummary().join(QLatin1Char('\n')))
{
    setWindowTitle(tr("Pie chart built"));
    auto* layout = new QVBoxLayout(this);
    auto* summary = new QLabel(text, this);
    summary->setObjectName(QStringLiteral("summary"));
    summary->setWordWrap(true);
    summary->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(summary);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    if (!report.unknownIds.empty()) {
        layout->addWidget(new QLabel(tr("The unknown taxon ids, counted in the slice \"Unknown taxon ids\":"), this));
        ids = new QPlainTextEdit(report.getUnknownIdList(), this);
        ids->setObjectName(QStringLiteral("unknownIds"));
        ids->setReadOnly(true);
        ids->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        ids->setLineWrapMode(QPlainTextEdit::NoWrap);
        layout->addWidget(ids, 1);
        QPushButton* copy = buttons->addButton(tr("Copy ids"), QDialogButtonBox::ActionRole);
        copy->setObjectName(QStringLiteral("copyIds"));
        connect(copy, &QPushButton::clicked, this, &BuildReportDialog::slotCopyIds);
    }
    layout->addWidget(buttons);
    setMinimumWidth(520);
}

QString BuildReportDialog::getIdList() const
{
    return ids ? ids->toPlainText() : QString();
}

void BuildReportDialog::slotCopyIds()
{
    // The ids alone, one a line, ready for a search or a spreadsheet.
    QStringList lines;
    for (const QString& line : getIdList().split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        lines << line.section(QLatin1Char('\t'), 0, 0);
    QApplication::clipboard()->setText(lines.join(QLatin1Char('\n')) + QLatin1Char('\n'));
}

} // namespace Viewer
} // namespace Sorvik
