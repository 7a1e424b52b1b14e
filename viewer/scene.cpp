#include "viewer/scene.h"

#include "viewer/piechartitem.h"

#include <QGraphicsSceneHelpEvent>
#include <QGraphicsSceneMouseEvent>
#include <QToolTip>

#include <algorithm>

namespace Sorvik {
namespace Viewer {

namespace {

// Keeps a flag raised for the life of a block.
class Raise
{
public:
    explicit Raise(bool& f)
        : flag(f)
        , old(f)
    {
        flag = true;
    }
    ~Raise() { flag = old; }
    Raise(const Raise&) = delete;
    Raise& operator=(const Raise&) = delete;

private:
    bool& flag;
    bool old;
};

} // namespace

Scene::Scene(QObject* parent)
    : QGraphicsScene(parent)
{
    // Slices change all together on every regeneration; an index would be rebuilt each time for
    // a handful of lookups.
    setItemIndexMethod(QGraphicsScene::NoIndex);
    connect(this, &QGraphicsScene::selectionChanged, this, &Scene::slotSelectionChanged);
}

Scene::~Scene()
{
    // The slices go before the scene's own teardown, which must not reach this part of it.
    disconnect(this, &QGraphicsScene::selectionChanged, this, &Scene::slotSelectionChanged);
    setPieChart(nullptr);
}

void Scene::setPieChart(std::unique_ptr<PieChartItem> chart)
{
    Raise raise(quiet);
    index.clear();
    selectedId.clear();
    if (hovered) {
        hovered = nullptr;
        emit signalSliceHovered(QString());
    }
    if (root) {
        // Deleting the root takes every slice with it.
        std::unique_ptr<PieChartItem> old(root);
        root = nullptr;
        removeItem(old.get());
    }
    if (!chart)
        return;
    root = chart.release();
    addItem(root);
}

QRectF Scene::getChartRect() const
{
    if (!root)
        return QRectF();
    // The slices' own sectors: bounding boxes of turned items would grow with every ring.
    return root->getChartRect();
}

QRectF Scene::getCentredChartRect() const
{
    if (!root)
        return QRectF();
    const QPointF centre = root->mapToScene(QPointF());
    const QRectF area = getChartRect().translated(-centre);
    const double reach = std::max({-area.left(), area.right(), -area.top(), area.bottom(), 1.0});
    return QRectF(centre.x() - reach, centre.y() - reach, 2 * reach, 2 * reach);
}

PieChartItem* Scene::getSelectedItem() const
{
    for (QGraphicsItem* item : selectedItems()) {
        if (auto* slice = dynamic_cast<PieChartItem*>(item))
            return slice;
    }
    return nullptr;
}

PieChartItem* Scene::findItem(const QString& id) const
{
    if (!root || id.isEmpty())
        return nullptr;
    if (index.isEmpty()) {
        std::vector<PieChartItem*> open{root};
        while (!open.empty()) {
            PieChartItem* slice = open.back();
            open.pop_back();
            index.insert(slice->getId(), slice);
            for (QGraphicsItem* child : slice->childItems()) {
                if (auto* c = dynamic_cast<PieChartItem*>(child))
                    open.push_back(c);
            }
        }
    }
    return index.value(id);
}

PieChartItem* Scene::sliceAt(const QPointF& scenePoint) const
{
    for (QGraphicsItem* item : items(scenePoint, Qt::IntersectsItemShape, Qt::DescendingOrder)) {
        for (QGraphicsItem* i = item; i; i = i->parentItem()) {
            if (auto* slice = dynamic_cast<PieChartItem*>(i))
                return slice;
        }
    }
    return nullptr;
}

void Scene::slotSelectItem(const QString& id)
{
    Raise raise(quiet);
    PieChartItem* slice = findItem(id);
    if (slice == getSelectedItem())
        return;
    clearSelection();
    if (slice)
        slice->setSelected(true);
    selectedId = slice ? id : QString();
}

void Scene::slotSelectionChanged()
{
    const PieChartItem* slice = getSelectedItem();
    const QString id = slice ? slice->getId() : QString();
    if (id == selectedId)
        return;
    selectedId = id;
    if (!quiet)
        emit signalSelectedItem(id);
}

void Scene::mouseDoubleClickEvent(QGraphicsSceneMouseEvent* event)
{
    QGraphicsScene::mouseDoubleClickEvent(event);
    if (event->button() != Qt::LeftButton)
        return;
    PieChartItem* slice = sliceAt(event->scenePos());
    if (!slice)
        return;
    if (!slice->isSelected()) {
        clearSelection();
        slice->setSelected(true);
    }
    emit signalItemEntered();
}

void Scene::mouseMoveEvent(QGraphicsSceneMouseEvent* event)
{
    QGraphicsScene::mouseMoveEvent(event);
    PieChartItem* slice = sliceAt(event->scenePos());
    if (slice == hovered)
        return;
    hovered = slice;
    emit signalSliceHovered(slice ? slice->getId() : QString());
}

void Scene::helpEvent(QGraphicsSceneHelpEvent* event)
{
    const PieChartItem* slice = sliceAt(event->scenePos());
    if (!slice) {
        QToolTip::hideText();
        event->ignore();
        return;
    }
    QToolTip::showText(event->screenPos(), slice->getDefaultText(), event->widget());
    event->accept();
}

} // namespace Viewer
} // namespace Sorvik
