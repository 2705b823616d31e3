#include "KindRegistry.h"
#include "ProxyAdapter.h"
#include "Session.h"

#include "MeasApplNames_p.h"
#include "SetupIntInterface.h"

#include <QRegularExpression>
#include <QtTest/QTest>

#include <algorithm>

namespace {

/// The interface document of the kind named @p name, as the kind table holds it.
QString document(const char *name)
{
    const KindTable::Kind *kind = KindTable::find(QLatin1String(name));
    return kind ? KindTable::document(*kind) : QString();
}

/// @p xml as a server introspects the object: standard interfaces and a child beside its own.
QString served(QString xml)
{
    xml.insert(xml.indexOf(QLatin1String("<node>")) + 6,
               QStringLiteral("\n  <interface name=\"org.freedesktop.DBus.Introspectable\">\n"
                              "    <method name=\"Introspect\"><arg name=\"xml_data\" type=\"s\" direction=\"out\"/>"
                              "</method>\n"
                              "  </interface>\n"
                              "  <interface name=\"org.freedesktop.DBus.Peer\"><method name=\"Ping\"/></interface>"));
    xml.insert(xml.lastIndexOf(QLatin1String("</node>")), QStringLiteral("  <node name=\"Child\"/>\n"));
    return xml;
}

/// The class name of @p adapter's kind, "none" for no adapter.
QString classOf(const KindAdapter *adapter)
{
    return adapter ? adapter->className() : QStringLiteral("none");
}

const KindRegistry &registry()
{
    return KindRegistry::builtIn();
}

/// The built-in adapters without the one of @p className.
KindRegistry::Adapters adaptersWithout(const QString &className)
{
    KindRegistry::Adapters adapters = KindRegistry::builtInAdapters();
    adapters.erase(std::remove_if(adapters.begin(), adapters.end(),
                                  [&](const auto &adapter) { return adapter->className() == className; }),
                   adapters.end());
    return adapters;
}

/// A proxy class of the application interface that the kind table does not know.
class UnlistedInterface : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    UnlistedInterface(const QString &service, const QString &path, const QDBusConnection &connection)
        : QDBusAbstractInterface(service, path, MeasAppl::interfaceName, connection, nullptr)
    {
    }
};

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
    void childPathsFollowTheObjectsPath();
    void everyKindOfTheTableHasExactlyOneAdapter();
    void reportsAKindWithoutAdapter();
    void reportsAKindWithTwoAdapters();
    void reportsAnAdapterOfNoKind();
    void infersEveryKindFromItsOwnDocument();
    void findsKindsByClassOrShortNameInAnyCase();
    void helpListsEveryKindInTheTablesOrder();
};

void tst_MeasctlKinds::infersTheKindWhoseDocumentMatchesExactly()
{
    QCOMPARE(classOf(registry().inferred(document("int"))), QStringLiteral("SetupIntInterface"));
}

void tst_MeasctlKinds::tellsKindsApartByReplyTypes()
{
    // The integer and boolean results have the same members; only the types differ.
    QCOMPARE(classOf(registry().inferred(document("resultInt"))), QStringLiteral("ResultIntInterface"));
    QCOMPARE(classOf(registry().inferred(document("resultBool"))), QStringLiteral("ResultBoolInterface"));
    const QString intDocument = document("int");
    QString boolReply = intDocument;
    boolReply.replace(
        QRegularExpression(QStringLiteral("(<method name=\"getValue\">\\s*<arg direction=\"out\" type=\")i\"")),
        QStringLiteral("\\1b\""));
    QVERIFY(boolReply != intDocument);
    QCOMPARE(classOf(registry().inferred(boolReply)), QStringLiteral("none"));
}

void tst_MeasctlKinds::ignoresStandardInterfacesAndChildren()
{
    QCOMPARE(classOf(registry().inferred(served(document("int")))), QStringLiteral("SetupIntInterface"));
}

void tst_MeasctlKinds::infersNothingFromAnUnknownInterface()
{
    const QString intDocument = document("int");
    QString oneMore = intDocument;
    oneMore.insert(oneMore.indexOf(QLatin1String("</interface>")),
                   QStringLiteral("<method name=\"getUnit\"><arg direction=\"out\" type=\"s\"/></method>"));
    QVERIFY(!registry().inferred(oneMore));
    QString oneLess = intDocument;
    oneLess.remove(QRegularExpression(QStringLiteral("<signal name=\"setupChanged\">.*</signal>"),
                                      QRegularExpression::DotMatchesEverythingOption));
    QVERIFY(oneLess.size() < intDocument.size());
    QVERIFY(!registry().inferred(oneLess));
}

