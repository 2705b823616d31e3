#include "SetupMapMapItemInterface.h"

#include "DBusCompat_p.h"
#include "MeasApplNames_p.h"
#include "ProxyCall_p.h"

#include <JsonFormatter.h>

namespace {

/// A map of maps never crosses the bus as such: each inner map goes as its JSON text.
SettingsMap jsonTexts(const QMap<QString, QVariantMap> &maps)
{
    SettingsMap texts;
    for (auto entry = maps.constBegin(); entry != maps.constEnd(); ++entry)
        texts.insert(entry.key(), JsonFormatter::getJson(entry.value()));
    return texts;
}

SettingsMap stringVariants(const SettingsStringMap &strings)
{
    SettingsMap variants;
    for (auto entry = strings.constBegin(); entry != strings.constEnd(); ++entry)
        variants.insert(entry.key(), entry.value());
    return variants;
}

SettingsStringMap textsOf(const SettingsMap &map)
{
    // value() gives the last entry received under a repeated key, in Qt 5 as in Qt 6.
    SettingsStringMap texts;
    for (const QString &key : map.keys())
        texts.insert(key, map.value(key).toString());
    return texts;
}

} // namespace

SetupMapMapItemInterface::SetupMapMapItemInterface(const QString &service, const QString &path,
                                                   const QDBusConnection &connection, QObject *parent)
    : QDBusAbstractInterface(service, path, MeasAppl::interfaceName, connection, parent)
    , m_service(service)
    , m_path(path)
{
    DBusTypes::registerSettingsMap();
    DBusTypes::registerSettingsStringMap();
    DBusCompat::registerVariantForSignals();
    // Connected from the start, so QtDBus subscribes to the bus signal at once and every
    // cell change is re-emitted with its value unwrapped, whoever listens. The texts are
    // kept normalised, which spares the lookup a normalisation pass.
    // clang-format off
    connect(this, SIGNAL(setupChangedPart(QString,QString,QDBusVariant,bool)),
            this, SLOT(emitSetupChangedPart(QString,QString,QDBusVariant,bool)));
    // clang-format on
}

SetupMapMapItemInterface::~SetupMapMapItemInterface() = default;

QDBusReply<bool> SetupMapMapItemInterface::setValue(QMap<QString, QVariantMap> value)
{
    return ProxyCall::blockingList<bool>(*this, "setValue", {QVariant(jsonTexts(value))});
}

QDBusReply<bool> SetupMapMapItemInterface::setValue(QString primaryKey, QMap<QString, QVariant> value)
{
    return ProxyCall::blockingList<bool>(*this, "setValue", {primaryKey, QVariant(value)});
}

QDBusReply<bool> SetupMapMapItemInterface::setValue(QString primaryKey, QMap<QString, QString> value)
{
    return ProxyCall::blockingList<bool>(*this, "setValue", {primaryKey, QVariant(stringVariants(value))});
}

QDBusReply<bool> SetupMapMapItemInterface::setValue(QString primaryKey, QString secondKey, QVariant newValue)
{
    return ProxyCall::blockingList<bool>(*this, "setValue", {primaryKey, secondKey, ProxyCall::wrapped(newValue)});
}

QDBusReply<bool> SetupMapMapItemInterface::setValue(QString primaryKey, QString secondKey, QString newValue)
{
    return ProxyCall::blockingList<bool>(*this, "setValue", {primaryKey, secondKey, newValue});
}

QDBusReply<bool> SetupMapMapItemInterface::setDefaultMap(QMap<QString, QVariantMap> value)
{
    return ProxyCall::blockingList<bool>(*this, "setDefaultMap", {QVariant(jsonTexts(value))});
}

QDBusReply<bool> SetupMapMapItemInterface::setDefaultMap(QString primaryKey, QMap<QString, QVariant> value)
{
    return ProxyCall::blockingList<bool>(*this, "setDefaultMap", {primaryKey, QVariant(value)});
}

QDBusReply<bool> SetupMapMapItemInterface::mergeFromDefaultMap(QString primaryKey)
{
    return ProxyCall::blockingList<bool>(*this, "mergeFromDefaultMap", {primaryKey});
}

QDBusReply<QStringList> SetupMapMapItemInterface::mergeFromDefaultMap()
{
    return ProxyCall::blocking<QStringList>(*this, "mergeFromDefaultMap");
}

void SetupMapMapItemInterface::setValueAsync(QString primaryKey, QMap<QString, QVariant> value)
{
    ProxyCall::fireAndForgetList(*this, "setValue", {primaryKey, ProxyCall::wrapped(QVariant(value))});
}

