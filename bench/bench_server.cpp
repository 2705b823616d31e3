// The measurement application of the benchmarks, on sd-bus in a process of its own, so
// that the answering side costs next to nothing. Answers every member the benchmarks
// call with fixed values chosen by the object path, counts the setValue calls it gets
// and emits change signals on request (interface "bench.Control").
//
// Usage: bench_server SERVICE; prints "ready" once it owns SERVICE.

#include <systemd/sd-bus.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

namespace {

const char measInterface[] = "com.velk.mqx.MeasApplInterface";
const char controlInterface[] = "bench.Control";

struct ServerState
{
    uint32_t setValueCalls = 0;
    uint32_t mapSize = 10;
    bool quit = false;
};

bool startsWith(const char *text, const char *prefix)
{
    return std::strncmp(text, prefix, std::strlen(prefix)) == 0;
}

/// A SettingsMap of @p size entries "key0000000".. with int values.
int appendSettingsMap(sd_bus_message *reply, uint32_t size)
{
    int status = sd_bus_message_open_container(reply, 'a', "{sv}");
    char key[32];
    for (uint32_t i = 0; status >= 0 && i < size; ++i) {
        std::snprintf(key, sizeof key, "key%07u", i);
        status = sd_bus_message_append(reply, "{sv}", key, "i", int32_t(i));
    }
    return status < 0 ? status : sd_bus_message_close_container(reply);
}

int replyToGetValue(sd_bus_message *call, const char *path, const ServerState &state)
{
    if (startsWith(path, "/int/"))
        return sd_bus_reply_method_return(call, "i", int32_t(42));
    if (startsWith(path, "/double/"))
        return sd_bus_reply_method_return(call, "d", 2.5);
    if (startsWith(path, "/bool/"))
        return sd_bus_reply_method_return(call, "b", 1);
    if (startsWith(path, "/string/"))
        return sd_bus_reply_method_return(call, "s", "text");
    if (startsWith(path, "/var/"))
        return sd_bus_reply_method_return(call, "v", "d", 2.5);
    if (startsWith(path, "/map/")) {
        // One cell of a map of maps (ss), or a whole map (an entry position or a primary key).
        if (std::strcmp(sd_bus_message_get_signature(call, 1), "ss") == 0)
            return sd_bus_reply_method_return(call, "v", "i", int32_t(7));
        sd_bus_message *reply = nullptr;
        int status = sd_bus_message_new_method_return(call, &reply);
        if (status >= 0)
            status = appendSettingsMap(reply, state.mapSize);
        if (status >= 0)
            status = sd_bus_send(nullptr, reply, nullptr);
        sd_bus_message_unref(reply);
        return status;
    }
    return sd_bus_reply_method_errorf(call, "bench.Error.UnknownPath", "no value at %s", path);
}

int emitChanges(sd_bus *bus, sd_bus_message *call)
{
    const char *path = nullptr;
    uint32_t count = 0;
    int status = sd_bus_message_read(call, "su", &path, &count);
    for (uint32_t i = 0; status >= 0 && i < count; ++i)
        status = sd_bus_emit_signal(bus, path, measInterface, "setupChanged", "i", int32_t(i));
    return status < 0 ? sd_bus_reply_method_errno(call, -status, nullptr) : sd_bus_reply_method_return(call, "");
}

int handleControl(sd_bus *bus, sd_bus_message *call, const char *member, ServerState &state)
{
    if (std::strcmp(member, "count") == 0)
        return sd_bus_reply_method_return(call, "u", state.setValueCalls);
    if (std::strcmp(member, "reset") == 0) {
        state.setValueCalls = 0;
        return sd_bus_reply_method_return(call, "");
    }
    if (std::strcmp(member, "setMapSize") == 0) {
        const int status = sd_bus_message_read(call, "u", &state.mapSize);
        return status < 0 ? status : sd_bus_reply_method_return(call, "");
    }
    if (std::strcmp(member, "emitChanges") == 0)
        return emitChanges(bus, call);
    if (std::strcmp(member, "quit") == 0) {
        state.quit = true;
        return sd_bus_reply_method_return(call, "");
    }
    return sd_bus_reply_method_errorf(call, "bench.Error.UnknownMember", "no member %s", member);
}

int handleCall(sd_bus_message *call, void *userdata, sd_bus_error *)
{
    if (!sd_bus_message_is_method_call(call, nullptr, nullptr))
        return 0;
    ServerState &state = *static_cast<ServerState *>(userdata);
    const char *interface = sd_bus_message_get_interface(call);
    const char *member = sd_bus_message_get_member(call);
    const char *path = sd_bus_message_get_path(call);
    if (!interface || !member || !path)
        return 0;
    if (std::strcmp(interface, controlInterface) == 0)
        return handleControl(sd_bus_message_get_bus(call), call, member, state) < 0 ? -1 : 1;
    if (std::strcmp(interface, measInterface) != 0)
        return 0;
    int status;
    if (std::strcmp(member, "getValue") == 0)
        status = replyToGetValue(call, path, state);
    else if (std::strcmp(member, "setValue") == 0) {
        ++state.setValueCalls;
        status = sd_bus_reply_method_return(call, "b", 1);
    } else if (std::strcmp(member, "getMinValue") == 0)
        status = sd_bus_reply_method_return(call, "i", int32_t(0));
    else if (std::strcmp(member, "setToDefault") == 0)
        status = sd_bus_reply_method_return(call, "");
    else
        status = sd_bus_reply_method_errorf(call, "bench.Error.UnknownMember", "no member %s", member);
    return status < 0 ? -1 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s SERVICE\n", argv[0]);
        return 2;
    }
    sd_bus *bus = nullptr;
    int status = sd_bus_open_user(&bus);
    if (status < 0) {
        std::fprintf(stderr, "bench_server: no session bus: %s\n", std::strerror(-status));
        return 1;
    }
    ServerState state;
    status = sd_bus_add_filter(bus, nullptr, handleCall, &state);
    if (status >= 0)
        status = sd_bus_request_name(bus, argv[1], 0);
    if (status < 0) {
        std::fprintf(stderr, "bench_server: cannot own %s: %s\n", argv[1], std::strerror(-status));
        sd_bus_unref(bus);
        return 1;
    }
    std::printf("ready\n");
    std::fflush(stdout);
    while (!state.quit) {
        status = sd_bus_process(bus, nullptr);
        if (status < 0)
            break;
        if (status == 0 && sd_bus_wait(bus, UINT64_MAX) < 0)
            break;
    }
    sd_bus_flush_close_unref(bus);
    return status < 0 ? 1 : 0;
}
