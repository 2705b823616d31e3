#include "InterfaceDocument.h"

#include "MeasApplNames_p.h"

#include <QXmlStreamReader>

const QString InterfaceDocument::kindNameAnnotation = QStringLiteral("org.dbusinterfaces.KindName");
const QString InterfaceDocument::familyAnnotation = QStringLiteral("org.dbusinterfaces.Family");

namespace {

QString attribute(const QXmlStreamReader &xml, const char *name)
{
    return xml.attributes().value(QLatin1String(name)).toString();
}

// Reads one <method> or <signal> up to its end tag; the caller files it.
void readMember(QXmlStreamReader &xml, InterfaceDocument &document)
{
    const bool isMethod = xml.name() == QLatin1String("method");
    const QString name = attribute(xml, "name");
    QString in;
    QString out;
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("arg")) {
            // Method arguments are "in" unless said otherwise; signal arguments have no direction.
            if (isMethod && attribute(xml, "direction") == QLatin1String("out"))
                out += attribute(xml, "type");
            else
                in += attribute(xml, "type");
        }
        xml.skipCurrentElement();
    }
    if (isMethod)
        document.methods.append({name, in, out});
    else
        document.busSignals.append({name, in});
}

void readApplicationInterface(QXmlStreamReader &xml, InterfaceDocument &document)
{
    document.hasApplicationInterface = true;
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("method") || xml.name() == QLatin1String("signal")) {
            readMember(xml, document);
            continue;
        }
        if (xml.name() == QLatin1String("annotation")) {
            const QString name = attribute(xml, "name");
            if (name == InterfaceDocument::kindNameAnnotation)
                document.kindName = attribute(xml, "value");
            else if (name == InterfaceDocument::familyAnnotation)
                document.family = attribute(xml, "value");
        }
        xml.skipCurrentElement();
    }
}

} // namespace

std::optional<InterfaceDocument> InterfaceDocument::parse(const QString &text, QString *why)
{
    QXmlStreamReader xml(text);
    InterfaceDocument document;
    if (!xml.readNextStartElement() || xml.name() != QLatin1String("node")) {
        if (why)
            *why = xml.hasError() ? xml.errorString() : QStringLiteral("no <node> element");
        return std::nullopt;
    }
    while (xml.readNextStartElement()) {
        const bool isInterface = xml.name() == QLatin1String("interface");
        if (isInterface)
            document.interfaces.append(attribute(xml, "name"));
        if (isInterface && document.interfaces.last() == QLatin1String(MeasAppl::interfaceName))
            readApplicationInterface(xml, document);
        else if (xml.name() == QLatin1String("node")) {
            document.childNodes.append(attribute(xml, "name"));
            xml.skipCurrentElement();
        } else
            xml.skipCurrentElement();
    }
    if (xml.hasError()) {
        if (why)
            *why = QStringLiteral("line %1: %2").arg(xml.lineNumber()).arg(xml.errorString());
        return std::nullopt;
    }
    return document;
}

QStringList InterfaceDocument::memberTexts() const
{
    QStringList texts;
    for (const Method &method : methods)
        texts.append(QStringLiteral("method %1(%2)->(%3)").arg(method.name, method.inSignature, method.outSignature));
    for (const Signal &signal : busSignals)
        texts.append(QStringLiteral("signal %1(%2)").arg(signal.name, signal.signature));
    texts.sort();
    return texts;
}
