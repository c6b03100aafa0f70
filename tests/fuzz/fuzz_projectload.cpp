// Feeds arbitrary bytes to the project loader, the way a damaged or hostile project file would
// reach it, and checks that what the model writes it reads back to the same.
#include "AgreeingMessageBox.h"
#include "IMessageBox.h"
#include "VTDocument.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

QTemporaryDir* s_pFolder = nullptr;

QJsonObject loadAndSave(const QJsonObject& input, bool* pbLoaded)
{
    VTDocument document;
    document.setFileName(s_pFolder->filePath(QStringLiteral("fuzz/fuzz.vetra")));
    QJsonObject output;
    *pbLoaded = document.loadData(input);
    if (*pbLoaded)
        document.saveData(output);
    return output;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* pArgc, char*** pArgv)
{
    static QCoreApplication app(*pArgc, *pArgv);
    static AgreeingMessageBox box;
    IMessageBox::setInstance(&box);
    qputenv("QT_LOGGING_RULES", "*.debug=false;*.warning=false");
    s_pFolder = new QTemporaryDir();
    QDir().mkpath(s_pFolder->filePath(QStringLiteral("fuzz/fuzz_res")));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    const QJsonDocument json =
        QJsonDocument::fromJson(QByteArray::fromRawData(reinterpret_cast<const char*>(pData), int(nSize)));
    if (!json.isObject())
        return 0;
    bool bLoaded = false;
    const QJsonObject first = loadAndSave(json.object(), &bLoaded);
    if (!bLoaded)
        return 0;
    // Whatever the first load kept, a second round must keep unchanged.
    const QJsonObject second = loadAndSave(first, &bLoaded);
    if (!bLoaded || second != first)
        abort();
    return 0;
}
