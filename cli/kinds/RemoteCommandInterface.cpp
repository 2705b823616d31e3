// measctl's adapter of RemoteCommandInterface: the application's root object, reached
// through the exec command only.

#include "ProxyAdapter.h"

#include "RemoteCommandInterface.h"

template<>
std::unique_ptr<KindAdapter> adapterOf<RemoteCommandInterface>()
{
    return std::make_unique<ProxyAdapter<RemoteCommandInterface>>("the application's root object (see exec)",
                                                                  KindSyntax{});
}
