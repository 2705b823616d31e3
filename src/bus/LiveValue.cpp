#include "LiveValue.h"

#include "ApplicationMirror.h"
#include "KindTable.h"
#include "LiveProperties_p.h"
#include "MirrorLink_p.h"
#include "WireValue_p.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMessage>

#include <algorithm>
#include <array>
#include <vector>

using LiveProperties::Property;

namespace {

constexpr int propertyCount = LiveProperties::Count;
/// How many recent calls the median latency is taken over.
constexpr int recentCalls = 31;

const QString introspectable = QStringLiteral("org.freedesktop.DBus.Introspectable");
const QString setValueMember = QStringLiteral("setValue");

// clang-format off
/// The NOTIFY signal of each property, in the order of LiveProperties::Property.
const std::array<void (LiveValue::*)(), propertyCount> notifySignals{{
    &LiveValue::valueChanged, &LiveValue::textChanged, &LiveValue::minimumChanged, &LiveValue::maximumChanged,
    &LiveValue::granularityChanged, &LiveValue::lowerLimitChanged, &LiveValue::upperLimitChanged,
    &LiveValue::changeableChanged, &LiveValue::choicesChanged,
}};
// clang-format on

QString errorText(const QDBusError &error)
{
    return error.name() + QStringLiteral(": ") + error.message();
}

// The type of one signal argument as it travelled.
QString signatureOfArgument(const QVariant &argument)
{
    if (argument.userType() == qMetaTypeId<QDBusArgument>())
        return argument.value<QDBusArgument>().currentSignature();
    return WireValue::signatureOf(argument);
}

// What a failed call says of the element: the application late or gone, the element
// missing, or an answer of its own.
LiveValue::State stateAfter(const QDBusError &error, bool hadValue)
{
    switch (error.type()) {
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
        return LiveValue::Stale;
    case QDBusError::ServiceUnknown:
    case QDBusError::Disconnected:
        return hadValue ? LiveValue::Stale : LiveValue::Absent;
    case QDBusError::UnknownObject:
    case QDBusError::UnknownInterface:
    case QDBusError::UnknownMethod:
        return LiveValue::Absent;
    default:
        if (error.name() == QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner"))
            return hadValue ? LiveValue::Stale : LiveValue::Absent;
        return LiveValue::Error;
    }
}

} // namespace

struct LiveValue::Private
{
    QString path;
    std::shared_ptr<MirrorLink> link;
    const KindTable::Kind *kind = nullptr;
    LiveProperties::Methods methods{};

    std::array<QVariant, propertyCount> values;
    // Per property: the request whose answer is shown next, the one in flight, whether
    // it is in flight, whether a change came meanwhile, whether its last read failed.
    std::array<quint64, propertyCount> latest{};
    std::array<quint64, propertyCount> sent{};
    std::array<bool, propertyCount> inFlight{};
    std::array<bool, propertyCount> again{};
    std::array<bool, propertyCount> failed{};
    quint64 nextRequest = 0;
    bool introspecting = false;
    bool hadValue = false;

    State state = Loading;
    QString lastError;
    WriteState writeState = NoWrite;
    QString writeError;
    quint64 writeRequest = 0;

    int calls = 0;
    int busSignals = 0;
    double lastLatencyMs = -1;
    double medianLatencyMs = -1;
    std::vector<double> recent;
    int recentNext = 0;

