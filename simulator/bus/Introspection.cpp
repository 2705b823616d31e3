#include "Introspection.h"

#include "Element.h"

#include <KindTable.h>

#include <QFile>

static void initResources()
{
    Q_INIT_RESOURCE(simulator);
}

namespace Introspection {

static const QString doctype =
    QStringLiteral("<!DOCTYPE node PUBLIC \"-//freedesktop//DTD D-BUS Object Introspection 1.0//EN\"\n"
                   " \"http://www.freedesktop.org/standards/dbus/1.0/introspect.dtd\">\n");

QString document(const Element *element, const QStringList &children)
{
    initResources();
    QString xml;
    if (element && element->kind()) {
        xml = KindTable::document(*element->kind());
    } else if (element) {
        QFile own(QStringLiteral(":/simulator/%1.xml").arg(element->proxyClass()));
        own.open(QIODevice::ReadOnly);
        xml = QString::fromUtf8(own.readAll());
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
