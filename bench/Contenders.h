#ifndef BENCH_CONTENDERS_H
#define BENCH_CONTENDERS_H

#include <QDBusConnection>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

struct sd_bus;
namespace sdbus {
class IConnection;
}

/// The client connections of every contender, all on the same private bus.
struct Clients
{
    QDBusConnection qt = QDBusConnection::sessionBus();
    sd_bus *sd = nullptr;
    std::unique_ptr<sdbus::IConnection> sdbusCpp;
};

/// One call; false if the answer was not the expected one.
using Call = std::function<bool()>;

/// One way to make the calls of one pattern: makeCall() builds what the calls need
/// (a proxy, a prebuilt message) and returns the call.
struct Contender
{
    QString pattern;
    QString implementation;
    std::function<Call(Clients &)> makeCall;
};

/// The implementations, as they are named in the results.
namespace Impl {
const QString library = QStringLiteral("library");
const QString bare = QStringLiteral("bare QDBusAbstractInterface");
const QString rawQt = QStringLiteral("QDBusConnection::call");
const QString sdbusCpp = QStringLiteral("sdbus-c++");
const QString sdBus = QStringLiteral("sd_bus_call");
} // namespace Impl

/// Every call pattern with its contenders: the four reads with all five, the other
/// patterns with the library and the bare subclass.
std::vector<Contender> callContenders();

#endif
