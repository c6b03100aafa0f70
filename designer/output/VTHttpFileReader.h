#pragma once

#include <QObject>

class QFile;
class VTHttpConnection;
class VTHttpRequest;
class VTHttpResponse;

// Sends one file, or a part of it, as the body of a response, in blocks of 1 MiB: the next
// block is read only when the client has taken everything written so far, so however large the
// file, at most one block of it is in memory. It deletes itself when the body is complete or the
// client has gone.
class VTHttpFileReader final : public QObject
{
    Q_OBJECT
public:
    static constexpr qint64 s_nBlockSize = 1048576;

    // Takes the open file over, positioned where the body starts. nBytes: the body's length, or
    // -1 for the rest of the file.
    VTHttpFileReader(QObject* parent, QFile* pFile, VTHttpRequest* pRequest, VTHttpResponse* pResponse,
                     qint64 nBytes);
    ~VTHttpFileReader() override;

    // Writes the first block. A body that is complete with it leaves the reader done and not yet
    // deleted, for the caller to delete at once.
    void start();
    bool isDone() const { return m_bDone; }
    qint64 getBytesLeft() const { return m_nBytesLeft; }

public slots:
    void readNextBlock();
    void connectionClosed();
    void objectDestroyed(QObject* pObject);
    // Lets go of everything and closes the file.
    void cleanup();

private:
    void watch();
    void finish();

    QFile* m_pFile = nullptr;
    VTHttpRequest* m_pRequest = nullptr;
    VTHttpResponse* m_pResponse = nullptr;
    VTHttpConnection* m_pConnection = nullptr;
    qint64 m_nBytesLeft = -1;
    // The first block is under way; the caller still holds the reader.
    bool m_bStarting = false;
    bool m_bWatching = false;
    bool m_bDone = false;
};
