#include "Introspection.h"

#include "Element.h"

#include <QFile>

static void initResources()
{
    Q_INIT_RESOURCE(introspection);
}

namespace Introspection {

static const QString doctype =
    QStringLiteral("<!DOCTYPE node PUBLIC \"-//freedesktop//DTD D-BUS Object Introspection 1.0//EN\"\n"
                   " \"http://www.freedesktop.org/standards/dbus/1.0/introspect.dtd\">\n");

QStringList splitSignature(const QString &signature)
{
    QStringList types;
    int start = 0;
    while (start < signature.size()) {
        int end = start;
        while (end < signature.size() && signature.at(end) == QLatin1Char('a'))
            ++end;
        if (end < signature.size() &&
            (signature.at(end) == QLatin1Char('(') || signature.at(end) == QLatin1Char('{'))) {
            int depth = 0;
            do {
                const QChar c = signature.at(end);
                if (c == QLatin1Char('(') || c == QLatin1Char('{'))
                    ++depth;
                else if (c == QLatin1Char(')') || c == QLatin1Char('}'))
                    --depth;
                ++end;
            } while (depth > 0 && end < signature.size());
        } else {
            ++end;
        }
        types.append(signature.mid(start, end - start));
        start = end;
    }
    return types;
}

static QString arguments(const QString &signature, const QString &direction)
{
    QString xml;
    for (const QString &type : splitSignature(signature)) {
        xml += QStringLiteral("      <arg type=\"%1\"%2/>\n")
                   .arg(type, direction.isEmpty() ? QString() : QStringLiteral(" direction=\"%1\"").arg(direction));
    }
    return xml;
}

static QString generatedInterface(const Element &element)
{
    QString xml = QStringLiteral("  <interface name=\"%1\">\n").arg(element.interfaceName());
    for (const Element::SignalEntry &entry : element.signalEntries()) {
        xml += QStringLiteral("    <signal name=\"%1\">\n").arg(entry.member) + arguments(entry.signature, QString()) +
            QStringLiteral("    </signal>\n");
    }
    for (const Element::MemberEntry &entry : element.members()) {
        xml += QStringLiteral("    <method name=\"%1\">\n").arg(entry.member) +
            arguments(entry.inSignature, QStringLiteral("in")) + arguments(entry.outSignature, QStringLiteral("out")) +
            QStringLiteral("    </method>\n");
    }
    return xml + QStringLiteral("  </interface>\n");
}

QString document(const Element *element, const QStringList &children)
{
    initResources();
    QString xml;
    if (element) {
        QFile shipped(QStringLiteral(":/introspection/%1.xml").arg(element->proxyClass()));
        if (shipped.open(QIODevice::ReadOnly))
            xml = QString::fromUtf8(shipped.readAll());
        else
            xml = doctype + QStringLiteral("<node>\n") + generatedInterface(*element) + QStringLiteral("</node>\n");
    } else {
        xml = doctype + QStringLiteral("<node>\n</node>\n");
    }
    QString nodes = QStringLiteral("  <interface name=\"org.freedesktop.DBus.Introspectable\">\n"
                                   "    <method name=\"Introspect\">\n"
                                   "      <arg name=\"xml_data\" type=\"s\" direction=\"out\"/>\n"
                                   "    </method>\n"
                                   "  </interface>\n");
    if (xml.contains(QLatin1String("org.freedesktop.DBus.Introspectable")))
        nodes.clear();
    for (const QString &child : children)
        nodes += QStringLiteral("  <node name=\"%1\"/>\n").arg(child);
    const int close = xml.lastIndexOf(QLatin1String("</node>"));
    xml.insert(close < 0 ? xml.size() : close, nodes);
    return xml;
}

} // namespace Introspection
