#include "Contenders.h"

#include "BareProxy.h"
#include "BenchServer.h"

#include "SetupDevDataInterface.h"
#include "SetupIntInterface.h"
#include "SetupMapListInterface.h"
#include "SetupMapMapItemInterface.h"

#include <QDBusMessage>

#include <sdbus-c++/sdbus-c++.h>
#include <systemd/sd-bus.h>

#include <map>
#include <string>

namespace {

const std::string service = BenchServer::service.toStdString();
const char interface[] = "com.velk.mqx.MeasApplInterface";

template<typename Proxy>
std::shared_ptr<Proxy> proxyOf(Clients &clients, const char *path)
{
    return std::make_shared<Proxy>(BenchServer::service, QLatin1String(path), clients.qt);
}

/// A prebuilt message, sent again and again with QDBusConnection::call.
Call rawQtCall(Clients &clients, const char *path, const QList<QVariant> &args,
               std::function<bool(const QVariant &)> check)
{
    QDBusMessage message = QDBusMessage::createMethodCall(BenchServer::service, QLatin1String(path),
                                                          BenchServer::interfaceName, QStringLiteral("getValue"));
    message.setArguments(args);
    QDBusConnection bus = clients.qt;
    return [bus, message, check] { return check(bus.call(message, QDBus::Block).arguments().value(0)); };
}

std::shared_ptr<sdbus::IProxy> sdbusCppProxy(Clients &clients, const char *path)
{
    return std::shared_ptr<sdbus::IProxy>(sdbus::createProxy(*clients.sdbusCpp, service, path));
}

/// sd_bus_call of getValue with @p signature and arguments, the reply read by @p read.
template<typename... Args>
Call sdBusCall(Clients &clients, const char *path, std::function<bool(sd_bus_message *)> read, const char *signature,
               Args... args)
{
    sd_bus *bus = clients.sd;
    return [=] {
        sd_bus_error error = SD_BUS_ERROR_NULL;
        sd_bus_message *reply = nullptr;
        const int status =
            sd_bus_call_method(bus, service.c_str(), path, interface, "getValue", &error, &reply, signature, args...);
        const bool ok = status >= 0 && read(reply);
        sd_bus_message_unref(reply);
        sd_bus_error_free(&error);
        return ok;
    };
}

bool readsInt(sd_bus_message *reply, int32_t expected)
{
    int32_t value = 0;
    return sd_bus_message_read(reply, "i", &value) >= 0 && value == expected;
}

/// Reads a whole a{sv} as the others do: every key, every value.
bool readsSettingsMap(sd_bus_message *reply, size_t expected)
{
    if (sd_bus_message_enter_container(reply, 'a', "{sv}") < 0)
        return false;
    size_t entries = 0;
    const char *key = nullptr;
    int32_t value = 0;
    while (sd_bus_message_read(reply, "{sv}", &key, "i", &value) > 0)
        ++entries;
    return sd_bus_message_exit_container(reply) >= 0 && entries == expected;
}

constexpr size_t readMapSize = 10;

void addReads(std::vector<Contender> &all)
{
    // One int: the checked getter.
    all.push_back({"int read", Impl::library, [](Clients &c) -> Call {
                       auto p = proxyOf<SetupIntInterface>(c, "/int/a");
                       return [p] { return p->getValue().value() == 42; };
                   }});
    all.push_back({"int read", Impl::bare, [](Clients &c) -> Call {
                       auto p = proxyOf<BareProxy>(c, "/int/a");
                       return [p] { return p->getInt().value() == 42; };
                   }});
    all.push_back({"int read", Impl::rawQt, [](Clients &c) {
                       return rawQtCall(c, "/int/a", {}, [](const QVariant &v) { return v.toInt() == 42; });
                   }});
    all.push_back({"int read", Impl::sdbusCpp, [](Clients &c) -> Call {
                       auto p = sdbusCppProxy(c, "/int/a");
                       return [p] {
                           int32_t value = 0;
                           p->callMethod("getValue").onInterface(interface).storeResultsTo(value);
                           return value == 42;
                       };
                   }});
    all.push_back({"int read", Impl::sdBus, [](Clients &c) {
                       return sdBusCall(
                           c, "/int/a", [](sd_bus_message *m) { return readsInt(m, 42); }, "");
                   }});

    // A value in a variant: the checked variant getter.
    all.push_back({"variant read", Impl::library, [](Clients &c) -> Call {
                       auto p = proxyOf<SetupDevDataInterface>(c, "/var/a");
                       return [p] { return p->getValue().toDouble() == 2.5; };
                   }});
    all.push_back({"variant read", Impl::bare, [](Clients &c) -> Call {
                       auto p = proxyOf<BareProxy>(c, "/var/a");
                       return [p] { return p->getVariant().toDouble() == 2.5; };
                   }});
    all.push_back({"variant read", Impl::rawQt, [](Clients &c) {
                       return rawQtCall(c, "/var/a", {}, [](const QVariant &v) {
                           return v.value<QDBusVariant>().variant().toDouble() == 2.5;
                       });
                   }});
    all.push_back({"variant read", Impl::sdbusCpp, [](Clients &c) -> Call {
                       auto p = sdbusCppProxy(c, "/var/a");
                       return [p] {
                           sdbus::Variant value;
                           p->callMethod("getValue").onInterface(interface).storeResultsTo(value);
                           return value.get<double>() == 2.5;
                       };
                   }});
    all.push_back({"variant read", Impl::sdBus, [](Clients &c) {
                       return sdBusCall(
                           c, "/var/a",
                           [](sd_bus_message *m) {
                               double value = 0;
                               return sd_bus_message_read(m, "v", "d", &value) >= 0 && value == 2.5;
                           },
                           "");
                   }});

    // A SettingsMap of ten entries.
    all.push_back({"SettingsMap read", Impl::library, [](Clients &c) -> Call {
                       auto p = proxyOf<SetupMapListInterface>(c, "/map/a");
                       return [p] { return size_t(p->getValue(0).size()) == readMapSize; };
                   }});
    all.push_back({"SettingsMap read", Impl::bare, [](Clients &c) -> Call {
                       proxyOf<SetupMapListInterface>(c, "/map/a"); // registers the SettingsMap marshalling
                       auto p = proxyOf<BareProxy>(c, "/map/a");
                       return [p] { return size_t(p->getMap(0).size()) == readMapSize; };
                   }});
    all.push_back({"SettingsMap read", Impl::rawQt, [](Clients &c) {
                       proxyOf<SetupMapListInterface>(c, "/map/a");
                       return rawQtCall(c, "/map/a", {0}, [](const QVariant &v) {
                           return size_t(qdbus_cast<SettingsMap>(v).size()) == readMapSize;
                       });
                   }});
    all.push_back(
        {"SettingsMap read", Impl::sdbusCpp, [](Clients &c) -> Call {
             auto p = sdbusCppProxy(c, "/map/a");
             return [p] {
                 std::map<std::string, sdbus::Variant> value;
                 p->callMethod("getValue").onInterface(interface).withArguments(int32_t(0)).storeResultsTo(value);
                 return value.size() == readMapSize;
             };
         }});
    all.push_back({"SettingsMap read", Impl::sdBus, [](Clients &c) {
                       return sdBusCall(
                           c, "/map/a", [](sd_bus_message *m) { return readsSettingsMap(m, readMapSize); }, "i",
                           int32_t(0));
                   }});

    // One cell of a map of maps.
    all.push_back({"map-of-maps cell read", Impl::library, [](Clients &c) -> Call {
                       auto p = proxyOf<SetupMapMapItemInterface>(c, "/map/b");
                       return
                           [p] { return p->getValue(QStringLiteral("primary"), QStringLiteral("cell")).toInt() == 7; };
                   }});
    all.push_back({"map-of-maps cell read", Impl::bare, [](Clients &c) -> Call {
                       auto p = proxyOf<BareProxy>(c, "/map/b");
                       return [p] {
                           return p->getVariant({QStringLiteral("primary"), QStringLiteral("cell")}).toInt() == 7;
                       };
                   }});
    all.push_back({"map-of-maps cell read", Impl::rawQt, [](Clients &c) {
                       return rawQtCall(
                           c, "/map/b", {QStringLiteral("primary"), QStringLiteral("cell")},
                           [](const QVariant &v) { return v.value<QDBusVariant>().variant().toInt() == 7; });
                   }});
    all.push_back({"map-of-maps cell read", Impl::sdbusCpp, [](Clients &c) -> Call {
                       auto p = sdbusCppProxy(c, "/map/b");
                       return [p] {
                           sdbus::Variant value;
                           p->callMethod("getValue")
                               .onInterface(interface)
                               .withArguments(std::string("primary"), std::string("cell"))
                               .storeResultsTo(value);
                           return value.get<int32_t>() == 7;
                       };
                   }});
    all.push_back({"map-of-maps cell read", Impl::sdBus, [](Clients &c) {
                       return sdBusCall(
                           c, "/map/b",
                           [](sd_bus_message *m) {
                               int32_t value = 0;
                               return sd_bus_message_read(m, "v", "i", &value) >= 0 && value == 7;
                           },
                           "ss", "primary", "cell");
                   }});
}

/// The call patterns that no read above covers, library against the bare subclass.
void addOtherPatterns(std::vector<Contender> &all)
{
    all.push_back({"blocking call", Impl::library, [](Clients &c) -> Call {
                       auto p = proxyOf<SetupIntInterface>(c, "/int/a");
                       return [p] { return p->getMinValue().isValid(); };
                   }});
    all.push_back({"blocking call", Impl::bare, [](Clients &c) -> Call {
                       auto p = proxyOf<BareProxy>(c, "/int/a");
                       return [p] { return p->getMinValue().isValid(); };
                   }});
    all.push_back({"blocking void call", Impl::library, [](Clients &c) -> Call {
                       auto p = proxyOf<SetupMapListInterface>(c, "/map/a");
                       return [p] {
                           p->setToDefault();
                           return true;
                       };
                   }});
    all.push_back({"blocking void call", Impl::bare, [](Clients &c) -> Call {
                       auto p = proxyOf<BareProxy>(c, "/map/a");
                       return [p] {
                           p->setToDefault();
                           return true;
                       };
                   }});
    all.push_back({"blocking list call", Impl::library, [](Clients &c) -> Call {
                       auto p = proxyOf<SetupMapMapItemInterface>(c, "/map/b");
                       const QVariantMap cells{{QStringLiteral("cell"), 1}, {QStringLiteral("other"), 2.5}};
                       return [p, cells] { return p->setValue(QStringLiteral("primary"), cells).value(); };
                   }});
    all.push_back({"blocking list call", Impl::bare, [](Clients &c) -> Call {
                       proxyOf<SetupMapMapItemInterface>(c, "/map/b");
                       auto p = proxyOf<BareProxy>(c, "/map/b");
                       const QVariantMap cells{{QStringLiteral("cell"), 1}, {QStringLiteral("other"), 2.5}};
                       return [p, cells] { return p->setMap(QStringLiteral("primary"), cells).value(); };
                   }});
    all.push_back({"variant-wrapped argument", Impl::library, [](Clients &c) -> Call {
                       auto p = proxyOf<SetupDevDataInterface>(c, "/var/a");
                       return [p] { return p->setValue(2.5).value(); };
                   }});
    all.push_back({"variant-wrapped argument", Impl::bare, [](Clients &c) -> Call {
                       auto p = proxyOf<BareProxy>(c, "/var/a");
                       return [p] { return p->setVariant(2.5).value(); };
                   }});
    all.push_back({"fire-and-forget call", Impl::library, [](Clients &c) -> Call {
                       auto p = proxyOf<SetupIntInterface>(c, "/int/a");
                       return [p] {
                           p->setValueAsync(5);
                           return true;
                       };
                   }});
    all.push_back({"fire-and-forget call", Impl::bare, [](Clients &c) -> Call {
                       auto p = proxyOf<BareProxy>(c, "/int/a");
                       return [p] {
                           p->setValueAsync(5);
                           return true;
                       };
                   }});
}

} // namespace

std::vector<Contender> callContenders()
{
    std::vector<Contender> all;
    addReads(all);
    addOtherPatterns(all);
    return all;
}
