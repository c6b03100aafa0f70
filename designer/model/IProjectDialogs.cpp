#include "IProjectDialogs.h"

namespace {

class RefusingProjectDialogs final : public IProjectDialogs
{
public:
    bool askProjectLocation(const QString&, const QString&, const QString&, QString* pFilePath) override
    {
        if (pFilePath)
            pFilePath->clear();
        return false;
    }
};

RefusingProjectDialogs s_refusingDialogs;
IProjectDialogs* s_pInstalledDialogs = nullptr;

} // namespace

IProjectDialogs* IProjectDialogs::instance()
{
    return s_pInstalledDialogs ? s_pInstalledDialogs : &s_refusingDialogs;
}

void IProjectDialogs::setInstance(IProjectDialogs* pDialogs)
{
    s_pInstalledDialogs = pDialogs;
}
