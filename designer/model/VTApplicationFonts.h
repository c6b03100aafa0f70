#pragma once

#include <QList>
#include <QString>

#include <functional>

class VTResourceManager;

// The fonts that one project registered with the application, so that closing it removes its
// own fonts and not those of another open project.
class VTApplicationFonts final
{
public:
    VTApplicationFonts() = default;
    ~VTApplicationFonts() { removeAll(); }
    VTApplicationFonts(const VTApplicationFonts&) = delete;
    VTApplicationFonts& operator=(const VTApplicationFonts&) = delete;

    // Registers each font resource that is not deleted and records its family on it. status is
    // told the progress and, at the end, an empty text.
    void registerAll(VTResourceManager* pManager, const std::function<void(const QString&)>& status);
    void removeAll();
    int getCount() const { return m_lstIds.size(); }

private:
    QList<int> m_lstIds;
};