    bool has(int property) const { return methods.at(static_cast<std::size_t>(property)) != nullptr; }
    const KindTable::Method &method(int property) const { return *methods.at(static_cast<std::size_t>(property)); }
    const QVariant &value(int property) const { return values.at(static_cast<std::size_t>(property)); }
};

LiveValue::LiveValue(const QString &path, const QString &kindName, const std::shared_ptr<MirrorLink> &link,
                     ApplicationMirror *mirror)
    : QObject(mirror)
    , d(new Private)
{
    d->path = path;
    d->link = link;
    if (!kindName.isEmpty()) {
        d->kind = KindTable::find(kindName);
        if (d->kind)
            d->methods = LiveProperties::methodsOf(*d->kind);
    }
}

LiveValue::~LiveValue() = default;

QString LiveValue::path() const
{
    return d->path;
}

QString LiveValue::kindClassName() const
{
    return d->kind ? QString::fromLatin1(d->kind->className) : QString();
}

QString LiveValue::kindName() const
{
    return d->kind ? QString::fromLatin1(d->kind->shortName) : QString();
}

QStringList LiveValue::properties() const
{
    QStringList names;
    for (int property = 0; property < propertyCount; ++property) {
        if (d->has(property))
            names.append(QLatin1String(LiveProperties::source(Property(property)).name));
    }
    return names;
}

LiveValue::State LiveValue::state() const
{
    return d->state;
}

QString LiveValue::lastError() const
{
    return d->lastError;
}

QVariant LiveValue::value() const
{
    return d->value(LiveProperties::Value);
}

QVariant LiveValue::text() const
{
    return d->value(LiveProperties::Text);
}

QVariant LiveValue::minimum() const
{
    return d->value(LiveProperties::Minimum);
}

QVariant LiveValue::maximum() const
{
    return d->value(LiveProperties::Maximum);
}

QVariant LiveValue::granularity() const
{
    return d->value(LiveProperties::Granularity);
}

QVariant LiveValue::lowerLimit() const
{
    return d->value(LiveProperties::LowerLimit);
}

QVariant LiveValue::upperLimit() const
{
    return d->value(LiveProperties::UpperLimit);
}

QVariant LiveValue::changeable() const
{
    return d->value(LiveProperties::Changeable);
}

QStringList LiveValue::choices() const
{
    return d->value(LiveProperties::Choices).toStringList();
}

LiveValue::WriteState LiveValue::writeState() const
{
    return d->writeState;
}

QString LiveValue::writeError() const
{
    return d->writeError;
}

int LiveValue::callCount() const
{
    return d->calls;
}

int LiveValue::signalCount() const
{
    return d->busSignals;
}

double LiveValue::lastLatencyMs() const
{
    return d->lastLatencyMs;
}

double LiveValue::medianLatencyMs() const
{
    return d->medianLatencyMs;
}

void LiveValue::set(const QVariant &value)
{
    if (!d->kind) {
        setWriteState(Failed, QStringLiteral("the kind of %1 is not known yet").arg(d->path));
        return;
    }
    // The kind's one-argument setValue whose type the value has, else the first it converts to.
    QVariant argument;
    const QString natural = WireValue::signatureOf(value);
    for (const QString &signature : d->kind->inSignatures(setValueMember)) {
        const QVariant converted = WireValue::toWire(value, signature);
        if (converted.isValid() && (!argument.isValid() || signature == natural))
            argument = converted;
    }
    if (!argument.isValid()) {
        setWriteState(Failed,
                      QStringLiteral("%1 takes no setValue of this value (%2)")
                          .arg(QLatin1String(d->kind->shortName), value.toString()));
        return;
    }
    const quint64 request = ++d->nextRequest;
    d->writeRequest = request;
    setWriteState(Pending);
    countCall();
    d->link->call(
        this, d->path, setValueMember, {argument}, [this, request](const QDBusMessage &reply, double latencyMs) {
            countAnswer(latencyMs);
            if (request != d->writeRequest)
                return;
            if (reply.type() == QDBusMessage::ErrorMessage) {
                setWriteState(Failed, errorText(QDBusError(reply)));
            } else if (reply.signature() != QLatin1String("b")) {
                setWriteState(Failed, QStringLiteral("setValue answered %1, not a boolean").arg(reply.signature()));
            } else if (reply.arguments().constFirst().toBool()) {
                setWriteState(Accepted);
                // What the application made of it, whether it signals or not.
                for (int property = 0; property < propertyCount; ++property) {
                    if (d->has(property) &&
                        LiveProperties::source(Property(property)).refresh == LiveProperties::Refresh::OnChange)
                        read(property);
                }
            } else {
                setWriteState(Refused);
            }
        });
}

void LiveValue::refresh()
{
    readAll();
}

void LiveValue::readAll()
{
    if (!d->kind) {
        introspect();
        return;
    }
    if (d->state == Absent || d->state == Error)
        setState(Loading);
    for (int property = 0; property < propertyCount; ++property) {
        if (d->has(property))
            read(property);
    }
    settle();
}

bool LiveValue::needsKind() const
{
    return !d->kind;
}

void LiveValue::applicationLeft()
{
    // Answers still on their way belong to the owner that left; they are dropped.
    d->inFlight.fill(false);
    d->again.fill(false);
    d->introspecting = false;
    if (d->writeState == Pending)
        setWriteState(Failed, QStringLiteral("the application left the bus before answering"));
    setState(d->hadValue ? Stale : Absent);
}

void LiveValue::dispatchSignal(const QDBusMessage &message)
{
    if (!d->kind)
        return;
    const QString member = message.member();
    const QString signature = message.signature();
    const auto kindSignals = d->kind->busSignals();
    if (std::none_of(kindSignals.begin(), kindSignals.end(), [&](const KindTable::BusSignal &busSignal) {
            return member == QLatin1String(busSignal.name) && signature == QLatin1String(busSignal.signature);
        }))
        return;
    ++d->busSignals;
    Q_EMIT trafficChanged();
    const QVariantList arguments = message.arguments();
    Q_EMIT busSignal(member, arguments);

    for (int property = 0; property < propertyCount; ++property) {
        if (!d->has(property))
            continue;
        const LiveProperties::Source &source = LiveProperties::source(Property(property));
        const int at = source.carriedAt;
        if (source.carriedBy && member == QLatin1String(source.carriedBy) && at < arguments.size() &&
            signatureOfArgument(arguments.at(at)) == QLatin1String(d->method(property).outSignature)) {
            // Newer than any read still on its way.
            d->latest.at(static_cast<std::size_t>(property)) = ++d->nextRequest;
            d->failed.at(static_cast<std::size_t>(property)) = false;
            setProperty(property, LiveProperties::fromWire(Property(property), arguments.at(at)));
        } else if (LiveProperties::isRefreshedBy(Property(property), member)) {
            read(property);
        }
    }
    settle();
}

void LiveValue::introspect()
{
    if (d->introspecting)
        return;
    d->introspecting = true;
    countCall();
    d->link->callInterface(this, d->path, introspectable, QStringLiteral("Introspect"),
                           [this](const QDBusMessage &reply, double latencyMs) {
                               countAnswer(latencyMs);
                               d->introspecting = false;
                               if (reply.type() == QDBusMessage::ErrorMessage) {
                                   failed(reply);
                                   return;
                               }
                               d->kind = KindTable::inferred(reply.arguments().value(0).toString());
                               if (!d->kind) {
                                   setLastError(
                                       QStringLiteral("no kind of element has exactly the members of %1").arg(d->path));
                                   setState(Absent);
                                   return;
                               }
                               d->methods = LiveProperties::methodsOf(*d->kind);
                               Q_EMIT kindChanged();
                               readAll();
                           });
}

void LiveValue::read(int property)
{
    const auto at = static_cast<std::size_t>(property);
    if (d->inFlight.at(at)) {
        // One more read once this one is answered, however many changes came meanwhile.
        d->again.at(at) = true;
        return;
    }
    const quint64 request = ++d->nextRequest;
    d->inFlight.at(at) = true;
    d->sent.at(at) = request;
    d->latest.at(at) = request;
    countCall();
    d->link->call(this, d->path, QLatin1String(d->method(property).name), {},
                  [this, property, request](const QDBusMessage &reply, double latencyMs) {
                      answered(property, request, reply, latencyMs);
                  });
}

void LiveValue::answered(int property, quint64 request, const QDBusMessage &reply, double latencyMs)
{
    countAnswer(latencyMs);
    const auto at = static_cast<std::size_t>(property);
    if (d->sent.at(at) != request)
        return; // a newer read of the property has replaced this one
    d->inFlight.at(at) = false;
    if (d->latest.at(at) == request) {
        if (reply.type() == QDBusMessage::ErrorMessage) {
            d->failed.at(at) = true;
            failed(reply);
        } else {
            d->failed.at(at) = false;
            setProperty(property, LiveProperties::fromWire(Property(property), reply.arguments().value(0)));
        }
    }
    if (d->again.at(at)) {
        d->again.at(at) = false;
        read(property);
    }
    settle();
}

void LiveValue::setProperty(int property, const QVariant &value)
{
    d->hadValue = true;
    QVariant &shown = d->values.at(static_cast<std::size_t>(property));
    if (shown == value && shown.userType() == value.userType())
        return;
    shown = value;
    Q_EMIT(this->*notifySignals.at(static_cast<std::size_t>(property)))();
}

void LiveValue::failed(const QDBusMessage &reply)
{
    const QDBusError error(reply);
    setLastError(errorText(error));
    setState(stateAfter(error, d->hadValue));
}

void LiveValue::settle()
{
    const auto none = [](const auto &flags) {
        return std::none_of(flags.begin(), flags.end(), [](bool f) { return f; });
    };
    if (d->kind && !d->introspecting && none(d->inFlight) && none(d->failed)) {
        setLastError(QString());
        setState(Valid);
    }
}

void LiveValue::setState(State state)
{
    if (d->state == state)
        return;
    d->state = state;
    Q_EMIT stateChanged(state);
}

void LiveValue::setLastError(const QString &error)
{
    if (d->lastError == error)
        return;
    d->lastError = error;
    Q_EMIT lastErrorChanged();
}

void LiveValue::setWriteState(WriteState state, const QString &error)
{
    d->writeError = error;
    d->writeState = state;
    Q_EMIT writeStateChanged(state);
}

void LiveValue::countCall()
{
    ++d->calls;
    Q_EMIT trafficChanged();
}

void LiveValue::countAnswer(double latencyMs)
{
    d->lastLatencyMs = latencyMs;
    if (static_cast<int>(d->recent.size()) < recentCalls)
        d->recent.push_back(latencyMs);
    else
        d->recent.at(static_cast<std::size_t>(d->recentNext)) = latencyMs;
    d->recentNext = (d->recentNext + 1) % recentCalls;
    std::vector<double> sorted = d->recent;
    const auto middle = sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2);
    std::nth_element(sorted.begin(), middle, sorted.end());
    d->medianLatencyMs = *middle;
    Q_EMIT trafficChanged();
}
