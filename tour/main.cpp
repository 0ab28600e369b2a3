// Drives the windows of the program through everything that they do, on an example of its own, and takes a picture at
// each step.
#include "tour/tour.h"
#include "ui/icons.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPalette>
#include <QTemporaryDir>
#include <QThread>

#include <cstdio>
#include <memory>
#include <stdexcept>

namespace korvadex::tour {

namespace {

constexpr const char* Usage =
    "usage: tour [--into DIRECTORY] [--scale FACTOR] [--small] [--dark] [--show] [--ground DRIVE] [--only STEP...]\n\n"
    "  --into    where the pictures go (else the current directory)\n"
    "  --scale   as on a screen with so many pixels for one, for example 2\n"
    "  --small   on a screen of 1366 x 768 of them, whatever the scale; what has no room there is told\n  --dark    in dark colours\n"
    "  --show    on the display, to be watched\n"
    "  --ground  a drive, \"K:\\\", with an example that keeps what one step makes of it\n  --only    these steps:";

struct Options {
    QDir directory = QDir::current();
    double scale = 1;
    bool isSmall = false, isDark = false, isShown = false;
    QString ground;
    QStringList names; // none: all steps

    bool Walks(const Step& step) const { return names.isEmpty() || names.contains(step.name); }
};

// Throws what is wrong with them.
Options ParseOptions(QStringList arguments) {
    Options options;
    QStringList known;
    for (const Step& step : Steps())
        known.append(step.name);
    while (!arguments.isEmpty()) {
        const QString option = arguments.takeFirst();
        const bool hasValue = !arguments.isEmpty() && !arguments.front().startsWith('-');
        if (option == "--into" && hasValue)
            options.directory = QDir(QDir(arguments.takeFirst()).absolutePath());
        else if (option == "--scale" && hasValue)
            options.scale = qBound(1.0, arguments.takeFirst().toDouble(), 4.0);
        else if (option == "--small")
            options.isSmall = true;
        else if (option == "--dark")
            options.isDark = true;
        else if (option == "--show")
            options.isShown = true;
        else if (option == "--ground" && hasValue)
            options.ground = arguments.takeFirst();
        else if (option == "--only" && hasValue)
            while (!arguments.isEmpty() && known.contains(arguments.front()))
                options.names.append(arguments.takeFirst());
        else
            throw std::invalid_argument(Usage + (' ' + known.join(' ')).toStdString());
    }
    return options;
}

// The same for everyone: not the settings of a desktop, and a screen of the size that a laptop has.
void PrepareSurroundings(const Options& options) {
    for (const char* name : {"QT_STYLE_OVERRIDE", "QT_SCREEN_SCALE_FACTORS", "QT_FONT_DPI"})
        qunsetenv(name);
    qputenv("QT_SCALE_FACTOR", QByteArray::number(options.scale));
    if (options.isShown)
        return;
    const double scale = options.isSmall ? 1 : options.scale;
    QFile screen("screen.json"); // in the current directory: the name stands between colons
    if (!screen.open(QIODevice::WriteOnly))
        throw std::runtime_error("cannot write " + QDir().filePath(screen.fileName()).toStdString());
    screen.write(QString(R"({"windowFrameMargins": false, "screens": [{"name": "screen", "x": 0, "y": 0,
        "width": %1, "height": %2, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})")
                     .arg(int(1366 * scale))
                     .arg(int(768 * scale))
                     .toUtf8());
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=screen.json");
}

QPalette DarkPalette() {
    const QColor window(0x2b, 0x2d, 0x31), base(0x1e, 0x1f, 0x22), text(0xe6, 0xe6, 0xe6), faint(0x80, 0x82, 0x86);
    QPalette palette(text, window, window.lighter(150), window.darker(150), window.darker(120), text, base);
    palette.setColor(QPalette::Button, window.lighter(115));
    palette.setColor(QPalette::AlternateBase, window);
    palette.setColor(QPalette::Highlight, QColor(0x2f, 0x65, 0xca));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, window);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, faint);
    palette.setColor(QPalette::Link, QColor(0x7d, 0xb7, 0xec));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, faint);
    return palette;
}

// In the person's thread.
void WalkAll(Tour& tour, const Options& options) {
    for (const Step& step : Steps()) {
        if (!options.Walks(step))
            continue;
        QElapsedTimer time;
        time.start();
        try {
            tour.Walk(step);
        } catch (const std::exception& trouble) {
            std::fprintf(stderr, "tour: %s: %s (see %s-failed.png)\n", step.name, trouble.what(), step.name);
            tour.Abandon();
        }
        std::printf("%-20s %6lld ms\n", step.name, static_cast<long long>(time.elapsed()));
        std::fflush(stdout);
    }
    std::printf("%d pictures in %s\n", tour.PictureCount(), qPrintable(options.directory.path()));
}

int Run(int argc, char** argv, const Options& options) {
    if (!options.directory.mkpath("."))
        throw std::runtime_error("cannot make " + options.directory.path().toStdString());
    const QString before = QDir::currentPath();
    auto surroundings = std::make_unique<QTemporaryDir>();
    QDir::setCurrent(surroundings->path());
    PrepareSurroundings(options);
    // Off the screen Qt complains of every window that there is none.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
        if (!text.startsWith("This plugin does not support"))
            std::fprintf(stderr, "%s\n", qPrintable(text));
    });
    QApplication application(argc, argv);
    QDir::setCurrent(before);
    surroundings.reset();
    QApplication::setApplicationName("Korvadex");
    QApplication::setWindowIcon(NamedIcon("korvadex"));
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication::setCursorFlashTime(0);
    if (options.isDark || !options.isShown)
        QApplication::setStyle("Fusion");
    if (options.isDark)
        QApplication::setPalette(DarkPalette());

    Tour tour(options.directory, options.ground.toStdString(), options.isSmall);
    const std::unique_ptr<QThread> person(QThread::create([&] {
        WalkAll(tour, options);
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    }));
    person->start();
    const int code = QApplication::exec();
    person->wait();
    return tour.FaultCount() > 0 ? 1 : code;
}

} // namespace

} // namespace korvadex::tour

int main(int argc, char** argv) {
    using namespace korvadex::tour;
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    try {
        return Run(argc, argv, ParseOptions(arguments));
    } catch (const std::exception& trouble) {
        std::fprintf(stderr, "%s\n", trouble.what());
        return 2;
    }
}
