// Load and save of a large generated project through the model, against the bare JSON work on
// the same file: parse with QJsonDocument and a compact write. Prints both times, their ratio,
// and the heap the loaded model holds against the heap the parsed JSON holds.
//
// Usage: bench_projectload [ELEMENTS] [ROUNDS]   (defaults 10000 and 5)
#include "AgreeingMessageBox.h"
#include "IMessageBox.h"
#include "VTDocument.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTextStream>
#include <QUuid>

#include <malloc.h>

#include <algorithm>
#include <memory>

namespace {

size_t heapInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

QJsonObject block(int nIndex)
{
    const QJsonObject path{{"l", 10 + nIndex % 700},
                           {"t", 5 + nIndex % 500},
                           {"w", 40 + nIndex % 90},
                           {"h", 30 + nIndex % 60},
                           {"coordinateType", 0},
                           {"unitW", 0},
                           {"unitH", 0},
                           {"unitX", 0},
                           {"unitY", 0}};
    const QJsonObject transform{
        {"originX", 0.5}, {"originY", 0.5}, {"rotate", (nIndex * 7) % 360}, {"scaleX", 1}, {"scaleY", 1}};
    return {{"path", path},
            {"transform", transform},
            {"opacity", 1.0 - (nIndex % 10) * 0.05},
            {"background", QJsonObject{{"fillStyle", 1}, {"solidColor", int(0xff4a86e8)}}},
            {"border", QJsonObject{{"style", nIndex % 2}, {"width", 1}, {"color", int(0xff000000)}}}};
}

// The resource each kind that shows one refers to: see generateResources.
int resourceOfKind(int nKind)
{
    switch (nKind) {
    case 0:
        return 1;
    case 1:
        return 2;
    case 2:
        return 3;
    case 7:
        return 4;
    default:
        return -1;
    }
}

// Every kind in rotation, with groups holding the next few elements.
QJsonArray generateElements(int nCount, int* pnNextId)
{
    static const int s_anKinds[] = {0, 1, 2, 3, 4, 5, 6, 7, 9, 11};
    constexpr int nKinds = sizeof(s_anKinds) / sizeof(s_anKinds[0]);
    QJsonArray elements;
    while (*pnNextId <= nCount) {
        const int nId = (*pnNextId)++;
        const int nKind = s_anKinds[nId % nKinds];
        QJsonObject element{{"type", nKind},
                            {"id", nId},
                            {"name", QStringLiteral("e%1").arg(nId)},
                            {"respProps", QJsonArray{QJsonObject{
                                              {"hLayoutId", 0}, {"vLayoutId", 0}, {"values", block(nId)}}}}};
        if (resourceOfKind(nKind) > 0)
            element.insert("resourceId", resourceOfKind(nKind));
        if (nKind == 6) {
            QJsonArray children;
            for (int i = 0; i < 4 && *pnNextId <= nCount; ++i) {
                const int nChild = (*pnNextId)++;
                children.append(QJsonObject{
                    {"type", 5},
                    {"id", nChild},
                    {"name", QStringLiteral("e%1").arg(nChild)},
                    {"respProps", QJsonArray{QJsonObject{
                                      {"hLayoutId", 0}, {"vLayoutId", 0}, {"values", block(nChild)}}}}});
            }
            element.insert("children", children);
        }
        elements.append(element);
    }
    return elements;
}

QByteArray generateProject(int nElements)
{
    int nNextId = 1;
    QJsonArray scenes;
    const int nPerScene = std::max(1, nElements / 2);
    for (int nScene = 1; nScene <= 2; ++nScene) {
        QJsonObject scene{
            {"type", 8},
            {"id", nScene},
            {"name", QStringLiteral("Scene_%1").arg(nScene)},
            {"nextChildId", nElements + 1},
            {"respProps", QJsonArray{QJsonObject{{"hLayoutId", 0}, {"vLayoutId", 0}, {"values", block(0)}}}},
            {"children", generateElements(nScene * nPerScene, &nNextId)}};
        scenes.append(scene);
    }
    const auto resource = [](int nId, int nType, const QString& fileName) {
        QJsonObject object{{"id", nId},
                           {"uuid", QUuid::createUuid().toString()},
                           {"name", fileName},
                           {"type", nType},
                           {"dataSize", 4}};
        if (nType == 1 || nType == 2)
            object.insert("fileNames", QJsonArray{fileName});
        else
            object.insert("fileName", fileName);
        return object;
    };
    const QJsonArray resources{resource(1, 0, "logo.png"), resource(2, 1, "chime.mp3"),
                               resource(3, 2, "clip.webm"), resource(4, 3, "badge.vetrasym")};
    const QJsonObject document{
        {"docVersion", 3}, {"width", 800}, {"height", 600}, {"resources", resources}, {"scenes", scenes}};
    return QJsonDocument(QJsonObject{{"appName", "Vetra Studio"}, {"document", document}})
        .toJson(QJsonDocument::Compact);
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    AgreeingMessageBox box;
    IMessageBox::setInstance(&box);
    const int nElements = argc > 1 ? std::max(1, atoi(argv[1])) : 10000;
    const int nRounds = argc > 2 ? std::max(1, atoi(argv[2])) : 5;
    QTextStream out(stdout);

    QTemporaryDir dir;
    const QString sourcePath = dir.filePath("source/source.vetra");
    QDir().mkpath(dir.filePath("source/source_res"));
    for (const char* pszFile : {"logo.png", "chime.mp3", "clip.webm"}) {
        QFile file(dir.filePath(QStringLiteral("source/source_res/") + QLatin1String(pszFile)));
        file.open(QIODevice::WriteOnly);
        file.write("data");
    }
    {
        QFile file(dir.filePath("source/source_res/badge.vetrasym"));
        file.open(QIODevice::WriteOnly);
        file.write(R"({"width":100,"height":60,"scenes":[]})");
    }
    int nLoadedElements = 0;
    {
        // The model's own form of the generated content is what is measured.
        QFile file(sourcePath);
        file.open(QIODevice::WriteOnly);
        file.write(generateProject(nElements));
        file.close();
        VTDocument document;
        document.setFileName(sourcePath);
        if (!document.open() || !document.save()) {
            out << "the generated project does not load\n";
            return 1;
        }
        nLoadedElements = document.getElementCount();
        if (!document.getLoadProblems().isEmpty())
            out << "load problems: " << document.getLoadProblems().join(QStringLiteral("; ")) << '\n';
    }
    QFile source(sourcePath);
    source.open(QIODevice::ReadOnly);
    const QByteArray data = source.readAll();
    source.close();

    qint64 nBestJson = -1;
    qint64 nBestModel = -1;
    size_t nJsonHeap = 0;
    size_t nModelHeap = 0;
    for (int nRound = 0; nRound < nRounds; ++nRound) {
        QElapsedTimer timer;
        const size_t nBefore = heapInUse();
        timer.start();
        {
            // The same file work as the model does: read, parse, write compact, save.
            QFile in(sourcePath);
            in.open(QIODevice::ReadOnly);
            const QJsonDocument json = QJsonDocument::fromJson(in.readAll());
            in.close();
            nJsonHeap = heapInUse() - nBefore;
            QFile written(dir.filePath("bare.json"));
            written.open(QIODevice::WriteOnly);
            written.write(json.toJson(QJsonDocument::Compact));
        }
        const qint64 nJson = timer.nsecsElapsed();
        nBestJson = nBestJson < 0 ? nJson : std::min(nBestJson, nJson);

        const size_t nModelBefore = heapInUse();
        timer.restart();
        {
            VTDocument document;
            document.setFileName(sourcePath);
            document.open();
            nModelHeap = heapInUse() - nModelBefore;
            document.save();
        }
        const qint64 nModel = timer.nsecsElapsed();
        nBestModel = nBestModel < 0 ? nModel : std::min(nBestModel, nModel);
    }

    out << QStringLiteral("project: %1 elements (%2 loaded), %3 KiB, best of %4 rounds\n")
               .arg(nElements)
               .arg(nLoadedElements)
               .arg(data.size() / 1024)
               .arg(nRounds);
    out << QStringLiteral("bare JSON parse + compact write: %1 ms\n").arg(nBestJson / 1e6, 0, 'f', 1);
    out << QStringLiteral("model load + save:              %1 ms\n").arg(nBestModel / 1e6, 0, 'f', 1);
    out << QStringLiteral("ratio: %1 (target: at most 3)\n").arg(double(nBestModel) / nBestJson, 0, 'f', 2);
    out << QStringLiteral(
               "heap of parsed JSON: %1 KiB, of the loaded model: %2 KiB, ratio %3 (target: at most 3)\n")
               .arg(nJsonHeap / 1024)
               .arg(nModelHeap / 1024)
               .arg(double(nModelHeap) / std::max<size_t>(1, nJsonHeap), 0, 'f', 2);
    IMessageBox::setInstance(nullptr);
    return 0;
}
