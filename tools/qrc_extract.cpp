// Copies a file out of Qt's compiled-in resources, so pages loaded from file:// can use
// Qt's own page-side web channel script.
#include <QCoreApplication>
#include <QFile>
#include <QSaveFile>
#include <QtWebChannel/QWebChannel>
#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "usage: qrc_extract :/resource/path output-file\n");
        return 2;
    }
    // Referencing the class keeps the web channel library, which owns the resource, linked.
    QWebChannel channel;
    QFile in(QString::fromLocal8Bit(argv[1]));
    if (!in.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "qrc_extract: cannot read %s\n", argv[1]);
        return 1;
    }
    QSaveFile out(QString::fromLocal8Bit(argv[2]));
    if (!out.open(QIODevice::WriteOnly) || out.write(in.readAll()) < 0 || !out.commit()) {
        std::fprintf(stderr, "qrc_extract: cannot write %s\n", argv[2]);
        return 1;
    }
    return 0;
}
