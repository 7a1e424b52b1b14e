#include "resources/resources.h"
#include "viewer/mainwindow.h"

#include <QApplication>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    Sorvik::initResources();
    int result = 0;
    {
        Sorvik::Viewer::MainWindow window;
        window.show();
        result = app.exec();
    }
    return result;
}
