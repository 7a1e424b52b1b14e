#include "nu/graphics/anchoritem.h"
#include "nu/graphics/arcbracketitem.h"
#include "nu/graphics/arctextitem.h"
#include "nu/graphics/piecharttextitem.h"
#include "nu/graphics/recttextitem.h"

#include <QtMath>
#include <QtTest>

#include <memory>

using namespace nu::graphics;
using H = AnchorItem::HorizontalAnchor;
using V = AnchorItem::VerticalAnchor;

Q_DECLARE_METATYPE(AnchorItem::HorizontalAnchor)
Q_DECLARE_METATYPE(AnchorItem::VerticalAnchor)

namespace {

bool near(const QPointF& a, const QPointF& b, double tolerance = 1e-9)
{
    return std::abs(a.x() - b.x()) < tolerance && std::abs(a.y() - b.y()) < tolerance;
}

bool near(const QRectF& a, const QRectF& b)
{
    return near(a.topLeft(), b.topLeft(), 1e-6) && near(a.bottomRight(), b.bottomRight(), 1e-6);
}

QString text(const QPointF& p)
{
    return QStringLiteral("(%1, %2)").arg(p.x()).arg(p.y());
}

// A slice of a chart: a root disc and one slice around it, both 30 wide.
struct Slice
{
    std::unique_ptr<PieChartTextItem> root = std::make_unique<PieChartTextItem>();
    PieChartTextItem* slice = nullptr;

    Slice(double start, double angle, const QString& label)
    {
        root->setRadiusOffset(30);
        root->setAngle(360);
        auto owned = std::make_unique<PieChartTextItem>();
        slice = owned.get();
        slice->setRadiusOffset(30);
        root->addChild(owned.release());
        slice->setRot(start);
        slice->setAngle(angle);
        QFont font;
        font.setPixelSize(10);
        DrawableText t(label);
        t.font = font;
        slice->setText(t);
    }
};

} // namespace

class TestAnnotationItems : public QObject
{
    Q_OBJECT
private slots:
    void straightTextSitsOnItsAnchor_data()
    {
        QTest::addColumn<H>("h");
        QTest::addColumn<V>("v");
        QTest::addColumn<QPointF>("corner");
        QTest::newRow("defaults: left edge, centred") << H::Left << V::Center << QPointF(0, 0.5);
        QTest::newRow("bottom right") << H::Right << V::Bottom << QPointF(1, 1);
    }

    void straightTextSitsOnItsAnchor()
    {
        QFETCH(H, h);
        QFETCH(V, v);
        QFETCH(QPointF, corner);
        RectTextItem item;
        item.setText(QStringLiteral("Firmicutes"));
        item.setHorizontalAnchor(h);
        item.setVerticalAnchor(v);
        const QRectF box = item.path().boundingRect();
        QVERIFY(box.width() > 10);
        // The chosen point of the text's box (as a fraction of its size) lies on the origin.
        const QPointF anchor(box.left() + corner.x() * box.width(), box.top() + corner.y() * box.height());
        QVERIFY2(near(anchor, QPointF(), 1e-6), qPrintable(text(anchor)));
    }

    void bracketOutline_data()
    {
        QTest::addColumn<double>("angle");
        QTest::addColumn<double>("tip");
        QTest::addColumn<QRectF>("bounds");
        QTest::newRow("angle 0 is only the tip") << 0.0 << 10.0 << QRectF(90, 0, 10, 0);
        QTest::newRow("quarter") << 90.0 << 10.0 << QRectF(0, -100, 100, 100);
        QTest::newRow("tips outwards") << 90.0 << -10.0 << QRectF(0, -110, 110, 110);
    }

