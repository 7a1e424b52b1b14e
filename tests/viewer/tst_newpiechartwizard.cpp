#include "viewer/newpiechartwizard.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QtTest>

using Sorvik::Viewer::NewPiechartWizard;

namespace {

void check(QWizard& wizard, const QString& text)
{
    for (QRadioButton* button : wizard.findChildren<QRadioButton*>()) {
        if (button->text() == text)
            return button->setChecked(true);
    }
    QFAIL(qPrintable(QStringLiteral("no choice ") + text));
}

QLineEdit* fileEdit(QWizard& wizard, int page)
{
    return wizard.page(page)->findChild<QLineEdit*>(QStringLiteral("fileNameLineEdit"));
}

// A QIIME table written to a file, "<missing>" for none.
QString qiimeTable(const QTemporaryDir& dir, const QByteArray& content)
{
    const QString name = dir.filePath(QStringLiteral("table.txt"));
    QFile file(name);
    if (content != "<missing>" && file.open(QIODevice::WriteOnly))
        file.write(content);
    return name;
}

} // namespace

class TestNewPiechartWizard : public QObject
{
    Q_OBJECT
private slots:
    void qiimePagesFollowTheTable_data()
    {
        QTest::addColumn<QByteArray>("table");
        QTest::addColumn<QList<int>>("pages");
        QTest::addColumn<QStringList>("columns");
        const QByteArray table("# Constructed from biom file\n#OTU ID\tS1\tS2\nk__Bacteria\t0.5\t0.25\n");
        QTest::newRow("qiime") << table << QList<int>{0, 4, 5} << QStringList{"S1", "S2"};
        // A table without sample columns keeps the user on the file page.
        QTest::newRow("qiime without samples") << QByteArray("Taxon\nk__A\n") << QList<int>{0, 4}
                                               << QStringList();
        QTest::newRow("qiime file missing") << QByteArray("<missing>") << QList<int>{0, 4} << QStringList();
    }

    void qiimePagesFollowTheTable()
    {
        QFETCH(QByteArray, table);
        QFETCH(QList<int>, pages);
        QFETCH(QStringList, columns);
        QTemporaryDir dir;
        NewPiechartWizard wizard;
        wizard.restart();
        // Nothing chosen yet: the first page holds.
        QVERIFY(!wizard.button(QWizard::NextButton)->isEnabled());
        check(wizard, QStringLiteral("QIIME file"));
        QVERIFY(wizard.button(QWizard::NextButton)->isEnabled());
        fileEdit(wizard, NewPiechartWizard::QiimeFile)->setText(qiimeTable(dir, table));
        QList<int> visited{wizard.currentId()};
        while (wizard.currentPage()->nextId() != -1 && visited.size() < 5) {
            wizard.next();
            if (wizard.currentId() == visited.last())
                break;
            visited << wizard.currentId();
        }
        QCOMPARE(visited, pages);
        QVERIFY(!wizard.requiresNcbiTaxonomy());
        if (columns.isEmpty())
            return;
        auto* combo = wizard.currentPage()->findChild<QComboBox*>();
        QStringList offered;
        for (int i = 0; i < combo->count(); ++i)
            offered << combo->itemText(i);
        QCOMPARE(offered, columns);
        combo->setCurrentIndex(1);
        QCOMPARE(wizard.field(QStringLiteral("qiime-source-column")).toInt(), 1);
    }

};

QTEST_MAIN(TestNewPiechartWizard)
#include "tst_newpiechartwizard.moc"
