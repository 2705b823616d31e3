#include "ProxyReadBatch.h"

#include <QDBusError>

ProxyReadBatch::ProxyReadBatch() = default;

ProxyReadBatch::~ProxyReadBatch() = default;

int ProxyReadBatch::send(QDBusAbstractInterface &proxy, const QString &member)
{
    m_reads.append(proxy.asyncCall(member));
    return m_reads.size() - 1;
}

int ProxyReadBatch::size() const
{
    return m_reads.size();
}

bool ProxyReadBatch::isAnswered(int index) const
{
    return index >= 0 && index < m_reads.size() && m_reads.at(index).isFinished();
}

QDBusMessage ProxyReadBatch::replyMessage(int index) const
{
    if (index < 0 || index >= m_reads.size())
        return QDBusMessage::createError(QDBusError::InvalidArgs,
                                         QStringLiteral("ProxyReadBatch has no read %1").arg(index));
    QDBusPendingCall read = m_reads.at(index);
    read.waitForFinished();
    return read.reply();
}
