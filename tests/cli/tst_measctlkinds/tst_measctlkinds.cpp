#include "ElementKinds.h"
#include "KindCatalogue.h"

#include <QFile>
#include <QtTest/QTest>

namespace {

QString document(const QString &members, const QString &interface = Introspection::applicationInterface)
{
    return QStringLiteral("<node><interface name=\"%1\">%2</interface></node>").arg(interface, members);
}

const QString intMembers = QStringLiteral(
    "<signal name=\"setupChanged\"><arg type=\"i\"/></signal>"
    "<method name=\"setValue\"><arg direction=\"in\" type=\"i\"/><arg direction=\"out\" type=\"b\"/></method>"
    "<method name=\"getValue\"><arg direction=\"out\" type=\"i\"/></method>");

const QString boolMembers = QStringLiteral(
    "<signal name=\"setupChanged\"><arg type=\"b\"/></signal>"
    "<method name=\"setValue\"><arg direction=\"in\" type=\"b\"/><arg direction=\"out\" type=\"b\"/></method>"
    "<method name=\"getValue\"><arg direction=\"out\" type=\"b\"/></method>");

/// An object as a server introspects it: standard interfaces and children beside its own.
QString served(const QString &members)
{
    return QStringLiteral(
               "<!DOCTYPE node PUBLIC \"-//freedesktop//DTD D-BUS Object Introspection 1.0//EN\"\n"
               " \"http://www.freedesktop.org/standards/dbus/1.0/introspect.dtd\">\n"
               "<node>\n"
               "  <interface name=\"org.freedesktop.DBus.Introspectable\">\n"
               "    <method name=\"Introspect\"><arg name=\"xml_data\" type=\"s\" direction=\"out\"/></method>\n"
               "  </interface>\n"
               "  <interface name=\"org.freedesktop.DBus.Peer\"><method name=\"Ping\"/></interface>\n"
               "  <interface name=\"%1\">%2</interface>\n"
               "  <node name=\"Child\"/>\n"
               "</node>\n")
        .arg(Introspection::applicationInterface, members);
}

KindCatalogue intAndBool()
{
    KindCatalogue catalogue;
    catalogue.addDocument("SetupIntInterface", document(intMembers));
    catalogue.addDocument("SetupBoolInterface", document(boolMembers));
    return catalogue;
}

QString builtInDocument(const QString &kind)
{
    QFile file(QStringLiteral(":/introspection/%1.xml").arg(kind));
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromUtf8(file.readAll());
}

} // namespace

class tst_MeasctlKinds : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void infersTheKindWhoseDocumentMatchesExactly();
    void tellsKindsApartByReplyTypes();
    void ignoresStandardInterfacesAndChildren();
    void infersNothingFromAnUnknownInterface();
    void infersNothingFromAnObjectWithoutTheApplicationInterface();
    void infersNothingFromBrokenXml();
    void infersNothingWhenTwoDocumentsMatch();
    void refusesADocumentWithoutTheApplicationInterface();
    void listsChildNodes();
    void buildsInOneDocumentPerKind();
    void infersEveryBuiltInKindFromItsOwnDocument();
    void findsKindsByClassOrShortNameInAnyCase();
};

void tst_MeasctlKinds::infersTheKindWhoseDocumentMatchesExactly()
{
    QCOMPARE(intAndBool().infer(document(intMembers)).value_or("none"), QStringLiteral("SetupIntInterface"));
}

void tst_MeasctlKinds::tellsKindsApartByReplyTypes()
{
    // Same member names and inputs; only the reply types and the signal differ.
    QCOMPARE(intAndBool().infer(document(boolMembers)).value_or("none"), QStringLiteral("SetupBoolInterface"));
    const QString boolReplyOnly = QString(intMembers)
                                      .replace("<method name=\"getValue\"><arg direction=\"out\" type=\"i\"/>",
                                               "<method name=\"getValue\"><arg direction=\"out\" type=\"b\"/>");
    QCOMPARE(intAndBool().infer(document(boolReplyOnly)).value_or("none"), QStringLiteral("none"));
}

void tst_MeasctlKinds::ignoresStandardInterfacesAndChildren()
{
    QCOMPARE(intAndBool().infer(served(intMembers)).value_or("none"), QStringLiteral("SetupIntInterface"));
}

void tst_MeasctlKinds::infersNothingFromAnUnknownInterface()
{
    const QString oneMore = intMembers + "<method name=\"getGranularity\"><arg direction=\"out\" type=\"i\"/></method>";
    QVERIFY(!intAndBool().infer(document(oneMore)));
    const QString oneLess = QString(intMembers).remove("<signal name=\"setupChanged\"><arg type=\"i\"/></signal>");
    QVERIFY(!intAndBool().infer(document(oneLess)));
}

void tst_MeasctlKinds::infersNothingFromAnObjectWithoutTheApplicationInterface()
{
    QVERIFY(!intAndBool().infer(document(intMembers, "org.example.Other")));
    QVERIFY(!intAndBool().infer("<node><node name=\"Setup\"/></node>"));
}

void tst_MeasctlKinds::infersNothingFromBrokenXml()
{
    QVERIFY(!intAndBool().infer(document(intMembers).left(60)));
    QVERIFY(!intAndBool().infer(QString()));
}

void tst_MeasctlKinds::infersNothingWhenTwoDocumentsMatch()
{
    KindCatalogue catalogue = intAndBool();
    catalogue.addDocument("SetupIntTwinInterface", document(intMembers));
    QVERIFY(!catalogue.infer(document(intMembers)));
}

void tst_MeasctlKinds::refusesADocumentWithoutTheApplicationInterface()
{
    KindCatalogue catalogue;
    QVERIFY(!catalogue.addDocument("Other", document(intMembers, "org.example.Other")));
    QVERIFY(catalogue.kinds().isEmpty());
}

void tst_MeasctlKinds::listsChildNodes()
{
    QCOMPARE(Introspection::childNodes(served(intMembers)), QStringList{"Child"});
    QCOMPARE(Introspection::childNodes("<node><node name=\"a\"/><node name=\"b\"></node></node>"),
             (QStringList{"a", "b"}));
}

void tst_MeasctlKinds::buildsInOneDocumentPerKind()
{
    QStringList classNames;
    for (const auto &kind : ElementKinds::all())
        classNames.append(kind->className());
    classNames.sort();
    QCOMPARE(KindCatalogue::builtIn().kinds(), classNames);
}

void tst_MeasctlKinds::infersEveryBuiltInKindFromItsOwnDocument()
{
    const KindCatalogue catalogue = KindCatalogue::builtIn();
    for (const QString &kind : catalogue.kinds())
        QCOMPARE(catalogue.infer(builtInDocument(kind)).value_or("none"), kind);
}

void tst_MeasctlKinds::findsKindsByClassOrShortNameInAnyCase()
{
    QCOMPARE(ElementKinds::find("SetupIntInterface")->shortName(), QStringLiteral("int"));
    QCOMPARE(ElementKinds::find("setupintinterface")->shortName(), QStringLiteral("int"));
    QCOMPARE(ElementKinds::find("result-var-array")->className(), QStringLiteral("ResultVarArrayInterface"));
    QCOMPARE(ElementKinds::find("MAP-MAP")->className(), QStringLiteral("SetupMapMapItemInterface"));
    QVERIFY(!ElementKinds::find("integer"));
    QVERIFY(!ElementKinds::find(""));
}

QTEST_GUILESS_MAIN(tst_MeasctlKinds)
#include "tst_measctlkinds.moc"
