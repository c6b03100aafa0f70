// Packing and unpacking of a large generated project, against a plain copy of its resource
// folder on the same disk. Most of the data is incompressible, as media and pictures are; a fifth
// is text, as scripts, style sheets and SVG are. Prints times and throughput in MiB/s of the
// project's resource bytes.
//
// Usage: bench_package [MEBIBYTES]   (default 500)
#include "AgreeingMessageBox.h"
#include "IMessageBox.h"
#include "IUtils.h"
#include "MediaResource.h"
#include "VTDocument.h"
#include "VTPackage.h"
#include "VTResource.h"
#include "VTResourceManager.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>

namespace {

constexpr qint64 s_nMiB = 1024 * 1024;
// Large enough to stand for a video, small enough that a small run still has several files.
constexpr qint64 s_nLargestFile = 64 * s_nMiB;

bool writeNoise(const QString& path, qint64 nSize, quint32 nSeed)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QRandomGenerator generator(nSeed);
    QByteArray block(int(s_nMiB), Qt::Uninitialized);
    for (qint64 nLeft = nSize; nLeft > 0; nLeft -= block.size()) {
        generator.fillRange(reinterpret_cast<quint32*>(block.data()), block.size() / 4);
        const qint64 nPart = std::min<qint64>(nLeft, block.size());
        if (file.write(block.constData(), nPart) != nPart)
            return false;
    }
    return true;
}

bool writeText(const QString& path, qint64 nSize, int nSeed)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QByteArray block;
    for (int nLine = 0; block.size() < s_nMiB; ++nLine)
        block += QStringLiteral("  .e%1 { left: %2px; top: %3px; opacity: 0.%4; } /* layer %5 */\n")
                     .arg(nLine)
                     .arg((nLine * 37 + nSeed) % 1000)
                     .arg((nLine * 91) % 700)
                     .arg(nLine % 10)
                     .arg(nSeed)
                     .toUtf8();
    for (qint64 nLeft = nSize; nLeft > 0; nLeft -= block.size()) {
        const qint64 nPart = std::min<qint64>(nLeft, block.size());
        if (file.write(block.constData(), nPart) != nPart)
            return false;
    }
    return true;
}

// Resource files written straight into the folder and registered, as imports would leave them.
bool generateProject(VTDocument* pDocument, qint64 nTotal, int* pnFiles)
{
    if (!pDocument->openTempDocument(800, 600, 1, false))
        return false;
    VTResourceManager* pManager = pDocument->getResourceManager();
    const QString folder = pManager->getTempPath();
    const qint64 nText = nTotal / 5;
    qint64 nWritten = 0;
    int nIndex = 0;
    while (nWritten < nTotal) {
        const bool bText = nWritten < nText;
        const qint64 nSize =
            std::min(bText ? std::max<qint64>(1, nText / 8) : s_nLargestFile, nTotal - nWritten);
        VTResource* pResource = nullptr;
        QString fileName;
        if (bText) {
            fileName = QStringLiteral("style%1.css").arg(nIndex);
            pResource = new VTResource(VTResource::Other);
            if (!writeText(folder + fileName, nSize, nIndex))
                return false;
        } else {
            fileName = QStringLiteral("clip%1.mp4").arg(nIndex);
            pResource = new MediaResource(VTResource::Video);
            if (!writeNoise(folder + fileName, nSize, quint32(nIndex)))
                return false;
        }
        pResource->setName(QFileInfo(fileName).completeBaseName());
        pResource->setFileName(fileName);
        pResource->setDataSize(nSize);
        pManager->addResource(pResource);
        nWritten += nSize;
        ++nIndex;
    }
    *pnFiles = nIndex;
    return pDocument->save();
}

QString rate(qint64 nBytes, qint64 nNanoseconds)
{
    const double dSeconds = std::max<double>(1e-9, nNanoseconds / 1e9);
    return QStringLiteral("%1 s, %2 MiB/s")
        .arg(dSeconds, 0, 'f', 2)
        .arg(nBytes / double(s_nMiB) / dSeconds, 0, 'f', 1);
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    AgreeingMessageBox box;
    IMessageBox::setInstance(&box);
    const qint64 nMebibytes = argc > 1 ? std::max(1, atoi(argv[1])) : 500;
    const qint64 nTotal = nMebibytes * s_nMiB;
    QTextStream out(stdout);

    QTemporaryDir dir;
    if (!dir.isValid()) {
        out << "no temporary folder\n";
        return 1;
    }
    QDir(dir.path()).mkpath(QStringLiteral("source"));
    int nFiles = 0;
    VTDocument document;
    document.setFileName(dir.filePath(QStringLiteral("source/source.vetra")));
    out << QStringLiteral("generating %1 MiB...\n").arg(nMebibytes);
    out.flush();
    if (!generateProject(&document, nTotal, &nFiles)) {
        out << "the project could not be generated\n";
        return 1;
    }

    QElapsedTimer timer;
    timer.start();
    const bool bCopied =
        IUtils::copyDir(document.getResourceFolderPath(), dir.filePath(QStringLiteral("copy")));
    const qint64 nCopy = timer.nsecsElapsed();
    IUtils::removeDir(dir.filePath(QStringLiteral("copy")));

    const QString package = dir.filePath(QStringLiteral("source.vetrapack"));
    timer.restart();
    const bool bPacked = VTPackage::save(document, package, false);
    const qint64 nPack = timer.nsecsElapsed();

    const QString folder = dir.filePath(QStringLiteral("Unpacked"));
    QDir().mkpath(folder);
    timer.restart();
    const bool bUnpacked = bPacked && VTPackage::extract(package, folder);
    const qint64 nUnpack = timer.nsecsElapsed();

    out << QStringLiteral("project: %1 MiB in %2 files, a fifth of it text\n").arg(nMebibytes).arg(nFiles);
    out << QStringLiteral("plain copy of the resources: %1%2\n")
               .arg(rate(nTotal, nCopy), bCopied ? QString() : QStringLiteral(" (failed)"));
    if (!bPacked) {
        out << "pack failed\n";
        return 1;
    }
    const qint64 nPackage = QFileInfo(package).size();
    out << QStringLiteral("pack:   %1, package %2 MiB (%3 % of the data)\n")
               .arg(rate(nTotal, nPack))
               .arg(nPackage / s_nMiB)
               .arg(100.0 * nPackage / nTotal, 0, 'f', 1);
    out << QStringLiteral("unpack: %1%2\n")
               .arg(rate(nTotal, nUnpack), bUnpacked ? QString() : QStringLiteral(" (failed)"));
    IMessageBox::setInstance(nullptr);
    return bUnpacked ? 0 : 1;
}
