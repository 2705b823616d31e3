#include "DBusTypes.h"

#include "DBusCompat_p.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVariant>

namespace DBusTypes {

namespace {

template<typename T, void (*Write)(QDBusArgument &, const T &), void (*Read)(const QDBusArgument &, T &)>
void registerOperators(int typeId)
{
    const auto marshall = [](QDBusArgument &argument, const void *value) {
        Write(argument, *static_cast<const T *>(value));
    };
    const auto demarshall = [](const QDBusArgument &argument, void *value) {
        Read(argument, *static_cast<T *>(value));
    };
    DBusCompat::registerMarshallOperators(typeId, marshall, demarshall);
}

} // namespace

void registerSettingsMap()
{
    registerOperators<SettingsMap, writeSettingsMap, readSettingsMap>(QMetaType::QVariantMap);
}

int registerSettingsStringMap()
{
    static const int typeId = qRegisterMetaType<SettingsStringMap>("SettingsStringMap");
    registerOperators<SettingsStringMap, writeSettingsStringMap, readSettingsStringMap>(typeId);
    return typeId;
}

int registerDoubleList()
{
    static const int typeId = qRegisterMetaType<QList<double>>("QList<double>");
    registerOperators<QList<double>, writeDoubleList, readDoubleList>(typeId);
    return typeId;
}

int dbusVariantTypeId()
{
    static const int typeId = qRegisterMetaType<QDBusVariant>("QDBusVariant");
    return typeId;
}

void writeSettingsMap(QDBusArgument &argument, const SettingsMap &map)
{
    argument.beginMap(QMetaType::QString, dbusVariantTypeId());
    for (auto entry = map.constBegin(); entry != map.constEnd(); ++entry) {
        argument.beginMapEntry();
        argument << entry.key() << QDBusVariant(entry.value());
        argument.endMapEntry();
    }
    argument.endMap();
}

void readSettingsMap(const QDBusArgument &argument, SettingsMap &map)
{
    argument.beginMap();
    map.clear();
    while (!argument.atEnd()) {
        QString key;
        QVariant value;
        argument.beginMapEntry();
        argument >> key >> value;
        argument.endMapEntry();
        DBusCompat::insertMulti(map, key, value);
    }
    argument.endMap();
}

void writeSettingsStringMap(QDBusArgument &argument, const SettingsStringMap &map)
{
    argument.beginMap(QMetaType::QString, QMetaType::QString);
    for (auto entry = map.constBegin(); entry != map.constEnd(); ++entry) {
        argument.beginMapEntry();
        argument << entry.key() << entry.value();
        argument.endMapEntry();
    }
    argument.endMap();
}

void readSettingsStringMap(const QDBusArgument &argument, SettingsStringMap &map)
{
    argument.beginMap();
    map.clear();
    while (!argument.atEnd()) {
        QString key;
        QString value;
        argument.beginMapEntry();
        argument >> key >> value;
        argument.endMapEntry();
        DBusCompat::insertMulti(map, key, value);
    }
    argument.endMap();
}

void writeDoubleList(QDBusArgument &argument, const QList<double> &list)
{
    argument.beginArray(QMetaType::Double);
    for (double value : list)
        argument << value;
    argument.endArray();
}

void readDoubleList(const QDBusArgument &argument, QList<double> &list)
{
    argument.beginArray();
    list.clear();
    while (!argument.atEnd()) {
        double value = 0.0;
        argument >> value;
        list.append(value);
    }
    argument.endArray();
}

} // namespace DBusTypes
