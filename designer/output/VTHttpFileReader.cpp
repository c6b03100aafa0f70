#include "VTHttpFileReader.h"

#include "VTHttpConnection.h"
#include "VTHttpRequest.h"
#include "VTHttpResponse.h"

#include <QFile>

VTHttpFileReader::VTHttpFileReader(QObject* parent, QFile* pFile, VTHttpRequest* pRequest,
                                   VTHttpResponse* pResponse, qint64 nBytes)
    : QObject(parent)
    , m_pFile(pFile)
    , m_pRequest(pRequest)
    , m_pResponse(pResponse)
    , m_pConnection(pResponse ? pResponse->getConnection() : nullptr)
    , m_nBytesLeft(nBytes)
{}

void VTHttpFileReader::watch()
{
    m_bWatching = true;
    if (m_pResponse)
        connect(m_pResponse, &VTHttpResponse::allBytesWritten, this, &VTHttpFileReader::readNextBlock);
    if (m_pConnection)
        connect(m_pConnection, &VTHttpConnection::disconnected, this, &VTHttpFileReader::connectionClosed);
    for (QObject* pObject : {static_cast<QObject*>(m_pFile), static_cast<QObject*>(m_pRequest),
                             static_cast<QObject*>(m_pResponse), static_cast<QObject*>(m_pConnection)}) {
        if (pObject)
            connect(pObject, &QObject::destroyed, this, &VTHttpFileReader::objectDestroyed);
    }
}

VTHttpFileReader::~VTHttpFileReader()
{
    cleanup();
}

void VTHttpFileReader::start()
{
    // A response whose connection is gone already can never be completed.
    if (!m_pConnection || m_pConnection->isClosed()) {
        connectionClosed();
        return;
    }
    m_bStarting = true;
    readNextBlock();
    m_bStarting = false;
    // Only a body that takes more than one turn needs to hear of the client and of the objects
    // it uses; most answers are complete with their first block.
    if (!m_bDone)
        watch();
}

void VTHttpFileReader::readNextBlock()
{
    if (m_bDone || !m_pFile || !m_pResponse)
        return;
    // -1 taken as unsigned asks for a whole block.
    const qint64 nWanted = qint64(qMin(quint64(m_nBytesLeft), quint64(s_nBlockSize)));
    if (nWanted <= 0) {
        finish();
        return;
    }
    // The block is handed to the socket, which copies it, before the next reader reads: one
    // block serves all readers of the thread.
    static thread_local QByteArray s_block;
    if (s_block.size() < s_nBlockSize)
        s_block.resize(int(s_nBlockSize));
    const qint64 nRead = m_pFile->read(s_block.data(), nWanted);
    if (nRead <= 0) {
        finish();
        return;
    }
    if (m_nBytesLeft > 0)
        m_nBytesLeft -= nRead;
    // The last block ends the response at once instead of after one more turn with the client:
    // a file read short is at its end.
    const bool bLast = m_nBytesLeft == 0 || nRead < nWanted;
    if (!m_pResponse->write(s_block.constData(), nRead)) {
        connectionClosed();
        return;
    }
    if (bLast) {
        finish();
        return;
    }
    // The system took the whole block at once, so no allBytesWritten will come for it: the next
    // block follows on the next turn of the event loop, after whatever else waits there.
    if (m_pResponse && m_pResponse->isAllWritten())
        QMetaObject::invokeMethod(this, &VTHttpFileReader::readNextBlock, Qt::QueuedConnection);
}

void VTHttpFileReader::finish()
{
    m_bDone = true;
    if (m_pResponse)
        m_pResponse->end();
    cleanup();
    if (!m_bStarting)
        deleteLater();
}

void VTHttpFileReader::connectionClosed()
{
    m_bDone = true;
    cleanup();
    if (!m_bStarting)
        deleteLater();
}

void VTHttpFileReader::objectDestroyed(QObject* pObject)
{
    if (pObject == m_pRequest) {
        m_pRequest = nullptr;
        return;
    }
    if (pObject == m_pFile)
        m_pFile = nullptr;
    else if (pObject == m_pResponse)
        m_pResponse = nullptr;
    else if (pObject == m_pConnection)
        m_pConnection = nullptr;
    else
        return;
    // Without its file, response or connection the body can never be completed.
    connectionClosed();
}

void VTHttpFileReader::cleanup()
{
    for (QObject* pObject : {static_cast<QObject*>(m_pFile), static_cast<QObject*>(m_pRequest),
                             static_cast<QObject*>(m_pResponse), static_cast<QObject*>(m_pConnection)}) {
        if (pObject && m_bWatching)
            disconnect(pObject, nullptr, this, nullptr);
    }
    m_bWatching = false;
    m_pRequest = nullptr;
    m_pResponse = nullptr;
    m_pConnection = nullptr;
    if (m_pFile) {
        m_pFile->close();
        delete m_pFile;
        m_pFile = nullptr;
    }
}