void tst_MeasctlKinds::infersNothingFromAnObjectWithoutTheApplicationInterface()
{
    QString other = document("int");
    other.replace(QLatin1String(MeasAppl::interfaceName), QLatin1String("org.example.Other"));
    QVERIFY(!registry().inferred(other));
    QVERIFY(!registry().inferred("<node><node name=\"Setup\"/></node>"));
}

void tst_MeasctlKinds::infersNothingFromBrokenXml()
{
    const QString intDocument = document("int");
    QVERIFY(!registry().inferred(intDocument.left(intDocument.indexOf(QLatin1String("</interface>")))));
    QVERIFY(!registry().inferred(QString()));
}

void tst_MeasctlKinds::childPathsFollowTheObjectsPath()
{
    QCOMPARE(childPaths("/", served(document("int"))), QStringList{"/Child"});
    QCOMPARE(childPaths("/Setup", "<node><node name=\"a\"/><node name=\"b\"></node></node>"),
             (QStringList{"/Setup/a", "/Setup/b"}));
    QCOMPARE(childPaths("/Setup", "<node><node name=\"a\"/>"), QStringList());
}

void tst_MeasctlKinds::everyKindOfTheTableHasExactlyOneAdapter()
{
    QCOMPARE(registry().problems(), QStringList());
    QCOMPARE(int(KindRegistry::builtInAdapters().size()), KindTable::count());
    for (const KindTable::Kind &kind : KindTable::all()) {
        const KindAdapter *adapter = registry().adapter(kind);
        QVERIFY2(adapter, kind.className);
        QCOMPARE(adapter->className(), QLatin1String(kind.className));
        QCOMPARE(adapter->shortName(), QLatin1String(kind.shortName));
    }
}

void tst_MeasctlKinds::reportsAKindWithoutAdapter()
{
    const KindRegistry withoutEnumResult(adaptersWithout("ResultEnumInterface"));
    QCOMPARE(withoutEnumResult.problems(), QStringList{"ResultEnumInterface (resultEnum) has 0 adapters"});
    QVERIFY(!withoutEnumResult.find("resultEnum"));
    QCOMPARE(classOf(withoutEnumResult.find("resultInt")), QStringLiteral("ResultIntInterface"));
}

void tst_MeasctlKinds::reportsAKindWithTwoAdapters()
{
    KindRegistry::Adapters adapters = KindRegistry::builtInAdapters();
    adapters.push_back(adapterOf<SetupIntInterface>());
    const KindRegistry twice(std::move(adapters));
    QCOMPARE(twice.problems(), QStringList{"SetupIntInterface (int) has 2 adapters"});
}

void tst_MeasctlKinds::reportsAnAdapterOfNoKind()
{
    KindRegistry::Adapters adapters = KindRegistry::builtInAdapters();
    adapters.push_back(std::make_unique<ProxyAdapter<UnlistedInterface>>("unlisted", KindSyntax{}));
    const KindRegistry unlisted(std::move(adapters));
    QCOMPARE(unlisted.problems(), QStringList{"UnlistedInterface is no kind of the table"});
    QVERIFY(!unlisted.find("UnlistedInterface"));
}

void tst_MeasctlKinds::infersEveryKindFromItsOwnDocument()
{
    for (const KindTable::Kind &kind : KindTable::all())
        QCOMPARE(classOf(registry().inferred(KindTable::document(kind))), QLatin1String(kind.className));
}

void tst_MeasctlKinds::findsKindsByClassOrShortNameInAnyCase()
{
    QCOMPARE(registry().find("SetupIntInterface")->shortName(), QStringLiteral("int"));
    QCOMPARE(registry().find("setupintinterface")->shortName(), QStringLiteral("int"));
    QCOMPARE(classOf(registry().find("resultVarArray")), QStringLiteral("ResultVarArrayInterface"));
    QCOMPARE(classOf(registry().find("MAPMAP")), QStringLiteral("SetupMapMapItemInterface"));
    QCOMPARE(classOf(registry().find("thresholds")), QStringLiteral("SetupThresholdManagerInterface"));
    QVERIFY(!registry().find("integer"));
    QVERIFY(!registry().find(""));
    // The names of old, before the kind table gave every kind one short name.
    QVERIFY(!registry().find("map-map"));
    QVERIFY(!registry().find("result-var-array"));
}

void tst_MeasctlKinds::helpListsEveryKindInTheTablesOrder()
{
    const QStringList lines = registry().helpText().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), KindTable::count());
    const KindTable::Kind *kind = KindTable::begin();
    for (const QString &line : lines) {
        const QStringList words = line.simplified().split(QLatin1Char(' '));
        QCOMPARE(words.mid(0, 2), (QStringList{kind->shortName, kind->className}));
        QCOMPARE(words.mid(2).join(QLatin1Char(' ')), registry().adapter(*kind)->summary());
        ++kind;
    }
}

QTEST_GUILESS_MAIN(tst_MeasctlKinds)
#include "tst_measctlkinds.moc"
