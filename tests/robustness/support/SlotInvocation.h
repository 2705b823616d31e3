#ifndef TESTS_SLOTINVOCATION_H
#define TESTS_SLOTINVOCATION_H

#include "DBusTypes.h"

#include <QDBusReply>
#include <QDateTime>
#include <QGenericArgument>
#include <QMetaMethod>
#include <QMetaType>
#include <QStringList>
#include <QVariant>

#include <utility>
#include <vector>

/// Makes the parameter and result types of every proxy operation known by the names moc wrote.
inline void registerOperationTypes()
{
    qRegisterMetaType<QDBusReply<int>>("QDBusReply<int>");
    qRegisterMetaType<QDBusReply<bool>>("QDBusReply<bool>");
    qRegisterMetaType<QDBusReply<double>>("QDBusReply<double>");
    qRegisterMetaType<QDBusReply<QString>>("QDBusReply<QString>");
    qRegisterMetaType<QDBusReply<QStringList>>("QDBusReply<QStringList>");
    qRegisterMetaType<QDBusReply<QDateTime>>("QDBusReply<QDateTime>");
    qRegisterMetaType<QDBusReply<void>>("QDBusReply<void>");
    qRegisterMetaType<SettingsMap>("SettingsMap");
    qRegisterMetaType<SettingsStringMap>("SettingsStringMap");
    qRegisterMetaType<QMap<QString, QVariantMap>>("QMap<QString,QVariantMap>");
    qRegisterMetaType<QList<int>>("QList<int>");
}

/// A value of @p type as its default constructor makes it, with built-in types zeroed.
inline QVariant defaultOf(int type)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return QVariant(QMetaType(type), nullptr);
#else
    return QVariant(type, nullptr);
#endif
}

/**
 * Calls a slot through the meta-object system with default arguments (a QVariant argument
 * holds 0: an invalid one could not be sent) and keeps what it returned, so that one test
 * can run every operation of every proxy class. Parameter and return types must be known
 * to the meta-type system.
 */
class SlotInvocation
{
public:
    explicit SlotInvocation(const QMetaMethod &method)
        : m_method(method)
        , m_returnType(method.returnType())
        , m_typeNames(method.parameterTypes())
    {
        const QVariant sendable = 0;
        for (int i = 0; i < method.parameterCount(); ++i) {
            const int type = method.parameterType(i);
            const QVariant zeroed = defaultOf(type);
            m_values.push_back(
                {type, QMetaType(type).create(type == QMetaType::QVariant ? &sendable : zeroed.constData())});
            m_arguments[i] = QGenericArgument(m_typeNames.at(i).constData(), m_values.back().second);
        }
        if (m_returnType != QMetaType::Void)
            m_result = QMetaType(m_returnType).create();
    }
    ~SlotInvocation()
    {
        for (auto &value : m_values)
            QMetaType(value.first).destroy(value.second);
        if (m_result)
            QMetaType(m_returnType).destroy(m_result);
    }

    /// Whether every argument and the result could be made.
    bool complete() const
    {
        for (const auto &value : m_values) {
            if (!value.second)
                return false;
        }
        return m_returnType == QMetaType::Void || m_result;
    }

    bool invoke(QObject *object)
    {
        const QGenericArgument *a = m_arguments;
        const QGenericReturnArgument result(m_method.typeName(), m_result);
        return m_method.invoke(object, Qt::DirectConnection, result, a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7],
                               a[8], a[9]);
    }

    /// What the slot returned, of the slot's return type; null for a void slot.
    const void *result() const { return m_result; }

private:
    Q_DISABLE_COPY(SlotInvocation)
    QMetaMethod m_method;
    int m_returnType;
    // Qt 6 compares these names with the slot's: they must outlive the call.
    QList<QByteArray> m_typeNames;
    std::vector<std::pair<int, void *>> m_values;
    QGenericArgument m_arguments[10];
    void *m_result = nullptr;
};

#endif
