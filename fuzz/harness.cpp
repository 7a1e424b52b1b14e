// The libFuzzer harness of every target, one executable linked once: the environment variable
// SORVIK_FUZZ_TARGET names the target it runs. With SORVIK_FUZZ_SEEDS=FOLDER set, it writes the
// target's generated seeds into FOLDER and ends instead.
#include "fuzz/targets.h"

#include <QApplication>
#include <QCoreApplication>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

QString target;

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    target = qEnvironmentVariable("SORVIK_FUZZ_TARGET");
    if (!Sorvik::Fuzz::getTargetNames().contains(target)) {
        std::fprintf(stderr, "SORVIK_FUZZ_TARGET must name one of: %s\n",
                     qPrintable(Sorvik::Fuzz::getTargetNames().join(QLatin1Char(' '))));
        std::exit(2);
    }
    // Charts are drawn, which takes a GUI application; no window is ever shown. The application
    // is owned by the process and never destroyed: libFuzzer ends with exit(), and an application
    // destroyed then would outlive Qt's own globals.
    static int arguments = *argc;
    const bool gui = target == QLatin1String("chartfile");
    if (gui)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    static QCoreApplication* const application =
        gui ? new QApplication(arguments, *argv) : new QCoreApplication(arguments, *argv);
    Q_UNUSED(application)
    const QString seeds = qEnvironmentVariable("SORVIK_FUZZ_SEEDS");
    if (!seeds.isEmpty()) {
        Sorvik::Fuzz::writeSeeds(target, seeds);
        std::exit(0);
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Sorvik::Fuzz::run(target, QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    return 0;
}
