#ifndef DBUSINTERFACES_PROXYREADBATCH_H
#define DBUSINTERFACES_PROXYREADBATCH_H

#include "dbusinterfaces_export.h"

#include <QDBusAbstractInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusReply>
#include <QList>
#include <QString>

/**
 * @brief Lets the first reads of many proxies travel together: each read is sent at
 * once without waiting, and the answers are collected afterwards, so that the round
 * trips overlap instead of following one another.
 *
 * A read is a member without arguments, sent to the proxy's service and object on the
 * proxy's connection as the proxy's own blocking getter sends it. Its answer is the one
 * that blocking call would give (the same value, the same error, the connection's
 * default time-out); unlike the getter it writes no diagnostic and leaves the proxy's
 * lastError() alone.
 *
 * @code
 * ProxyReadBatch batch;
 * for (SetupIntInterface *proxy : proxies)
 *     batch.send(*proxy, QStringLiteral("getValue"));
 * for (int i = 0; i < batch.size(); ++i)
 *     show(batch.reply<int>(i).value());
 * @endcode
 */
class DBUSINTERFACES_EXPORT ProxyReadBatch
{
public:
    /// A batch with no reads.
    ProxyReadBatch();
    /// Answers that never arrived are dropped unread.
    ~ProxyReadBatch();

    /// Sends @p member to @p proxy's object and returns at once; the result is the read's index.
    int send(QDBusAbstractInterface &proxy, const QString &member);
    /// The number of reads sent.
    int size() const;

    /// Whether the answer of read @p index is in; never waits.
    bool isAnswered(int index) const;
    /// The answer of read @p index, waited for if it is not in yet; an error message
    /// "org.freedesktop.DBus.Error.InvalidArgs" for an index that no read has.
    QDBusMessage replyMessage(int index) const;
    /// The answer of read @p index converted as the blocking getter converts it.
    /// @tparam T what the member answers, as the getter's QDBusReply declares it.
    template<typename T>
    QDBusReply<T> reply(int index) const
    {
        return QDBusReply<T>(replyMessage(index));
    }

private:
    Q_DISABLE_COPY(ProxyReadBatch)

    QList<QDBusPendingCall> m_reads;
};

#endif
