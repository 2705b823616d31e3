#include "KindTable.h"

#include "InterfaceDocument.h"

#include <QFile>

// The documents live in a static library: nothing else would pull their resource in.
static void loadInterfaceDocuments()
{
    Q_INIT_RESOURCE(interfaces);
}

namespace KindTable {

const Method *Kind::method(const QString &name, const QString &inSignature) const
{
    for (const Method &m : methods()) {
        if (name == QLatin1String(m.name) && inSignature == QLatin1String(m.inSignature))
            return &m;
    }
    return nullptr;
}

QStringList Kind::inSignatures(const QString &name) const
{
    QStringList found;
    for (const Method &m : methods()) {
        if (name == QLatin1String(m.name))
            found.append(QString::fromLatin1(m.inSignature));
    }
    return found;
}

const BusSignal *Kind::busSignal(const QString &name) const
{
    for (const BusSignal &s : busSignals()) {
        if (name == QLatin1String(s.name))
            return &s;
    }
    return nullptr;
}

QStringList Kind::memberTexts() const
{
    InterfaceDocument document;
    for (const Method &m : methods())
        document.methods.append(
            {QString::fromLatin1(m.name), QString::fromLatin1(m.inSignature), QString::fromLatin1(m.outSignature)});
    for (const BusSignal &s : busSignals())
        document.busSignals.append({QString::fromLatin1(s.name), QString::fromLatin1(s.signature)});
    return document.memberTexts();
}

int count()
{
    return int(end() - begin());
}

const Kind *find(const QString &name)
{
    for (const Kind &kind : all()) {
        if (name.compare(QLatin1String(kind.className), Qt::CaseInsensitive) == 0 ||
            name.compare(QLatin1String(kind.shortName), Qt::CaseInsensitive) == 0)
            return &kind;
    }
    return nullptr;
}

QStringList classNames(std::initializer_list<Family> families)
{
    QStringList names;
    for (const Kind &kind : all()) {
        for (Family family : families) {
            if (kind.family == family)
                names.append(QString::fromLatin1(kind.className));
        }
    }
    return names;
}

QString familyName(Family family)
{
    switch (family) {
    case Family::Setup:
        return QStringLiteral("setup");
    case Family::Result:
        return QStringLiteral("result");
    case Family::Command:
        return QStringLiteral("command");
    }
    return QString();
}

QString document(const Kind &kind)
{
    loadInterfaceDocuments();
    QFile file(QStringLiteral(":/interfaces/%1.xml").arg(QLatin1String(kind.className)));
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromUtf8(file.readAll());
}

const Kind *inferred(const QString &xml)
{
    const auto document = InterfaceDocument::parse(xml);
    if (!document || !document->hasApplicationInterface)
        return nullptr;
    const QStringList members = document->memberTexts();
    const Kind *match = nullptr;
    for (const Kind &kind : all()) {
        if (kind.memberTexts() != members)
            continue;
        if (match)
            return nullptr;
        match = &kind;
    }
    return match;
}

} // namespace KindTable