    void bracketOutline()
    {
        QFETCH(double, angle);
        QFETCH(double, tip);
        QFETCH(QRectF, bounds);
        ArcBracketItem bracket;
        bracket.setRadius(100);
        bracket.setAngle(angle);
        bracket.setTipLength(tip);
        const QPainterPath path = bracket.path();
        QVERIFY2(near(path.boundingRect(), bounds), qPrintable(text(path.boundingRect().topLeft())));
        QVERIFY(near(path.elementAt(0), QPointF(100 - tip, 0)));
        // The end tip reaches in along the ray at the bracket's angle.
        const double a = qDegreesToRadians(angle);
        bool endTip = false;
        for (int i = 0; i < path.elementCount(); ++i)
            endTip = endTip || near(path.elementAt(i), QPointF((100 - tip) * std::cos(a), -(100 - tip) * std::sin(a)), 1e-6);
        QVERIFY(endTip);
    }

    void bracketFollowsItsSlice()
    {
        Slice chart(0, 90, QString());
        auto owned = std::make_unique<ArcBracketItem>();
        ArcBracketItem* bracket = owned.get();
        bracket->setAngle(45);
        bracket->setRadius(10);
        chart.slice->addChild(owned.release());
        // A new bracket spans the whole slice, 10 outside its outer edge.
        QCOMPARE(bracket->getAngle(), 90.0);
        QCOMPARE(bracket->getRadius(), 70.0);
        chart.slice->setAngle(120);
        chart.root->setRadiusOffset(40);
        QCOMPARE(bracket->getAngle(), 120.0);
        QCOMPARE(bracket->getRadius(), 80.0);
        bracket->setRadiusOffsetFromParent(-4);
        QCOMPARE(bracket->getRadius(), 70.0);
        bracket->removeFromParent();
        owned.reset(bracket);
        QCOMPARE(bracket->getRadius(), 0.0);
        QCOMPARE(bracket->getAngle(), 0.0);
    }

    void bracketChildrenFollowTheBracket()
    {
        ArcBracketItem bracket;
        bracket.setRadius(100);
        bracket.setAngle(90);
        auto ownedArc = std::make_unique<ArcTextItem>();
        ArcTextItem* arc = ownedArc.get();
        arc->setRadius(15);
        bracket.addChild(ownedArc.release());
        auto ownedLabel = std::make_unique<RectTextItem>();
        RectTextItem* label = ownedLabel.get();
        label->setPos(5, 0);
        bracket.addChild(ownedLabel.release());
        QCOMPARE(arc->getRot(), 45.0);
        QCOMPARE(arc->getRadius(), 115.0);
        const double r = 100;
        QVERIFY(near(label->pos(), QPointF(r * std::cos(M_PI / 4) + 5, -r * std::sin(M_PI / 4))));
        bracket.setAngle(120);
        bracket.setRadius(50);
        QVERIFY(std::abs(arc->getRot() - 60.0) < 1e-9);
        QCOMPARE(arc->getRadius(), 65.0);
        QVERIFY(near(label->pos(), QPointF(50 * std::cos(M_PI / 3) + 5, -50 * std::sin(M_PI / 3))));
        QVERIFY(near(label->getPositionOffsetFromParent(), QPointF(5, 0)));
    }

    void arcTextIsCentredOnItsCircle_data()
    {
        QTest::addColumn<int>("orientation");
        QTest::addColumn<bool>("startsAbove");
        QTest::newRow("inside runs clockwise") << 0 << true;
        QTest::newRow("outside runs counter-clockwise") << 1 << false;
    }

    void arcTextIsCentredOnItsCircle()
    {
        QFETCH(int, orientation);
        QFETCH(bool, startsAbove);
        ArcTextItem arc;
        QFont font;
        font.setPixelSize(10);
        arc.setFont(font);
        arc.setText(QStringLiteral("Proteobacteria"));
        arc.setRadius(100);
        arc.setOrientation(static_cast<ArcTextItem::Orientation>(orientation));
        const QPainterPath path = arc.path();
        const QRectF box = path.boundingRect();
        QVERIFY2(std::abs(box.center().y()) < 2, qPrintable(text(box.center())));
        for (int i = 0; i < path.elementCount(); ++i) {
            const double distance = QLineF(QPointF(), path.elementAt(i)).length();
            QVERIFY2(distance > 90 && distance < 110, qPrintable(QString::number(distance)));
        }
        // The first glyph lies on the side the text starts from.
        QCOMPARE(path.elementAt(0).y < 0, startsAbove);
        // Text bent onto a circle of radius 0 is left straight rather than made of NaNs.
        arc.setRadius(-5);
        QCOMPARE(arc.getRadius(), 0.0);
        QVERIFY(qIsFinite(arc.boundingRect().width()));
    }