QDBusReply<QStringList> SetupMapMapItemInterface::getAllKeys()
{
    return ProxyCall::blocking<QStringList>(*this, "getAllKeys");
}

QStringList SetupMapMapItemInterface::getAllKeys(QString primaryKey)
{
    return ProxyCall::valueOrEmpty<QStringList>(*this, {"SetupMapMapItemInterface::getAllKeys(): ", m_service, m_path},
                                                "getAllKeys", primaryKey);
}

QDBusReply<bool> SetupMapMapItemInterface::isKeyAvailable(QString key)
{
    return ProxyCall::blocking<bool>(*this, "isKeyAvailable", key);
}

QDBusReply<bool> SetupMapMapItemInterface::isChangeable()
{
    return ProxyCall::blocking<bool>(*this, "isChangeable");
}

SettingsMap SetupMapMapItemInterface::getValue(QString primaryKey)
{
    return ProxyCall::valueOrEmpty<SettingsMap>(*this, {"SetupMapMapItemInterface::getValue(): ", m_service, m_path},
                                                "getValue", primaryKey);
}

QVariant SetupMapMapItemInterface::getValue(QString primaryKey, QString secondKey)
{
    return ProxyCall::variantOrEmpty(*this, {"SetupMapMapItemInterface::getValue(): ", m_service, m_path}, "getValue",
                                     primaryKey, secondKey);
}

QString SetupMapMapItemInterface::getStringValue(QString primaryKey, QString secondKey)
{
    return ProxyCall::valueOrEmpty<QString>(*this, {"SetupMapMapItemInterface::getStringValue(): ", m_service, m_path},
                                            "getStringValue", primaryKey, secondKey);
}

SettingsStringMap SetupMapMapItemInterface::getStringMap(QString primaryKey)
{
    return textsOf(ProxyCall::valueOrEmpty<SettingsMap>(
        *this, {"SetupMapMapItemInterface::getStringMap(): ", m_service, m_path}, "getValue", primaryKey));
}

QVariant SetupMapMapItemInterface::getMin(QString primaryKey, QString secondKey)
{
    return ProxyCall::variantOrEmpty(*this, {"SetupMapMapItemInterface::getMin(): ", m_service, m_path}, "getMin",
                                     primaryKey, secondKey);
}

QVariant SetupMapMapItemInterface::getMax(QString primaryKey, QString secondKey)
{
    return ProxyCall::variantOrEmpty(*this, {"SetupMapMapItemInterface::getMax(): ", m_service, m_path}, "getMax",
                                     primaryKey, secondKey);
}

QDBusReply<QStringList> SetupMapMapItemInterface::getEnums(QString primaryKey, QString secondKey)
{
    return ProxyCall::blocking<QStringList>(*this, "getEnums", primaryKey, secondKey);
}

QVariant SetupMapMapItemInterface::getBaseElement()
{
    return ProxyCall::variantOrEmpty(*this, {"SetupMapMapItemInterface::getBaseElement(): ", m_service, m_path},
                                     "getBaseElement");
}

QDBusReply<QString> SetupMapMapItemInterface::getString()
{
    return ProxyCall::blocking<QString>(*this, "getString");
}

QString SetupMapMapItemInterface::getString(QString primaryKey)
{
    return ProxyCall::valueOrEmpty<QString>(*this, {"SetupMapMapItemInterface::getString(): ", m_service, m_path},
                                            "getString", primaryKey);
}

QDBusReply<int> SetupMapMapItemInterface::size()
{
    return ProxyCall::blocking<int>(*this, "size");
}

QDBusReply<int> SetupMapMapItemInterface::removeItem(QString primaryKey)
{
    return ProxyCall::blocking<int>(*this, "removeItem", primaryKey);
}

QDBusReply<int> SetupMapMapItemInterface::removeItem(QString primaryKey, QString secondaryKey)
{
    return ProxyCall::blocking<int>(*this, "removeItem", primaryKey, secondaryKey);
}

void SetupMapMapItemInterface::setToDefault()
{
    ProxyCall::blockingVoid(*this, "setToDefault");
}

void SetupMapMapItemInterface::setToDefaultAsync()
{
    ProxyCall::fireAndForget(*this, "setToDefault");
}

void SetupMapMapItemInterface::emitSetupChangedPart(QString primaryKey, QString secondKey, QDBusVariant newValue,
                                                    bool deleted)
{
    Q_EMIT setupChangedPart(primaryKey, secondKey, newValue.variant(), deleted);
}
