#include "ElementKinds.h"

#include "KindSupport.h"

#include "RemoteCommandInterface.h"

namespace {

KindList makeKinds()
{
    KindList kinds;
    addSetupKinds(kinds);
    addResultKinds(kinds);
    addCommandKind(kinds);
    return kinds;
}

} // namespace

void addCommandKind(KindList &kinds)
{
    // The application's root object: reached through the exec command only.
    kinds.push_back(std::make_unique<KindOf<RemoteCommandInterface>>(
        "RemoteCommandInterface", "command", "the application's root object (see exec)", KindSyntax{}));
}

namespace ElementKinds {

const std::vector<std::unique_ptr<ElementKind>> &all()
{
    static const KindList kinds = makeKinds();
    return kinds;
}

const ElementKind *find(const QString &name)
{
    for (const auto &kind : all()) {
        if (kind->className().compare(name, Qt::CaseInsensitive) == 0 ||
            kind->shortName().compare(name, Qt::CaseInsensitive) == 0)
            return kind.get();
    }
    return nullptr;
}

QString helpText()
{
    QString text;
    for (const auto &kind : all())
        text +=
            QStringLiteral("  %1 %2 %3\n").arg(kind->shortName(), -17).arg(kind->className(), -31).arg(kind->summary());
    return text;
}

} // namespace ElementKinds
