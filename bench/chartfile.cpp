// Saving, loading and undoing a large annotated chart in the editor model.
//
// Usage: bench_chart_file [slices per ring] [rings]
// Builds a chart of labelled slices (each ring splits every slice of the ring inside it), with an
// arc text on every outer slice, then times saving it, loading it back and undoing the deletion
// of a large subtree.

#include "nu/edit/arctextitem.h"
#include "nu/edit/graphicsitemmanager.h"
#include "nu/edit/piecharttextitem.h"
#include "nu/edit/scene.h"
#include "nu/edit/undomanager.h"
#include "nu/jsondatafile.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QGraphicsItem>
#include <QTemporaryDir>
#include <QTextStream>

#include <functional>
#include <vector>

namespace {

class Manager : public nu::edit::GraphicsItemManager
{
public:
    Manager()
    {
        registerType<nu::edit::ArcTextItem>();
        registerType<nu::edit::PieChartTextItem>();
    }
};

QTextStream& out()
{
    static QTextStream stream(stdout);
    return stream;
}

template <class Work>
void timed(const char* what, Work work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    out() << QStringLiteral("%1: %2 ms").arg(QString::fromLatin1(what), -34).arg(timer.elapsed()) << Qt::endl;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const int fanout = argc > 1 ? QString::fromLatin1(argv[1]).toInt() : 8;
    const int rings = argc > 2 ? QString::fromLatin1(argv[2]).toInt() : 4;
    const QTemporaryDir folder;
    const nu::JsonDataFile::Info info(folder.filePath(QStringLiteral("chart.pie")),
                                      QStringLiteral("sorvik-piechart"), 1);

    Manager manager;
    nu::edit::Scene scene(manager);
    long firstChild = 0;
    timed("build", [&] {
        const nu::edit::ItemManager::Batch batch(manager);
        const auto root = manager.createItem(2);
        std::vector<long> ring{root->getId()};
        for (int level = 0; level < rings; ++level) {
            std::vector<long> next;
            for (long parent : ring) {
                for (int i = 0; i < fanout; ++i) {
                    const auto slice = manager.createItem(2);
                    slice->setParent(manager.getItem(parent).get());
                    const auto placed = manager.getItem(slice->getId());
                    placed->setPropertyValue(QStringLiteral("count"), 1 + i);
                    placed->setPropertyValue(QStringLiteral("text.text"),
                                             QStringLiteral("taxon %1").arg(slice->getId()));
                    next.push_back(slice->getId());
                    if (level == rings - 1) {
                        const auto text = manager.createItem(1);
                        text->setParent(placed.get());
                        manager.getItem(text->getId())
                            ->setPropertyValue(QStringLiteral("text"), QStringLiteral("note"));
                    }
                }
            }
            if (level == 0)
                firstChild = next.front();
            ring = std::move(next);
        }
    });
    out() << "items: " << scene.items().size() << Qt::endl;

    QJsonArray saved;
    timed("toJson", [&] { saved = manager.toJson(); });
    timed("save", [&] { nu::JsonDataFile::save(info, saved); });

    Manager loader;
    nu::edit::Scene loaded(loader);
    timed("read and load", [&] {
        const nu::JsonDataFile file(info);
        loader.fromJson(file.data());
    });

    nu::edit::UndoManager undo(manager);
    const std::function<void(long)> remove = [&](long id) {
        QGraphicsItem* graphics = manager.getGraphicsItem(id);
        undo.deleteItem(*manager.getItem(id));
        for (QGraphicsItem* child : graphics->childItems()) {
            if (const long childId = manager.findId(child))
                remove(childId);
        }
        manager.deleteItem(id);
    };
    timed("delete an eighth as one step", [&] {
        undo.changeBegin();
        remove(firstChild);
        undo.changeEnd();
    });
    timed("undo it", [&] { undo.undo(); });
    timed("redo it", [&] { undo.redo(); });
    return 0;
}
