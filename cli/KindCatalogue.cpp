#include "KindCatalogue.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QXmlStreamReader>

// The documents live in a static library: nothing else would pull their resource in.
static void loadIntrospectionDocuments()
{
    Q_INIT_RESOURCE(introspection);
}

namespace Introspection {

const QString applicationInterface = QStringLiteral("com.velk.mqx.MeasApplInterface");

namespace {

// Reads one <method> or <signal> element up to its end tag.
QString readMember(QXmlStreamReader &xml)
{
    const bool isMethod = xml.name() == QLatin1String("method");
    const QString name = xml.attributes().value(QLatin1String("name")).toString();
    QString in;
    QString out;
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("arg")) {
            const auto attributes = xml.attributes();
            const QString type = attributes.value(QLatin1String("type")).toString();
            // Method arguments are "in" unless said otherwise; signal arguments have no direction.
            if (isMethod && attributes.value(QLatin1String("direction")) == QLatin1String("out"))
                out += type;
            else
                in += type;
        }
        xml.skipCurrentElement();
    }
    if (isMethod)
        return QStringLiteral("method %1(%2)->(%3)").arg(name, in, out);
    return QStringLiteral("signal %1(%2)").arg(name, in);
}

} // namespace

std::optional<QStringList> interfaceMembers(const QString &xmlText)
{
    QXmlStreamReader xml(xmlText);
    std::optional<QStringList> members;
    if (!xml.readNextStartElement() || xml.name() != QLatin1String("node"))
        return std::nullopt;
    while (xml.readNextStartElement()) {
        if (xml.name() != QLatin1String("interface") ||
            xml.attributes().value(QLatin1String("name")) != applicationInterface) {
            xml.skipCurrentElement();
            continue;
        }
        QStringList list;
        while (xml.readNextStartElement()) {
            if (xml.name() == QLatin1String("method") || xml.name() == QLatin1String("signal"))
                list.append(readMember(xml));
            else
                xml.skipCurrentElement();
        }
        list.sort();
        members = list;
    }
    if (xml.hasError())
        return std::nullopt;
    return members;
}

QStringList childNodes(const QString &xmlText)
{
    QXmlStreamReader xml(xmlText);
    QStringList children;
    if (!xml.readNextStartElement() || xml.name() != QLatin1String("node"))
        return children;
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("node"))
            children.append(xml.attributes().value(QLatin1String("name")).toString());
        xml.skipCurrentElement();
    }
    return children;
}

} // namespace Introspection

KindCatalogue KindCatalogue::builtIn()
{
    loadIntrospectionDocuments();
    KindCatalogue catalogue;
    const QDir documents(QStringLiteral(":/introspection"));
    for (const QFileInfo &entry : documents.entryInfoList({QStringLiteral("*.xml")}, QDir::Files)) {
        QFile file(entry.filePath());
        if (file.open(QIODevice::ReadOnly))
            catalogue.addDocument(entry.completeBaseName(), QString::fromUtf8(file.readAll()));
    }
    return catalogue;
}

bool KindCatalogue::addDocument(const QString &kind, const QString &xml)
{
    const auto members = Introspection::interfaceMembers(xml);
    if (!members)
        return false;
    m_members.insert(kind, *members);
    return true;
}

std::optional<QString> KindCatalogue::infer(const QString &xml) const
{
    const auto members = Introspection::interfaceMembers(xml);
    if (!members)
        return std::nullopt;
    const QStringList matches = m_members.keys(*members);
    if (matches.size() != 1)
        return std::nullopt;
    return matches.first();
}
