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
    /// The element's object path, as given to ApplicationMirror::value().
    Q_PROPERTY(QString path READ path CONSTANT)
    /// The proxy class of the element's kind ("SetupIntInterface"); empty while unknown.
    Q_PROPERTY(QString kindClassName READ kindClassName NOTIFY kindChanged)
    /// The kind's short name ("int", "resultDouble"); empty while unknown.
    Q_PROPERTY(QString kindName READ kindName NOTIFY kindChanged)
    /// The names of the properties that the kind has ("value", "text", "minimum", ...).
    Q_PROPERTY(QStringList properties READ properties NOTIFY kindChanged)
    /// How far what is shown can be trusted; see State.
    Q_PROPERTY(State state READ state NOTIFY stateChanged)
    /// "name: message" of the last failed call; empty once every read is answered again.
    Q_PROPERTY(QString lastError READ lastError NOTIFY lastErrorChanged)
    /// The element's value ("getValue", else "getValues"); an enum's index, a devData's content.
    Q_PROPERTY(QVariant value READ value NOTIFY valueChanged)
    /// The value as the application writes it ("getString").
    Q_PROPERTY(QVariant text READ text NOTIFY textChanged)
    /// The lower bound of the value; for results the smallest value measured since the last reset.
    Q_PROPERTY(QVariant minimum READ minimum NOTIFY minimumChanged)
    /// The upper bound of the value; for results the largest value measured since the last reset.
    Q_PROPERTY(QVariant maximum READ maximum NOTIFY maximumChanged)
    /// The step between settable values ("getGranularity").
    Q_PROPERTY(QVariant granularity READ granularity NOTIFY granularityChanged)
    /// A result's lower limit ("getLowerLimit").
    Q_PROPERTY(QVariant lowerLimit READ lowerLimit NOTIFY lowerLimitChanged)
    /// A result's upper limit ("getUpperLimit").
    Q_PROPERTY(QVariant upperLimit READ upperLimit NOTIFY upperLimitChanged)
    /// Whether the application accepts set() now ("isChangeable"), a bool.
    Q_PROPERTY(QVariant changeable READ changeable NOTIFY changeableChanged)
    /// An enum's choices, in index order; empty for other kinds.
    Q_PROPERTY(QStringList choices READ choices NOTIFY choicesChanged)
    /// What became of the last set(); see WriteState.
    Q_PROPERTY(WriteState writeState READ writeState NOTIFY writeStateChanged)
    /// Why the last set() failed; empty unless writeState is Failed.
    Q_PROPERTY(QString writeError READ writeError NOTIFY writeStateChanged)
    /// Calls sent for this element: reads, writes and introspection.
    Q_PROPERTY(int callCount READ callCount NOTIFY trafficChanged)
    /// Change signals of the current owner received for this element.
    Q_PROPERTY(int signalCount READ signalCount NOTIFY trafficChanged)
    /// How long the last answered call took, in milliseconds; -1 before any.
    Q_PROPERTY(double lastLatencyMs READ lastLatencyMs NOTIFY trafficChanged)
    /// The median latency of the last 31 answered calls, in milliseconds; -1 before any.
    Q_PROPERTY(double medianLatencyMs READ medianLatencyMs NOTIFY trafficChanged)

public:
    /// How far what a LiveValue shows can be trusted.
    enum State {
        Loading, ///< asked, no answer yet
        Valid,   ///< every property shows the current owner's answer
        Stale,   ///< the last value is kept, but the application left or missed the deadline
        Absent,  ///< nothing to show: no such element, or the application is not on the bus
        Error    ///< the application answered with an error (lastError)
    };
    Q_ENUM(State)

    /// What became of the last set().
    enum WriteState {
        NoWrite,  ///< set() was never called
        Pending,  ///< sent, not answered yet
        Accepted, ///< the application answered true
        Refused,  ///< the application answered false
        Failed    ///< the value could not be sent, or the call failed (writeError)
    };
    Q_ENUM(WriteState)

    ~LiveValue() override;

    /// The element's object path.
    QString path() const;
    /// The proxy class of the element's kind ("SetupIntInterface"); empty while unknown.
    QString kindClassName() const;
    /// The kind's short name ("int", "resultDouble"); empty while unknown.
    QString kindName() const;
    /// The names of the properties that the kind has ("value", "text", "minimum", ...).
    QStringList properties() const;

    /// How far what is shown can be trusted; Loading until the first answers arrive.
    State state() const;
    /// "name: message" of the last failed call; empty once every read is answered again.
    QString lastError() const;

    /// The element's value as a plain QVariant: an enum's index, a devData's content, the
    /// row of an array result; invalid when the kind has none or before the first answer.
    QVariant value() const;
    /// The value as the application writes it ("getString"); invalid when the kind has none.
    QVariant text() const;
    /// The lower bound of the value; for results the smallest value measured since the last reset.
    QVariant minimum() const;
    /// The upper bound of the value; for results the largest value measured since the last reset.
    QVariant maximum() const;
    /// The step between settable values; invalid when the kind has none.
    QVariant granularity() const;
    /// A result's lower limit; read at start-up, after a restart and on refresh() only.
    QVariant lowerLimit() const;
    /// A result's upper limit; read at start-up, after a restart and on refresh() only.
    QVariant upperLimit() const;
    /// Whether the application accepts set() now, as a bool; invalid when the kind cannot tell.
    QVariant changeable() const;
    /// An enum's choices in index order, for showing value() as text; empty for other kinds.
    QStringList choices() const;

    /// What became of the last set(); NoWrite before any.
    WriteState writeState() const;
    /// Why the last set() failed ("name: message" of a failed call); empty unless Failed.
    QString writeError() const;

    /// Calls sent for this element: reads, writes and introspection.
    int callCount() const;
    /// Change signals of the current owner received for this element.
    int signalCount() const;
    /// How long the last answered call took, in milliseconds; -1 before any.
    double lastLatencyMs() const;
    /// The median latency of the last 31 answered calls, in milliseconds; -1 before any.
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
    /// Introspection found the element's kind; properties() is known from now on.
    void kindChanged();
    /// state() changed to @p state.
    void stateChanged(LiveValue::State state);
    /// lastError() changed.
    void lastErrorChanged();
    /// value() changed.
    void valueChanged();
    /// text() changed.
    void textChanged();
    /// minimum() changed.
    void minimumChanged();
    /// maximum() changed.
    void maximumChanged();
    /// granularity() changed.
    void granularityChanged();
    /// lowerLimit() changed.
    void lowerLimitChanged();
    /// upperLimit() changed.
    void upperLimitChanged();
    /// changeable() changed.
    void changeableChanged();
    /// choices() changed.
    void choicesChanged();
    /// A set() was sent, answered or failed; writeError() is current too.
    void writeStateChanged(LiveValue::WriteState writeState);
    /// callCount(), signalCount() or a latency changed.
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
