#include "viewer/newpiechartwizard.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QtTest>

using Sorvik::Viewer::NewPiechartWizard;

namespace {

QRadioButton* radio(QWizard& wizard, const QString& text)
{
    for (QRadioButton* button : wizard.findChildren<QRadioButton*>()) {
        if (button->text() == text)
            return button;
    }
    return nullptr;
}

QLineEdit* fileEdit(QWizard& wizard, int page)
{
    return wizard.page(page)->findChild<QLineEdit*>(QStringLiteral("fileNameLineEdit"));
}

} // namespace

class TestNewPiechartWizard : public QObject
{
    Q_OBJECT
private slots:
    void pageOrderFollowsTheInputType_data();
    void pageOrderFollowsTheInputType();
    void nothingCheckedStaysOnTheFirstPage();
    void qiimeColumnsComeFromTheHeader_data();
    void qiimeColumnsComeFromTheHeader();
    void fieldsCarryTheAnswers();
};

void TestNewPiechartWizard::pageOrderFollowsTheInputType_data()
{
    QTest::addColumn<QString>("choice");
    QTest::addColumn<QList<int>>("pages");
    QTest::addColumn<bool>("ncbi");
    QTest::newRow("taxon ids") << "Plain text with NCBI-taxon-ids per lines" << QList<int>{0, 1} << true;
    QTest::newRow("krona") << "Krona file" << QList<int>{0, 3} << false;
    QTest::newRow("qiime") << "QIIME file" << QList<int>{0, 4, 5} << false;
    QTest::newRow("mgtaxa") << "MgTaxa file" << QList<int>{0, 2} << true;
}

void TestNewPiechartWizard::pageOrderFollowsTheInputType()
{
    QFETCH(QString, choice);
    QFETCH(QList<int>, pages);
    QFETCH(bool, ncbi);
    QTemporaryDir dir;
    const QString qiime = dir.filePath(QStringLiteral("table.txt"));
    QFile file(qiime);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("Taxon\tS1\tS2\nk__Bacteria\t0.5\t0.25\n");
    file.close();

    NewPiechartWizard wizard;
    wizard.restart();
    QRadioButton* button = radio(wizard, choice);
    QVERIFY(button);
    button->setChecked(true);
    fileEdit(wizard, NewPiechartWizard::QiimeFile)->setText(qiime);
    QList<int> visited{wizard.currentId()};
    for (int i = 0; i < 5 && wizard.currentPage()->nextId() != -1; ++i) {
        wizard.next();
        visited << wizard.currentId();
    }
    QCOMPARE(visited, pages);
    QCOMPARE(wizard.requiresNcbiTaxonomy(), ncbi);
}

void TestNewPiechartWizard::nothingCheckedStaysOnTheFirstPage()
{
    NewPiechartWizard wizard;
    wizard.restart();
    QVERIFY(!wizard.currentPage()->isComplete());
    QCOMPARE(wizard.currentPage()->nextId(), 0);
    QVERIFY(!wizard.button(QWizard::NextButton)->isEnabled());
    radio(wizard, QStringLiteral("Krona file"))->setChecked(true);
    QVERIFY(wizard.currentPage()->isComplete());
}

void TestNewPiechartWizard::qiimeColumnsComeFromTheHeader_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("columns");
    QTest::newRow("classic header") << QByteArray("Taxon\tS1\tS2\nRoot;k__Bacteria\t0.1\t0.2\n") << QStringList{"S1", "S2"};
    QTest::newRow("biom comment first") << QByteArray("# Constructed from biom file\n#OTU ID\tPC.354\tPC.355\nk__A\t1\t2\n")
                                        << QStringList{"PC.354", "PC.355"};
    QTest::newRow("empty column names kept") << QByteArray("Taxon\t\tS2\n") << QStringList{"", "S2"};
    QTest::newRow("one column only") << QByteArray("Taxon\nk__A\n") << QStringList();
    QTest::newRow("empty file") << QByteArray() << QStringList();
    QTest::newRow("missing file") << QByteArray("<missing>") << QStringList();
}

void TestNewPiechartWizard::qiimeColumnsComeFromTheHeader()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, columns);
    QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("table.txt"));
    if (content != "<missing>") {
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    NewPiechartWizard wizard;
    wizard.restart();
    radio(wizard, QStringLiteral("QIIME file"))->setChecked(true);
    wizard.next();
    QCOMPARE(wizard.currentId(), int(NewPiechartWizard::QiimeFile));
    fileEdit(wizard, NewPiechartWizard::QiimeFile)->setText(name);
    wizard.next();
    if (columns.isEmpty()) {
        QCOMPARE(wizard.currentId(), int(NewPiechartWizard::QiimeFile));
        return;
    }
    QCOMPARE(wizard.currentId(), int(NewPiechartWizard::QiimeColumn));
    auto* combo = wizard.currentPage()->findChild<QComboBox*>();
    QStringList offered;
    for (int i = 0; i < combo->count(); ++i)
        offered << combo->itemText(i);
    QCOMPARE(offered, columns);
    combo->setCurrentIndex(1);
    QCOMPARE(wizard.field(QStringLiteral("qiime-source-column")).toInt(), 1);
}

void TestNewPiechartWizard::fieldsCarryTheAnswers()
{
    NewPiechartWizard wizard;
    wizard.restart();
    radio(wizard, QStringLiteral("Plain text with NCBI-taxon-ids per lines"))->setChecked(true);
    wizard.next();
    fileEdit(wizard, NewPiechartWizard::TaxidsFile)->setText(QStringLiteral("/data/reads.txt"));
    QCOMPARE(wizard.field(QStringLiteral("taxids-source-filename")).toString(), QStringLiteral("/data/reads.txt"));
    QVERIFY(wizard.field(QStringLiteral("taxids-source-format-id")).toBool());
    radio(wizard, QStringLiteral("TAB-separated file with NCBI-taxon id and count"))->setChecked(true);
    QVERIFY(!wizard.field(QStringLiteral("taxids-source-format-id")).toBool());
    QVERIFY(wizard.field(QStringLiteral("taxids-source-format-idcount")).toBool());
    QVERIFY(wizard.field(QStringLiteral("input-type-taxids")).toBool());
    QVERIFY(!wizard.field(QStringLiteral("input-type-krona")).toBool());
}

QTEST_MAIN(TestNewPiechartWizard)
#include "tst_newpiechartwizard.moc"
