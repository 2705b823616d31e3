#include "InterfaceDocument.h"
#include "KindClasses.h"
#include "KindTable.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest/QTest>

// The kind table is generated from the interface documents; these tests hold the generated
// table to the documents and the generator to its refusals.
class tst_KindTable : public QObject
{
    Q_OBJECT

private slots:
    void hasOneKindPerInterfaceDocument();
    void listsTheProxyClassesForCodeInTheTablesOrder();
    void statesEachDocumentsMembersInItsOrder_data();
    void statesEachDocumentsMembersInItsOrder();
    void filesEachKindUnderTheFolderOfItsProxyClass();
    void findsAKindByClassOrShortNameInAnyCase_data();
    void findsAKindByClassOrShortNameInAnyCase();
    void infersEachKindFromItsOwnDocument();
    void infersNothingFromAnObjectWithAMemberMissingOrMalformedXml_data();
    void infersNothingFromAnObjectWithAMemberMissingOrMalformedXml();
    void ignoresOtherInterfacesAndChildNodesWhenInferring();
    void readsChildNodesAndKindAnnotations();
    void generatorRefusesABadDocument_data();
    void generatorRefusesABadDocument();

private:
    static QStringList documentFiles();
    static QString read(const QString &path);
};

QStringList tst_KindTable::documentFiles()
{
    const QDir dir(QStringLiteral(INTERFACE_DOCUMENTS_DIR));
    QStringList files = dir.entryList({QStringLiteral("*.xml")}, QDir::Files, QDir::Name);
    for (QString &file : files)
        file = dir.filePath(file);
    return files;
}

QString tst_KindTable::read(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromUtf8(file.readAll());
}

void tst_KindTable::hasOneKindPerInterfaceDocument()
{
    QStringList fromDocuments;
    for (const QString &file : documentFiles())
        fromDocuments.append(QFileInfo(file).completeBaseName());
    QStringList fromTable = KindTable::classNames();
    fromTable.sort();
    QVERIFY(!fromDocuments.isEmpty());
    QCOMPARE(fromTable, fromDocuments);
    QCOMPARE(KindTable::count(), int(fromDocuments.size()));
}

void tst_KindTable::listsTheProxyClassesForCodeInTheTablesOrder()
{
#define DBUSINTERFACES_CLASS_NAME(Class) QStringLiteral(#Class),
    const QStringList listed = {DBUSINTERFACES_FOR_EACH_KIND_CLASS(DBUSINTERFACES_CLASS_NAME)};
#undef DBUSINTERFACES_CLASS_NAME
    QCOMPARE(listed, KindTable::classNames());
}

void tst_KindTable::statesEachDocumentsMembersInItsOrder_data()
{
    QTest::addColumn<QString>("file");
    for (const QString &file : documentFiles())
        QTest::newRow(qPrintable(QFileInfo(file).completeBaseName())) << file;
}

void tst_KindTable::statesEachDocumentsMembersInItsOrder()
{
    QFETCH(QString, file);
    const auto document = InterfaceDocument::parse(read(file));
    QVERIFY(document);
    const KindTable::Kind *kind = KindTable::find(QFileInfo(file).completeBaseName());
    QVERIFY(kind);
    QCOMPARE(QString::fromLatin1(kind->shortName), document->kindName);
    QCOMPARE(KindTable::familyName(kind->family), document->family);

    QStringList tableMethods;
    for (const KindTable::Method &m : kind->methods())
        tableMethods.append(
            QStringLiteral("%1(%2)->(%3)")
                .arg(QLatin1String(m.name), QLatin1String(m.inSignature), QLatin1String(m.outSignature)));
    QStringList documentMethods;
    for (const auto &m : document->methods)
        documentMethods.append(QStringLiteral("%1(%2)->(%3)").arg(m.name, m.inSignature, m.outSignature));
    QCOMPARE(tableMethods, documentMethods);

    QStringList tableSignals;
    for (const KindTable::BusSignal &s : kind->busSignals())
        tableSignals.append(QStringLiteral("%1(%2)").arg(QLatin1String(s.name), QLatin1String(s.signature)));
    QStringList documentSignals;
    for (const auto &s : document->busSignals)
        documentSignals.append(QStringLiteral("%1(%2)").arg(s.name, s.signature));
    QCOMPARE(tableSignals, documentSignals);
    QCOMPARE(kind->memberTexts(), document->memberTexts());
    // What the simulator serves is the document itself.
    QCOMPARE(KindTable::document(*kind), read(file));
}

