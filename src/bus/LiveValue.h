#ifndef DBUSINTERFACES_LIVEVALUE_H
#define DBUSINTERFACES_LIVEVALUE_H

#include "dbusinterfaces_export.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>

#include <memory>

class ApplicationMirror;
class MirrorLink;
class QDBusMessage;

/**
 * @brief One element of a measurement application as a user interface shows it: its
 * value and what its kind has besides (text, range, limits, choices, whether it can be
 * changed), kept current without ever blocking the caller's thread.
 *
 * Made and owned by an ApplicationMirror (ApplicationMirror::value()). Every property
 * has a NOTIFY signal, so QML binds to it as to a plain property and a widget connects
 * to it. A property the element's kind does not have stays an invalid QVariant (an
 * empty list for choices); properties() names those the kind has. Reading a property
 * never calls the application: it is the last answer received.
 *
 * Destroying a LiveValue while one of its calls is in flight is safe: the answer is
 * dropped.
 */
class DBUSINTERFACES_EXPORT LiveValue : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString path READ path CONSTANT)
    Q_PROPERTY(QString kindClassName READ kindClassName NOTIFY kindChanged)
    Q_PROPERTY(QString kindName READ kindName NOTIFY kindChanged)
    Q_PROPERTY(QStringList properties READ properties NOTIFY kindChanged)
    Q_PROPERTY(State state READ state NOTIFY stateChanged)
    Q_PROPERTY(QString lastError READ lastError NOTIFY lastErrorChanged)
    Q_PROPERTY(QVariant value READ value NOTIFY valueChanged)
    Q_PROPERTY(QVariant text READ text NOTIFY textChanged)
    Q_PROPERTY(QVariant minimum READ minimum NOTIFY minimumChanged)
    Q_PROPERTY(QVariant maximum READ maximum NOTIFY maximumChanged)
    Q_PROPERTY(QVariant granularity READ granularity NOTIFY granularityChanged)
    Q_PROPERTY(QVariant lowerLimit READ lowerLimit NOTIFY lowerLimitChanged)
    Q_PROPERTY(QVariant upperLimit READ upperLimit NOTIFY upperLimitChanged)
    Q_PROPERTY(QVariant changeable READ changeable NOTIFY changeableChanged)
    Q_PROPERTY(QStringList choices READ choices NOTIFY choicesChanged)
    Q_PROPERTY(WriteState writeState READ writeState NOTIFY writeStateChanged)
    Q_PROPERTY(QString writeError READ writeError NOTIFY writeStateChanged)
    Q_PROPERTY(int callCount READ callCount NOTIFY trafficChanged)
    Q_PROPERTY(int signalCount READ signalCount NOTIFY trafficChanged)
    Q_PROPERTY(double lastLatencyMs READ lastLatencyMs NOTIFY trafficChanged)
    Q_PROPERTY(double medianLatencyMs READ medianLatencyMs NOTIFY trafficChanged)

public:
    enum State {
        Loading, ///< asked, no answer yet
        Valid,   ///< every property shows the current owner's answer
        Stale,   ///< the last value is kept, but the application left or missed the deadline
        Absent,  ///< nothing to show: no such element, or the application is not on the bus
        Error    ///< the application answered with an error (lastError)
    };
    Q_ENUM(State)

    enum WriteState {
        NoWrite,  ///< set() was never called
        Pending,  ///< sent, not answered yet
        Accepted, ///< the application answered true
        Refused,  ///< the application answered false
        Failed    ///< the value could not be sent, or the call failed (writeError)
    };
    Q_ENUM(WriteState)

    ~LiveValue() override;

    QString path() const;
    /// The proxy class of the element's kind ("SetupIntInterface"); empty while unknown.
    QString kindClassName() const;
    /// The kind's short name ("int", "resultDouble"); empty while unknown.
    QString kindName() const;
    /// The names of the properties that the kind has ("value", "text", "minimum", ...).
    QStringList properties() const;

    State state() const;
    /// "name: message" of the last failed call; empty after a valid answer.
    QString lastError() const;

    QVariant value() const;
    QVariant text() const;
    QVariant minimum() const;
    QVariant maximum() const;
    QVariant granularity() const;
    QVariant lowerLimit() const;
    QVariant upperLimit() const;
    QVariant changeable() const;
    QStringList choices() const;

    WriteState writeState() const;
    QString writeError() const;

    /// Calls sent for this element, and change signals of the current owner received.
    int callCount() const;
    int signalCount() const;
    /// How long the last answered call took, and the median of the recent ones; -1 before any.
    double lastLatencyMs() const;
    double medianLatencyMs() const;

public Q_SLOTS:
    /**
     * Sends @p value to the application with the kind's "setValue" and returns at once;
     * writeState() follows the answer. The value shown stays the application's: it is
     * read again after the answer (or taken from the change signal), never guessed.
     */
    void set(const QVariant &value);
    /// Reads every property again (results have no change signals).
    void refresh();

Q_SIGNALS:
    void kindChanged();
    void stateChanged(LiveValue::State state);
    void lastErrorChanged();
    void valueChanged();
    void textChanged();
    void minimumChanged();
    void maximumChanged();
    void granularityChanged();
    void lowerLimitChanged();
    void upperLimitChanged();
    void changeableChanged();
    void choicesChanged();
    void writeStateChanged(LiveValue::WriteState writeState);
    void trafficChanged();
    /// A change signal of the current owner, with the arguments a proxy of the kind relays.
    void busSignal(const QString &member, const QVariantList &arguments);

private:
    friend class ApplicationMirror;
    struct Private;

    /// An element of @p kindName (class or short name), or of the kind its introspection shows.
    LiveValue(const QString &path, const QString &kindName, const std::shared_ptr<MirrorLink> &link,
              ApplicationMirror *mirror);

    // Called by the mirror.
    void readAll();
    void applicationLeft();
    void dispatchSignal(const QDBusMessage &message);
    bool needsKind() const;

    void introspect();
    void read(int property);
    void answered(int property, quint64 request, const QDBusMessage &reply, double latencyMs);
    void setProperty(int property, const QVariant &value);
    void failed(const QDBusMessage &reply);
    void settle();
    void setState(State state);
    void setLastError(const QString &error);
    void setWriteState(WriteState state, const QString &error = QString());
    void countCall();
    void countAnswer(double latencyMs);

    std::unique_ptr<Private> d;
};

#endif
