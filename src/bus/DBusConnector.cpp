#include "DBusConnector.h"

DBusConnector *DBusConnector::m_pInstance = nullptr;
QString DBusConnector::m_IPAddress = QString();

DBusConnector::DBusConnector()
    : m_connection(QStringLiteral("DummyName")) // a name never opened: nothing is connected yet
{
}

DBusConnector::~DBusConnector() = default;

DBusConnector *DBusConnector::getInstance()
{
    if (!m_pInstance)
        m_pInstance = new DBusConnector;
    return m_pInstance;
}

void DBusConnector::releaseInstance()
{
    delete m_pInstance;
    m_pInstance = nullptr;
}

void DBusConnector::setIPAddress(QString address)
{
    m_IPAddress = address;
}

QDBusConnection DBusConnector::getDBusConnection()
{
    if (!m_connection.isConnected())
        m_connection = QDBusConnection::sessionBus();
    return m_connection;
}
