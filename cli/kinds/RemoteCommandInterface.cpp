#include "ProxyAdapter.h"

#include "RemoteCommandInterface.h"

template<>
std::unique_ptr<KindAdapter> adapterOf<RemoteCommandInterface>()
{
    // No forms of get, set or info: the exec command is the way to the root object.
    return std::make_unique<ProxyAdapter<RemoteCommandInterface>>("the application's root object (see exec)",
                                                                  KindSyntax{});
}
