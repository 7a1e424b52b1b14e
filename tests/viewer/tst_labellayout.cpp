#include "viewer/labellayout.h"

#include <QFontMetricsF>
#include <QtTest>

#include <cmath>

using Sorvik::Viewer::LabelLayout;

namespace {

constexpr double pad = LabelLayout::padding;

LabelLayout::Slice slice(double inner, double width, double span, double reach = 0, bool upper = true, bool right = true)
{
    LabelLayout::Slice s;
    s.innerRadius = inner;
    s.width = width;
    s.span = span;
    s.reach = reach;
    s.upper = upper;
    s.right = right;
    return s;
}

} // namespace

class TestLabelLayout : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        const QFontMetricsF metrics(font);
        textWidth = metrics.horizontalAdvance(text);
        textHeight = metrics.ascent() + metrics.descent();
    }

    // Each row gives the room in multiples of the text's own size at the font's size.
    void placement_data()
    {
        QTest::addColumn<double>("along");
        QTest::addColumn<double>("across");
        QTest::addColumn<double>("minimum");
        QTest::addColumn<int>("kind");
        QTest::addColumn<double>("scale");
        QTest::addColumn<bool>("elided");
        const int arc = int(LabelLayout::Kind::Arc);
        const int none = int(LabelLayout::Kind::None);
        QTest::newRow("fits along the arc") << 1.5 << 2.0 << 0.5 << arc << 1.0 << false;
        QTest::newRow("arc just long enough") << 1.0 << 2.0 << 0.5 << arc << 1.0 << false;
        QTest::newRow("shrunk along the arc") << 0.8 << 2.0 << 0.5 << arc << 0.8 << false;
        QTest::newRow("shrunk to the smallest size") << 0.5 << 2.0 << 0.5 << arc << 0.5 << false;
        QTest::newRow("below the smallest size: elided") << 0.4 << 2.0 << 0.5 << arc << 0.5 << true;
        // A ring too thin for the text: nothing, whatever the length.
        QTest::newRow("too thin") << 5.0 << 0.4 << 0.5 << none << 0.0 << false;
        // Zoomed far out the smallest readable size is above the font's: labels grow to it.
        QTest::newRow("grown to the readable size") << 3.0 << 3.0 << 1.5 << arc << 1.5 << false;
    }

    void placement()
    {
        QFETCH(double, along);
        QFETCH(double, across);
        QFETCH(double, minimum);
        QFETCH(int, kind);
        QFETCH(double, scale);
        QFETCH(bool, elided);
        // A wide ring slice (no radial room: 120°) whose middle arc is along × the text's width.
        const double width = across * textHeight + 2 * pad;
        const double span = 120.0;
        const double middle = (along * textWidth + 2 * pad) / (span * M_PI / 180);
        const LabelLayout layout(font, minimum);
        const LabelLayout::Label label = layout.place(slice(middle - width / 2, width, span), text);
        QCOMPARE(int(label.kind), kind);
        if (kind == int(LabelLayout::Kind::None))
            return;
        QVERIFY2(std::abs(label.scale - scale) < 1e-6, qPrintable(QString::number(label.scale)));
        QCOMPARE(label.text.endsWith(QStringLiteral("…")), elided);
        QCOMPARE(label.text == text, !elided);
        QVERIFY(!label.path.isEmpty());
    }

    void narrowOuterSlicesGoRadial()
    {
        const LabelLayout layout(font, 0.5);
        // 4° at radius 300: far too short along the arc, room enough outward.
        const double inner = 300;
        const double across = 2 * (inner + pad) * std::sin(2.0 * M_PI / 180) - 2 * pad;
        QVERIFY(across > textHeight);
        const LabelLayout::Label label = layout.place(slice(inner, 30, 4, inner + 30 + textWidth * 1.2), text);
        QCOMPARE(int(label.kind), int(LabelLayout::Kind::Radial));
        QCOMPARE(label.scale, 1.0);
        QCOMPARE(label.text, text);
        // Too long for the ring: wholly beyond it.
        QVERIFY(label.outside);
        QVERIFY(label.path.boundingRect().right() > inner + 30);
        // Without the room beyond its ring (something drawn outside), it must shrink or elide.
        const LabelLayout::Label inRing = layout.place(slice(inner, 30, 4, 0), text);
        QVERIFY(inRing.kind == LabelLayout::Kind::None || inRing.scale < 1.0 || inRing.text != text);
    }

    // Labels of neighbouring slices never overlap: each stays within its own slice's room.
    void labelsStayInTheirRoom_data()
    {
        QTest::addColumn<double>("inner");
        QTest::addColumn<double>("span");
        QTest::addColumn<double>("reach");
        QTest::addColumn<bool>("upper");
        QTest::addColumn<bool>("right");
        QTest::newRow("wide, upper half") << 60.0 << 150.0 << 0.0 << true << true;
        QTest::newRow("wide, lower half") << 60.0 << 150.0 << 0.0 << false << false;
        QTest::newRow("narrow, right") << 120.0 << 6.0 << 400.0 << true << true;
        QTest::newRow("narrow, left") << 120.0 << 6.0 << 400.0 << false << false;
        QTest::newRow("narrow, no room beyond") << 120.0 << 4.0 << 0.0 << true << false;
        QTest::newRow("medium") << 30.0 << 40.0 << 200.0 << false << true;
    }

    void labelsStayInTheirRoom()
    {
        QFETCH(double, inner);
        QFETCH(double, span);
        QFETCH(double, reach);
        QFETCH(bool, upper);
        QFETCH(bool, right);
        const LabelLayout layout(font, 0.3);
        const LabelLayout::Slice s = slice(inner, 30, span, reach, upper, right);
        const LabelLayout::Label label = layout.place(s, text);
        QVERIFY(label.kind != LabelLayout::Kind::None);
        const double outer = std::max(reach, inner + 30);
        // Glyph outlines are curves: their control points may stray a little past the glyphs.
        const double slack = 0.5;
        const QPolygonF outline = label.path.toFillPolygon();
        for (const QPointF& p : outline) {
            const double r = std::hypot(p.x(), p.y());
            double angle = std::atan2(-p.y(), p.x()) * 180 / M_PI;
            if (angle < -90)
                angle += 360;
            QVERIFY2(r >= inner - slack && r <= outer + slack, qPrintable(QString::number(r)));
            const double tolerance = slack / r * 180 / M_PI;
            QVERIFY2(angle >= -tolerance && angle <= span + tolerance, qPrintable(QString::number(angle)));
        }
    }

    void centreLabel()
    {
        const LabelLayout layout(font, 0.5);
        const LabelLayout::Label fits = layout.placeCentre(textWidth, text);
        QCOMPARE(int(fits.kind), int(LabelLayout::Kind::Straight));
        QCOMPARE(fits.scale, 1.0);
        // Centred on the disc.
        QVERIFY(std::abs(fits.path.boundingRect().center().x()) < 1.0);
        const LabelLayout::Label elided = layout.placeCentre(textWidth / 4, text);
        QVERIFY(elided.text.endsWith(QStringLiteral("…")));
        QCOMPARE(int(layout.placeCentre(1.0, text).kind), int(LabelLayout::Kind::None));
    }

    void sectorBounds_data()
    {
        QTest::addColumn<double>("inner");
        QTest::addColumn<double>("outer");
        QTest::addColumn<double>("start");
        QTest::addColumn<double>("span");
        QTest::addColumn<QRectF>("bounds");
        QTest::newRow("first quarter wedge") << 0.0 << 10.0 << 0.0 << 90.0 << QRectF(0, -10, 10, 10);
        QTest::newRow("quarter ring") << 5.0 << 10.0 << 0.0 << 90.0 << QRectF(0, -10, 10, 10);
        QTest::newRow("crossing the left axis") << 5.0 << 10.0 << 135.0 << 90.0
                                                << QRectF(-10, -10 * M_SQRT1_2, 10 - 5 * M_SQRT1_2, 20 * M_SQRT1_2);
        QTest::newRow("full circle") << 5.0 << 10.0 << 30.0 << 360.0 << QRectF(-10, -10, 20, 20);
        QTest::newRow("negative start") << 0.0 << 10.0 << -45.0 << 90.0
                                        << QRectF(0, -10 * M_SQRT1_2, 10, 20 * M_SQRT1_2);
    }

    void sectorBounds()
    {
        QFETCH(double, inner);
        QFETCH(double, outer);
        QFETCH(double, start);
        QFETCH(double, span);
        QFETCH(QRectF, bounds);
        const QRectF got = LabelLayout::sectorBounds(inner, outer, start, span);
        const auto near = [](double a, double b) { return std::abs(a - b) < 1e-9; };
        QVERIFY2(near(got.left(), bounds.left()) && near(got.right(), bounds.right()) && near(got.top(), bounds.top())
                     && near(got.bottom(), bounds.bottom()),
                 qPrintable(QStringLiteral("%1 %2 %3 %4").arg(got.left()).arg(got.top()).arg(got.right()).arg(got.bottom())));
    }

private:
    const QFont font{QStringLiteral("DejaVu Sans"), 9};
    const QString text = QStringLiteral("Bacteroidetes");
    double textWidth = 0;
    double textHeight = 0;
};

QTEST_MAIN(TestLabelLayout)
#include "tst_labellayout.moc"