void tst_KindTable::filesEachKindUnderTheFolderOfItsProxyClass()
{
    for (const KindTable::Kind &kind : KindTable::all()) {
        const QString header = QStringLiteral(LIBRARY_SOURCE_DIR "/%1/%2.h")
                                   .arg(KindTable::familyName(kind.family), QLatin1String(kind.className));
        QVERIFY2(QFile::exists(header), qPrintable(header));
    }
}

void tst_KindTable::findsAKindByClassOrShortNameInAnyCase_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("className");
    QTest::newRow("class name") << "SetupMapListInterface"
                                << "SetupMapListInterface";
    QTest::newRow("short name") << "mapList"
                                << "SetupMapListInterface";
    QTest::newRow("short name, other case") << "MAPLIST"
                                            << "SetupMapListInterface";
    QTest::newRow("class name, other case") << "resultvararrayinterface"
                                            << "ResultVarArrayInterface";
    QTest::newRow("remote command") << "command"
                                    << "RemoteCommandInterface";
    QTest::newRow("unknown") << "map-list"
                             << "";
    QTest::newRow("empty") << ""
                           << "";
}

void tst_KindTable::findsAKindByClassOrShortNameInAnyCase()
{
    QFETCH(QString, name);
    QFETCH(QString, className);
    const KindTable::Kind *kind = KindTable::find(name);
    QCOMPARE(kind ? QString::fromLatin1(kind->className) : QString(), className);
}

void tst_KindTable::infersEachKindFromItsOwnDocument()
{
    for (const KindTable::Kind &kind : KindTable::all()) {
        const KindTable::Kind *found = KindTable::inferred(KindTable::document(kind));
        QVERIFY2(found == &kind, kind.className);
    }
}

void tst_KindTable::infersNothingFromAnObjectWithAMemberMissingOrMalformedXml_data()
{
    QTest::addColumn<QString>("xml");
    const QString intDocument = KindTable::document(*KindTable::find(QStringLiteral("int")));
    QString withoutSetToDefault = intDocument;
    withoutSetToDefault.remove(QStringLiteral("<method name=\"setToDefault\"/>"));
    QVERIFY(withoutSetToDefault != intDocument);
    QString withAnotherSignature = intDocument;
    withAnotherSignature.replace(QStringLiteral("<arg type=\"i\" name=\"newVal\"/>"),
                                 QStringLiteral("<arg type=\"u\" name=\"newVal\"/>"));
    QVERIFY(withAnotherSignature != intDocument);
    QTest::newRow("member missing") << withoutSetToDefault;
    QTest::newRow("signal of another signature") << withAnotherSignature;
    QTest::newRow("malformed") << intDocument.left(intDocument.size() / 2);
    QTest::newRow("no application interface") << "<node><interface name=\"org.example.Other\"/></node>";
    QTest::newRow("empty") << "";
}

void tst_KindTable::infersNothingFromAnObjectWithAMemberMissingOrMalformedXml()
{
    QFETCH(QString, xml);
    QCOMPARE(KindTable::inferred(xml), nullptr);
}

void tst_KindTable::ignoresOtherInterfacesAndChildNodesWhenInferring()
{
    QString xml = KindTable::document(*KindTable::find(QStringLiteral("bool")));
    xml.replace(QStringLiteral("<node>"),
                QStringLiteral("<node><interface name=\"org.freedesktop.DBus.Introspectable\"><method "
                               "name=\"Introspect\"><arg direction=\"out\" type=\"s\"/></method></interface>"
                               "<node name=\"Child\"/>"));
    QCOMPARE(InterfaceDocument::parse(xml)->interfaces,
             (QStringList{QStringLiteral("org.freedesktop.DBus.Introspectable"),
                          QStringLiteral("com.velk.mqx.MeasApplInterface")}));
    const KindTable::Kind *kind = KindTable::inferred(xml);
    QVERIFY(kind);
    QCOMPARE(QString::fromLatin1(kind->className), QStringLiteral("SetupBoolInterface"));
}