    void sliceLabelFitsOrIsNotDrawn_data()
    {
        QTest::addColumn<double>("angle");
        QTest::addColumn<QString>("label");
        QTest::addColumn<bool>("show");
        QTest::addColumn<bool>("drawn");
        QTest::newRow("short name on a wide slice") << 120.0 << "Bacteria" << true << true;
        QTest::newRow("long name on a narrow slice") << 10.0 << "Bacteroidetes/Chlorobi group" << true << false;
        QTest::newRow("hidden") << 120.0 << "Bacteria" << false << false;
        QTest::newRow("empty label on a wide slice") << 120.0 << "" << true << false;
    }

    void sliceLabelFitsOrIsNotDrawn()
    {
        QFETCH(double, angle);
        QFETCH(QString, label);
        QFETCH(bool, show);
        QFETCH(bool, drawn);
        Slice chart(10, angle, label);
        chart.slice->setTextShow(show);
        const QPainterPath path = chart.slice->getLabelPath();
        QCOMPARE(!path.isEmpty(), drawn);
        if (!drawn)
            return;
        // The label lies within its ring, between 30 and 60 from the centre.
        for (int i = 0; i < path.elementCount(); ++i) {
            const double distance = QLineF(QPointF(), chart.slice->mapToParent(path.elementAt(i))).length();
            QVERIFY2(distance > 30 && distance < 60, qPrintable(QString::number(distance)));
        }
    }

    void sliceLabelReadsLeftToRight_data()
    {
        QTest::addColumn<double>("start");
        QTest::addColumn<bool>("upper");
        QTest::newRow("top") << 45.0 << true;
        QTest::newRow("bottom") << 225.0 << false;
    }

    void sliceLabelReadsLeftToRight()
    {
        QFETCH(double, start);
        QFETCH(bool, upper);
        Slice chart(start, 90, QStringLiteral("Firmicutes"));
        const QPainterPath path = chart.root->mapFromItem(chart.slice, chart.slice->getLabelPath());
        QVERIFY(!path.isEmpty());
        const QRectF box = path.boundingRect();
        QCOMPARE(box.center().y() < 0, upper);
        // Centred on the middle of the slice.
        const double middle = start + 45;
        QVERIFY2(std::abs(QLineF(QPointF(), box.center()).angle() - std::fmod(middle, 360)) < 5,
                 qPrintable(text(box.center())));
        // The first glyph is on the left and the last on the right in either half: the words never
        // stand on their heads.
        QVERIFY(path.elementAt(0).x < box.center().x());
        QVERIFY(path.elementAt(path.elementCount() - 1).x > box.center().x());
    }

    void sliceDefaultTextAndToolTip()
    {
        Slice chart(0, 45, QStringLiteral("Bacteria"));
        QCOMPARE(chart.slice->getDefaultText(), QStringLiteral("Bacteria [12.50%]"));
        QCOMPARE(chart.slice->toolTip(), QStringLiteral("Bacteria"));
        DrawableText t = chart.slice->getText();
        t.text = QStringLiteral("odd %2 name");
        chart.slice->setText(t);
        QCOMPARE(chart.slice->getDefaultText(), QStringLiteral("odd %2 name [12.50%]"));
    }
};

QTEST_MAIN(TestAnnotationItems)
#include "tst_annotationitems.moc"
