#include "VTCliApplication.h"

#include "IUtils.h"

#include <QTextStream>

VTCliApplication::VTCliApplication() = default;

VTCliApplication::~VTCliApplication() = default;

void VTCliApplication::addCommand(std::unique_ptr<VTCliCommand> pCommand)
{
    if (pCommand && !findCommand(pCommand->getName()))
        m_lstCommands.push_back(std::move(pCommand));
}

VTCliCommand* VTCliApplication::findCommand(const QString& name) const
{
    for (const auto& pCommand : m_lstCommands) {
        if (pCommand->getName() == name)
            return pCommand.get();
    }
    return nullptr;
}

QString VTCliApplication::getUsage() const
{
    QString usage = tr("Usage: vetra <command> [arguments]\n"
                       "       vetra --help | --version\n"
                       "\n"
                       "Works on %1 projects without a window.\n"
                       "\n"
                       "Commands:\n")
                        .arg(IUtils::getApplicationName());
    int nWidth = 0;
    for (const auto& pCommand : m_lstCommands)
        nWidth =
            qMax(nWidth, (pCommand->getName() + QLatin1Char(' ') + pCommand->getArgumentsSyntax()).size());
    for (const auto& pCommand : m_lstCommands) {
        const QString synopsis = pCommand->getName() + QLatin1Char(' ') + pCommand->getArgumentsSyntax();
        usage += QStringLiteral("  %1  %2\n").arg(synopsis.leftJustified(nWidth), pCommand->getSummary());
    }
    return usage;
}

int VTCliApplication::run(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    if (arguments.isEmpty()) {
        err << getUsage();
        return VTCliCommand::s_nExitUsage;
    }
    const QString first = arguments.first();
    if (first == QLatin1String("--help") || first == QLatin1String("-h") || first == QLatin1String("help")) {
        out << getUsage();
        return VTCliCommand::s_nExitSuccess;
    }
    if (first == QLatin1String("--version") || first == QLatin1String("-v")) {
        out << QStringLiteral("vetra %1\n").arg(IUtils::getApplicationVersion());
        return VTCliCommand::s_nExitSuccess;
    }
    VTCliCommand* pCommand = findCommand(first);
    if (!pCommand) {
        err << tr("vetra: unknown command \"%1\"").arg(first) << '\n' << getUsage();
        return VTCliCommand::s_nExitUsage;
    }
    return pCommand->run(arguments.mid(1), out, err);
}