void tst_KindTable::readsChildNodesAndKindAnnotations()
{
    const auto document = InterfaceDocument::parse(
        QStringLiteral("<node><interface name=\"com.velk.mqx.MeasApplInterface\">"
                       "<annotation name=\"org.dbusinterfaces.KindName\" value=\"gauge\"/>"
                       "<annotation name=\"org.dbusinterfaces.Family\" value=\"result\"/>"
                       "<method name=\"getValue\"><arg direction=\"out\" type=\"d\"/></method>"
                       "<signal name=\"changed\"><arg type=\"d\"/><arg type=\"s\"/></signal></interface>"
                       "<node name=\"A\"/><node name=\"B\"/></node>"));
    QVERIFY(document);
    QVERIFY(document->hasApplicationInterface);
    QCOMPARE(document->kindName, QStringLiteral("gauge"));
    QCOMPARE(document->family, QStringLiteral("result"));
    QCOMPARE(document->childNodes, (QStringList{QStringLiteral("A"), QStringLiteral("B")}));
    QCOMPARE(document->interfaces, QStringList{QStringLiteral("com.velk.mqx.MeasApplInterface")});
    QCOMPARE(document->memberTexts(),
             (QStringList{QStringLiteral("method getValue()->(d)"), QStringLiteral("signal changed(ds)")}));
}

void tst_KindTable::generatorRefusesABadDocument_data()
{
    QTest::addColumn<QStringList>("documents");
    QTest::addColumn<QString>("message");
    const QString interface = QStringLiteral("<node><interface name=\"com.velk.mqx.MeasApplInterface\">%1"
                                             "</interface></node>");
    const QString named = QStringLiteral("<annotation name=\"org.dbusinterfaces.KindName\" value=\"%1\"/>"
                                         "<annotation name=\"org.dbusinterfaces.Family\" value=\"%2\"/>");
    QTest::newRow("malformed") << QStringList{QStringLiteral("<node><interface>")} << "A.xml: line ";
    QTest::newRow("no application interface")
        << QStringList{QStringLiteral("<node/>")} << "A.xml: no com.velk.mqx.MeasApplInterface";
    QTest::newRow("no kind name") << QStringList{interface.arg(QString())}
                                  << "A.xml: no org.dbusinterfaces.KindName annotation";
    QTest::newRow("unknown family") << QStringList{interface.arg(named.arg(QStringLiteral("x"), QStringLiteral("io")))}
                                    << "A.xml: org.dbusinterfaces.Family must be one of setup, result, command";
    QTest::newRow("kind name taken, in another case")
        << QStringList{interface.arg(named.arg(QStringLiteral("gauge"), QStringLiteral("setup"))),
                       interface.arg(named.arg(QStringLiteral("Gauge"), QStringLiteral("result")))}
        << "B.xml: kind name \"Gauge\" is taken";
}

void tst_KindTable::generatorRefusesABadDocument()
{
    QFETCH(QStringList, documents);
    QFETCH(QString, message);
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QStringList arguments{dir.filePath(QStringLiteral("KindTableData.cpp"))};
    for (int i = 0; i < documents.size(); ++i) {
        const QString path = dir.filePath(QString(QChar(u'A' + i)) + QStringLiteral(".xml"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(documents.at(i).toUtf8());
        arguments.append(path);
    }
    QProcess generator;
    generator.start(QStringLiteral(KIND_TABLE_GENERATOR), arguments);
    QVERIFY(generator.waitForFinished(30000));
    QCOMPARE(generator.exitCode(), 1);
    const QString errors = QString::fromUtf8(generator.readAllStandardError());
    QVERIFY2(errors.startsWith(QStringLiteral("generate-kind-table: ") + dir.path()), qPrintable(errors));
    QVERIFY2(errors.contains(message), qPrintable(errors));
    QVERIFY(!QFile::exists(arguments.first()));
}

QTEST_GUILESS_MAIN(tst_KindTable)

#include "tst_kindtable.moc"
